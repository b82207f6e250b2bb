// A session of writing stacks that can be broken off anywhere, and what has to be readable then.
#pragma once

#include <gtest/gtest.h>
#include <vrelio/container/bf_file.h>
#include <vrelio/foundation/error.h>

#include <algorithm>
#include <new>
#include <string>
#include <vector>

#include "support/system_fault.h"
#include "support/temporary_file.h"

namespace Vrel::testing {

constexpr int uint16 = 4;
constexpr unsigned length = 600;
using stack_ptr = boost::shared_ptr<VBFStackInterface>;
using samples_list = std::vector<unsigned short>;

// Samples that zlib makes little smaller.
inline samples_list samples_of(unsigned stack) {
  samples_list samples(length);
  unsigned state = stack + 1;
  for (auto& sample : samples) {
    state = state * 1103515245U + 12345U;
    sample = static_cast<unsigned short>(state >> 16);
  }
  return samples;
}

// What a session had reached when it ended, however that was.
struct Session {
  std::size_t committed = 0;
  bool failed = false;
};

// Stacks of 600 samples: raw, compressed, growing and compressed, converted.
inline void write_stack(VBFFileInterface* file, unsigned index) {
  const stack_ptr stack = file->add_stack(false);
  stack->create(index == 2 ? std::vector<unsigned>{20, 0} : std::vector<unsigned>{length}, uint16);
  stack->set_name("stack " + std::to_string(index));
  stack->set_tag("index", std::to_string(index));
  if (index == 1 || index == 2) stack->set_compression(1, 6);
  const samples_list samples = samples_of(index);
  const std::vector<double> doubles(samples.begin(), samples.end());
  for (unsigned done = 0; done < length; done += 200) {
    if (index == 3) {
      stack->write(0x80, doubles.data() + done, nullptr, 200);
    } else {
      stack->write(uint16, samples.data() + done, nullptr, 200);
    }
  }
  if (index == 2) stack->commit(0);
}

constexpr unsigned stack_count = 4;

// A caller that gives up at the first error.
inline Session run_session(const TemporaryFile& target, VFile::mode mode, bool close_file = true) {
  Session session;
  try {
    VBFFile file(target.name(), mode);
    session.committed = file->get_number_of_stacks();
    while (session.committed < stack_count) {
      write_stack(file, static_cast<unsigned>(session.committed));
      ++session.committed;
    }
    if (close_file) file->close();
  } catch (const VrelError& error) {
    EXPECT_STRNE(error.get_msg(), "");
    session.failed = true;
  } catch (const std::bad_alloc&) {
    session.failed = true;
  }
  return session;
}

// A stack that grows ends with what it had when its writer gave up; all others are there as a whole or not
// at all.
inline void expect_stack(const stack_ptr& stack, unsigned index) {
  samples_list expected = samples_of(index);
  const bool is_given_up = index == 2 && stack->get_number_of_elements() < length;
  if (is_given_up) expected.resize(stack->get_number_of_elements());
  samples_list samples(stack->get_number_of_elements());
  stack->read(uint16, samples.data(), nullptr);
  EXPECT_EQ(samples, expected);
  if (is_given_up) return;
  EXPECT_EQ(stack->get_name(), "stack " + std::to_string(index));
  EXPECT_EQ(stack->get_tag("index"), std::to_string(index));
}

// Read every stack of a file to its last sample.
inline std::size_t read_stacks(VBFFileInterface* file) {
  for (unsigned i = 0; i < file->get_number_of_stacks(); ++i) expect_stack(file->get_stack(i), i);
  return file->get_number_of_stacks();
}

inline void expect_readable(const TemporaryFile& target, std::size_t at_least) {
  try {
    VBFFile file(target.name(), VFile::mode_read);
    EXPECT_GE(read_stacks(file), at_least);
  } catch (const VrelError& error) {
    // Without a header there is no file yet.
    EXPECT_STREQ(error.get_msg(), "Failed reading 26 bytes from file!");
    EXPECT_EQ(at_least, 0u);
  }
}

// Let the first, the second and every later call of a kind fail, until none is left.
template <class Work>
void fail_each(SystemCall call, int error, Work work) {
  bool happened = true;
  for (int occurrence = 1; happened; ++occurrence) {
    SCOPED_TRACE("call " + std::to_string(static_cast<int>(call)) + ", occurrence " +
                 std::to_string(occurrence) + ", error " + std::to_string(error));
    happened = work(Fault{call, occurrence, error, 1});
  }
}

}  // namespace Vrel::testing
