// Opening a file with 10,000 stacks: time and memory for each, beside datasets of HDF5.
#include <malloc.h>
#include <vrelio/container/bf_file.h>

#include <cstdio>
#include <string>
#include <vector>

#include "container/contest.h"
#include "container/hdf5_stack.h"
#include "container/stack_shape.h"

namespace {

using namespace bench;

constexpr unsigned stack_count = 10000;
constexpr int uint16 = 4;

// Every stack stands somewhere else, or all where the first stands.
void write_stacks(const ScratchFile& target, bool is_moving) {
  VBFFile file(target.name(), VFile::mode_create);
  const std::vector<Sample> samples(256);
  for (unsigned i = 0; i < stack_count; ++i) {
    const auto stack = file->add_stack(false);
    stack->create(std::vector<unsigned>{16, 16}, uint16);
    stack->set_name("field " + std::to_string(i));
    stack->set_labels({"X", "Y"});
    VStackPosition position = stack->get_stack_position();
    if (is_moving) position.offset[0] = i;
    stack->set_stack_position(position);
    stack->write(uint16, samples.data(), nullptr, 256);
  }
  file->close();
}

std::size_t metadata_size(const ScratchFile& target) {
  const VBFFile file(target.name(), VFile::mode_read);
  return VBFFile(file)->get_stack(stack_count / 2)->get_meta_data_string().size();
}

double bytes_per_stack(const ScratchFile& target) {
  const auto before = mallinfo2().uordblks;
  const VBFFile file(target.name(), VFile::mode_read);
  return static_cast<double>(mallinfo2().uordblks - before) / stack_count;
}

void open_and_describe(const ScratchFile& target) {
  VBFFile file(target.name(), VFile::mode_read);
  for (unsigned i = 0; i < stack_count; ++i) {
    require(file->get_stack(i)->get_rank() == 2, "another stack");
  }
}

}  // namespace

int main() {
  constexpr int rounds = 7;
  const ScratchFile still("still.vbf");
  const ScratchFile moving("moving.vbf");
  const ScratchFile hdf5("sets.h5");
  write_stacks(still, false);
  write_stacks(moving, true);
  write_hdf5_sets(hdf5.path(), stack_count);
  contest("open a file with 10,000 stacks", stack_count, rounds,
          {{"one place", [&] { const VBFFile file(still.name(), VFile::mode_read); }},
           {"each its own", [&] { const VBFFile file(moving.name(), VFile::mode_read); }},
           {"all handles", [&] { open_and_describe(moving); }},
           {"HDF5", [&] { open_hdf5_sets(hdf5.path(), stack_count); }}});
  std::printf("bytes per stack: %.0f, of which %zu metadata\n", bytes_per_stack(moving),
              metadata_size(moving));
}
