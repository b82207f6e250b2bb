// Any bytes as a file: opened by VBFFile, described and read to the end as whatever they claim to be, then
// appended to.
#include <vrelio/container/bf_file.h>
#include <vrelio/foundation/data_type.h>
#include <vrelio/foundation/error.h>
#include <vrelio/prop/prop.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/attached_file.h"

namespace {

constexpr unsigned most_stacks = 8;
constexpr unsigned most_samples = 65536;
constexpr int uint16 = 4;
constexpr int double_type = 128;
constexpr int prop_type = 0x4000;

// Broken files are refused, in the ways that the interface names; anything else ends the run.
template <class Work>
void allow_errors(Work work) {
  try {
    work();
  } catch (const VrelError&) {
  } catch (const std::invalid_argument&) {
    // OME metadata of stacks in memory refuse what a file may hold.
  }
}

void describe(const VBFStackInterface& stack) {
  bool is_longer = false;
  std::size_t used = stack.get_name().size() + stack.get_description().size();
  for (unsigned axis = 0; axis < stack.get_rank(); ++axis) {
    used += stack.get_col_labels(axis).size();
    // Of an axis without stored positions as many are made as it has pixels.
    if (stack.get_dimension_size(axis) <= most_samples)
      used += stack.get_col_positions(axis).size();
    is_longer = is_longer || stack.get_length(axis) > stack.get_offset(axis);
    is_longer = is_longer || stack.get_units(axis).is_valid();
  }
  if (!is_longer && used == ~std::size_t{0}) throw std::logic_error("no memory is as large");
}

void read_tags(VBFStackInterface& stack) {
  for (const std::string& key : stack.get_tag_keys()) {
    VProp value;
    allow_errors([&] { stack.get_tag(key, prop_type, &value); });
  }
}

void read_samples(VBFStackInterface& stack, int type) {
  const unsigned total = stack.get_number_of_elements();
  const unsigned count = std::min(total, most_samples);
  std::vector<unsigned char> samples(std::size_t{count} * 16);
  for (const unsigned first : {0U, total / 2, total - count}) {
    int position = static_cast<int>(first);
    allow_errors([&] { stack.read(type, samples.data(), nullptr, count, position); });
    allow_errors([&] { stack.read(type, samples.data(), nullptr, count, position); });
  }
}

void read_stacks(VBFFileInterface* file) {
  const unsigned count = std::min(file->get_number_of_stacks(), most_stacks);
  for (unsigned i = 0; i < count; ++i) {
    const auto stack = file->get_stack(i);
    describe(*stack);
    read_tags(*stack);
    read_samples(*stack, stack->get_dt());
    read_samples(*stack, double_type);
    if (stack->get_number_of_elements() > most_samples) continue;
    allow_errors([&] { file->read_stack(i, 0); });
    allow_errors([&] { file->seek_to_stack_end(i); });
  }
}

// What was opened last stays in the object also when opening failed half way.
void visit(Vrel::testing::AttachedFile& bytes, VFile::mode mode, void (*work)(VBFFileInterface*)) {
  bytes.file().seek(0);
  void* handle = bytes.file().detach();
  {
    VBFFile file;
    allow_errors([&] { file->attach(handle, mode); });
    work(file);
    allow_errors([&] { file->detach(); });
  }
  bytes.file().attach(handle, VFile::mode_modify);
}

void append(VBFFileInterface* file) {
  allow_errors([&] {
    const unsigned short samples[] = {1, 2, 3};
    const auto stack = file->add_stack(false);
    stack->create(std::vector<unsigned>{3}, uint16);
    stack->write(uint16, samples, nullptr, 3);
  });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Vrel::testing::AttachedFile bytes(std::string(data, data + size));
  visit(bytes, VFile::mode_read, read_stacks);
  visit(bytes, VFile::mode_modify, append);
  visit(bytes, VFile::mode_read, read_stacks);
  return 0;
}
