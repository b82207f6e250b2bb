// What reading a stack asks of the system.
#include <gtest/gtest.h>

#include <cerrno>
#include <vector>

#include "container/writing_session.h"

namespace {

using namespace Vrel::testing;

constexpr unsigned sample_count = 200 * length;

// A zlib stream without flush points, which can only be read from its begin on.
stack_ptr add_stream(VBFFileInterface* file) {
  const stack_ptr stack = file->add_stack(false);
  stack->create({sample_count}, uint16);
  stack->set_compression(1, 1);
  stack->set_flush_block_size(0);
  for (unsigned i = 0; i < sample_count / length; ++i) {
    stack->write(uint16, samples_of(i).data(), nullptr, length);
  }
  return stack;
}

int count_reads(const stack_ptr& stack, unsigned samples_per_read) {
  const ScopedSystemFault never({SystemCall::read, -1, EIO});
  samples_list samples(samples_per_read);
  int position = 0;
  for (unsigned done = 0; done < sample_count; done += samples_per_read) {
    stack->read(uint16, samples.data(), nullptr, samples_per_read, position);
  }
  return never.calls();
}

TEST(BFStackCostTest, ReadingOnwardFetchesNothingTwice) {
  const TemporaryFile target;
  VBFFile file(target.name(), VFile::mode_create);
  file->set_chunk_size(4096);
  const stack_ptr stack = add_stream(file);
  EXPECT_LE(count_reads(stack, length), count_reads(stack, sample_count) + 1);
}

}  // namespace
