// Any bytes as a VBF file: its chain is read or refused, and so are some samples of its stacks.
#include <vrelio/container/chain.h>
#include <vrelio/container/sample_reader.h>
#include <vrelio/foundation/error.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

#include "support/attached_file.h"

namespace {

constexpr std::size_t most_stacks = 4;
constexpr u64 most_samples = 4096;

void read_ends(VFile& file, const Vrel::StackRecord& stack) {
  Vrel::SampleReader reader(file, stack);
  const u64 count = std::min(reader.get_number_of_samples(), most_samples);
  std::string bytes(count * reader.get_sample_size(), '\0');
  reader.read(reader.get_number_of_samples() - count, count, bytes.data());
  reader.read(0, count, bytes.data());
}

template <class Work>
void allow_errors(Work work) {
  try {
    work();
  } catch (const VrelError&) {
    // Broken files are refused; anything else ends the run.
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Vrel::testing::AttachedFile open(std::string(data, data + size));
  Vrel::FileRecord record;
  allow_errors([&] { read_chain(open.file(), record); });
  const std::size_t stacks = std::min(record.stacks.size(), most_stacks);
  for (std::size_t i = 0; i < stacks; ++i) {
    allow_errors([&] { read_ends(open.file(), record.stacks[i]); });
  }
  return 0;
}
