// Small steps that tests of written stacks share.
#pragma once

#include <vrelio/container/bf_file.h>
#include <vrelio/container/chain.h>

#include <cstddef>
#include <cstring>
#include <numeric>
#include <string>
#include <vector>

#include "support/read_record.h"
#include "support/temporary_file.h"

namespace Vrel::testing {

using stack_ptr = boost::shared_ptr<VBFStackInterface>;

// A file of a test, with a handle of the last one that was opened.
class WrittenFile {
 public:
  WrittenFile() : file_(target_.name(), VFile::mode_create) {}

  VBFFileInterface* operator->() { return file_; }
  const TemporaryFile& target() const { return target_; }

  stack_ptr add(const std::vector<unsigned>& sizes, int type) {
    stack_ptr stack = file_->add_stack(false);
    stack->create(sizes, type);
    return stack;
  }

  // Close the file and open it for reading.
  void reopen() {
    file_->close();
    file_->open(target_.name(), VFile::mode_read);
  }

  // What stands in the file now.
  FileRecord record() const { return read_record(target_.content()); }

 private:
  TemporaryFile target_;
  VBFFile file_;
};

// Samples 0, 1, 2 and so on, as far as the type has them.
template <class T>
std::vector<T> ramp(std::size_t count) {
  std::vector<T> samples(count);
  for (std::size_t i = 0; i < count; ++i) samples[i] = static_cast<T>(i);
  return samples;
}

template <class T>
std::vector<T> read_all(const stack_ptr& stack, int type) {
  std::vector<T> samples(stack->get_number_of_elements(), T{77});
  stack->read(type, samples.data(), nullptr);
  return samples;
}

}  // namespace Vrel::testing
