// Prints the stacks of a VBF file, each with the mean of its samples.
#include <fcntl.h>
#include <unistd.h>
#include <vrelio/vrelio.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <numeric>
#include <vector>

namespace {

// The mean of a stack of real numbers, read and converted block by block.
double mean_of(VFile& file, const Vrel::StackRecord& stack) {
  constexpr u64 block = 65536;
  Vrel::SampleReader reader(file, stack);
  std::vector<unsigned char> stored(block * reader.get_sample_size());
  std::vector<double> values(block);
  double sum = 0;
  for (u64 done = 0; done < reader.get_number_of_samples(); done += block) {
    const u64 count = std::min(block, reader.get_number_of_samples() - done);
    reader.read(done, count, stored.data());
    if (vrel_dt_convert(stack.header.data_type, vrel_dt_from_name("double"), stored.data(),
                        values.data(), static_cast<int>(count), nullptr, nullptr) != 0)
      return NAN;
    sum = std::accumulate(values.data(), values.data() + count, sum);
  }
  return sum / static_cast<double>(reader.get_number_of_samples());
}

void print_stacks(VFile& file) {
  Vrel::FileRecord record;
  Vrel::read_chain(file, record);
  for (const Vrel::StackRecord& stack : record.stacks)
    std::printf("%s: %s, mean %g\n", stack.name.c_str(), vrel_dt_get_name(stack.header.data_type),
                mean_of(file, stack));
}

// Many programs may read a file at once where each attaches a descriptor of its own; `VFile::open`
// would keep the others out.
int print_file(const char* name) {
  const int descriptor = ::open(name, O_RDONLY | O_CLOEXEC);
  if (descriptor == -1) {
    std::perror(name);
    return 1;
  }
  int status = 0;
  try {
    VFile file;
    void* handle = VFile::to_handle(descriptor);
    file.attach(handle, VFile::mode_read);
    print_stacks(file);
  } catch (const VrelError& error) {
    std::fprintf(stderr, "%s: %s\n", name, error.get_msg());
    status = 1;
  }
  ::close(descriptor);
  return status;
}

}  // namespace

int main(int count, char** arguments) {
  if (count == 2) return print_file(arguments[1]);
  std::fprintf(stderr, "usage: read_stack FILE\n");
  return 2;
}
