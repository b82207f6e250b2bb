// Systems that fail, and writers that die: what was committed stays readable.
#include <gtest/gtest.h>
#include <vrelio/container/bf_file.h>
#include <vrelio/foundation/error.h>

#include <algorithm>
#include <cerrno>
#include <functional>
#include <numeric>
#include <string>
#include <vector>

#include "support/expect_error.h"
#include "support/system_fault.h"
#include "support/temporary_file.h"

namespace {

using Vrel::testing::Fault;
using Vrel::testing::ScopedSystemFault;
using Vrel::testing::ScopedWriteRecord;
using Vrel::testing::SystemCall;
using Vrel::testing::TemporaryFile;
using Vrel::testing::WrittenBytes;

constexpr int uint8 = 1;
constexpr int uint16 = 4;
constexpr unsigned length = 600;
using stack_ptr = boost::shared_ptr<VBFStackInterface>;
using samples_list = std::vector<unsigned short>;

// Samples that zlib makes little smaller.
samples_list samples_of(unsigned stack) {
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
void write_stack(VBFFileInterface* file, unsigned index) {
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
Session run_session(const TemporaryFile& target, VFile::mode mode, bool close_file = true) {
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
  }
  return session;
}

// Read every stack of a file to its last sample.
std::size_t read_stacks(VBFFileInterface* file) {
  for (unsigned i = 0; i < file->get_number_of_stacks(); ++i) {
    const stack_ptr stack = file->get_stack(i);
    EXPECT_EQ(stack->get_name(), "stack " + std::to_string(i));
    EXPECT_EQ(stack->get_tag("index"), std::to_string(i));
    samples_list expected = samples_of(i);
    // A stack that grows ends with what it had when its writer gave up.
    if (i == 2) expected.resize(std::min(stack->get_number_of_elements(), length));
    samples_list samples(stack->get_number_of_elements());
    stack->read(uint16, samples.data(), nullptr);
    EXPECT_EQ(samples, expected);
  }
  return file->get_number_of_stacks();
}

void expect_readable(const TemporaryFile& target, std::size_t at_least) {
  try {
    VBFFile file(target.name(), VFile::mode_read);
    EXPECT_GE(read_stacks(file), at_least);
  } catch (const VrelError& error) {
    // Without a header there is no file yet.
    EXPECT_STREQ(error.get_msg(), "Failed reading 26 bytes from file!");
    EXPECT_EQ(at_least, 0u);
  }
}

const std::vector<SystemCall>& writing_calls() {
  static const std::vector<SystemCall> calls = {SystemCall::open, SystemCall::read,
                                                SystemCall::write, SystemCall::seek,
                                                SystemCall::truncate};
  return calls;
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

TEST(BFFileFaultTest, WhateverCallFailsWhatWasCommittedIsReadable) {
  for (const SystemCall call : writing_calls()) {
    for (const int error : {ENOSPC, EIO}) {
      fail_each(call, error, [](const Fault& fault) {
        const TemporaryFile target;
        Session session;
        bool happened = false;
        {
          const ScopedSystemFault scope(fault);
          session = run_session(target, VFile::mode_create);
          happened = scope.happened();
        }
        if (target.exists()) expect_readable(target, session.committed);
        EXPECT_EQ(session.failed, happened);
        return happened;
      });
    }
  }
}

TEST(BFFileFaultTest, AShortTransferIsGoneOnWith) {
  const TemporaryFile whole;
  run_session(whole, VFile::mode_create);
  fail_each(SystemCall::write, 0, [&](const Fault& fault) {
    const TemporaryFile target;
    const ScopedSystemFault scope(fault);
    EXPECT_FALSE(run_session(target, VFile::mode_create).failed);
    EXPECT_EQ(target.content(), whole.content());
    return scope.happened();
  });
}

TEST(BFFileFaultTest, OnAFullDiskNothingIsWritten) {
  const TemporaryFile target;
  const ScopedSystemFault scope(Fault{SystemCall::write, 0, ENOSPC, 0});
  EXPECT_TRUE(run_session(target, VFile::mode_create).failed);
  EXPECT_EQ(target.content(), "");
  EXPECT_EQ(vrel_get_last_error(), -3);
}

TEST(BFFileFaultTest, WhateverCallFailsWhileModifyingTheOldStacksAreReadable) {
  const TemporaryFile two;
  {
    VBFFile file(two.name(), VFile::mode_create);
    write_stack(file, 0);
    write_stack(file, 1);
  }
  for (const SystemCall call : writing_calls()) {
    fail_each(call, EIO, [&](const Fault& fault) {
      const TemporaryFile target(two.content());
      Session session;
      bool happened = false;
      {
        const ScopedSystemFault scope(fault);
        session = run_session(target, VFile::mode_modify);
        happened = scope.happened();
      }
      expect_readable(target, std::max<std::size_t>(2, session.committed));
      EXPECT_EQ(session.failed, happened);
      return happened;
    });
  }
}

TEST(BFFileFaultTest, WhateverCallFailsWhileReadingTheNextReadSucceeds) {
  const TemporaryFile target;
  run_session(target, VFile::mode_create);
  for (const SystemCall call : {SystemCall::read, SystemCall::seek}) {
    fail_each(call, EIO, [&](const Fault& fault) {
      VBFFile file(target.name(), VFile::mode_read);
      const stack_ptr stack = file->get_stack(1);
      samples_list samples(length);
      bool happened = false;
      bool failed = false;
      {
        const ScopedSystemFault scope(fault);
        try {
          stack->read(uint16, samples.data(), nullptr);
        } catch (const VrelError&) {
          failed = true;
        }
        happened = scope.happened();
      }
      // Where the position cannot be told, or not be restored, the samples are there all the same.
      if (call == SystemCall::read) {
        EXPECT_EQ(failed, happened);
      }
      EXPECT_EQ(read_stacks(file), stack_count);
      return happened;
    });
  }
}

using Step = std::function<void()>;

// A file of one raw stack, step by step.
void write_raw(VBFFileInterface* file, const std::function<void(const Step&)>& run) {
  stack_ptr stack;
  run([&] { stack = file->add_stack(false); });
  stack->create({length}, uint16);
  const samples_list samples = samples_of(0);
  run([&] { stack->write(uint16, samples.data(), nullptr, 200); });
  run([&] { stack->write(uint16, samples.data() + 200, nullptr, 400); });
}

// Samples that are stored count, though what comes behind them has failed.
void run_twice(const Step& step) {
  try {
    step();
  } catch (const VrelError& error) {
    EXPECT_EQ(error.get_oserr_id(), ENOSPC);
    try {
      step();
    } catch (const VrelError& again) {
      EXPECT_STREQ(again.get_msg(), "Trying to write more samples than the stack is long!");
    }
  }
}

TEST(BFFileFaultTest, WhoTriesAgainGetsTheSameFile) {
  const TemporaryFile reference;
  {
    VBFFile file(reference.name(), VFile::mode_create);
    write_raw(file, [](const Step& step) { step(); });
    file->finish();
  }
  const std::string content = reference.content();
  fail_each(SystemCall::write, ENOSPC, [&](const Fault& fault) {
    const TemporaryFile target;
    VBFFile file(target.name(), VFile::mode_create);
    bool happened = false;
    {
      const ScopedSystemFault scope(fault);
      write_raw(file, run_twice);
      happened = scope.happened();
    }
    file->close();
    // But for the position of the dictionary, which the reference has as well by now.
    EXPECT_EQ(target.content().substr(34, 3000), content.substr(34, 3000));
    return happened;
  });
}

TEST(BFFileFaultTest, AZlibStreamWhoseWritingFailedIsNotGoneOnWith) {
  const TemporaryFile target;
  VBFFile file(target.name(), VFile::mode_create);
  file->set_chunk_size(64);
  write_stack(file, 0);
  const stack_ptr stack = file->add_stack(false);
  stack->create({200, 0}, uint16);
  stack->set_compression(1, 1);
  samples_list samples;
  for (unsigned i = 0; i < 200; ++i) {
    const samples_list more = samples_of(i);
    samples.insert(samples.end(), more.begin(), more.end());
  }
  stack->write(uint16, samples.data(), nullptr, 200);
  const auto count = static_cast<unsigned>(samples.size()) - 200;
  {
    const ScopedSystemFault scope(Fault{SystemCall::write, 1, ENOSPC, 0});
    EXPECT_VREL_ERROR(stack->write(uint16, samples.data() + 200, nullptr, count),
                      "Failed writing 64 bytes to file!", -3);
  }
  EXPECT_VREL_ERROR(stack->write(uint16, samples.data() + 200, nullptr, count), "File not open!",
                    -1);
  EXPECT_EQ(stack->get_state(), 2);
  EXPECT_THROW(file->close(), VrelError);
  file.reset();
  expect_readable(target, 1);
}

// Files as they stand when a writer dies.
std::string replay(const std::vector<WrittenBytes>& writes, std::size_t count, std::size_t part) {
  std::string content;
  const auto apply = [&](std::size_t position, const std::string& bytes) {
    content.resize(std::max(content.size(), position + bytes.size()));
    content.replace(position, bytes.size(), bytes);
  };
  for (std::size_t i = 0; i < count; ++i) apply(writes[i].position, writes[i].bytes);
  if (count < writes.size()) {
    apply(writes[count].position, writes[count].bytes.substr(0, part));
  }
  return content;
}

TEST(BFFileFaultTest, EveryPrefixOfTheWritesHoldsExactlyTheCommittedStacks) {
  std::vector<WrittenBytes> writes;
  std::vector<std::size_t> commits;  // the number of writes at which each stack is complete
  const TemporaryFile target;
  {
    const ScopedWriteRecord record;
    VBFFile file(target.name(), VFile::mode_create);
    for (unsigned i = 0; i < stack_count; ++i) {
      write_stack(file, i);
      commits.push_back(record.writes().size());
    }
    file->close();
    writes = record.writes();
  }
  ASSERT_EQ(replay(writes, writes.size(), 0), target.content());
  for (std::size_t count = 1; count <= writes.size(); ++count) {
    SCOPED_TRACE("after write " + std::to_string(count));
    const auto committed = static_cast<std::size_t>(std::count_if(
        commits.begin(), commits.end(), [&](std::size_t end) { return end <= count; }));
    const TemporaryFile killed(replay(writes, count, 0));
    VBFFile file(killed.name(), VFile::mode_read);
    EXPECT_EQ(read_stacks(file), committed);
    if (count == writes.size()) continue;
    const TemporaryFile torn(replay(writes, count, writes[count].bytes.size() / 2));
    try {
      VBFFile read(torn.name(), VFile::mode_read);
      EXPECT_GE(read_stacks(read), committed);
    } catch (const VrelError& error) {
      // Half a link.
      EXPECT_EQ(writes[count].bytes.size(), 8u) << error.get_msg();
    }
  }
}

}  // namespace
