// Systems that fail: what was committed stays readable.
#include <gtest/gtest.h>
#include <vrelio/container/bf_file.h>
#include <vrelio/foundation/error.h>

#include <algorithm>
#include <cerrno>
#include <functional>
#include <numeric>
#include <string>
#include <vector>

#include "container/writing_session.h"
#include "support/expect_error.h"
#include "support/file_size_limit.h"
#include "support/system_fault.h"
#include "support/temporary_file.h"

namespace {

using namespace Vrel::testing;

const std::vector<SystemCall>& writing_calls() {
  static const std::vector<SystemCall> calls = {SystemCall::open, SystemCall::read,
                                                SystemCall::write, SystemCall::seek,
                                                SystemCall::truncate};
  return calls;
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
      expect_stack(stack, 1);
      EXPECT_EQ(read_stacks(file), stack_count);
      return happened;
    });
  }
}

// Read a stack of many steps onward, once again where it failed.
samples_list read_stubbornly(const stack_ptr& stack, unsigned step) {
  samples_list samples(stack->get_number_of_elements());
  bool has_failed = false;
  for (int position = 0; position != VBFStackInterface::position_exhausted;) {
    unsigned short* const destination = samples.data() + position;
    try {
      stack->read(uint16, destination, nullptr, step, position);
    } catch (const VrelError& error) {
      if (has_failed || error.get_oserr_id() != EIO) throw;
      has_failed = true;
    }
  }
  return samples;
}

TEST(BFFileFaultTest, AReadThatFailedInTheMiddleOfAStreamIsDoneAgainFromThere) {
  const TemporaryFile target;
  VBFFile file(target.name(), VFile::mode_create);
  file->set_chunk_size(4096);
  const stack_ptr stack = file->add_stack(false);
  stack->create({40 * length}, uint16);
  stack->set_compression(1, 1);
  samples_list expected;
  for (unsigned i = 0; i < 40; ++i) {
    const samples_list more = samples_of(i);
    expected.insert(expected.end(), more.begin(), more.end());
    stack->write(uint16, more.data(), nullptr, length);
  }
  for (const unsigned step : {500U, 9000U}) {
    fail_each(SystemCall::read, EIO, [&](const Fault& fault) {
      const ScopedSystemFault scope(fault);
      EXPECT_TRUE(read_stubbornly(stack, step) == expected);
      return scope.happened();
    });
  }
}

// A file whose dictionary lies far behind its header.
void write_far_dictionary(const TemporaryFile& target) {
  VBFFile file(target.name(), VFile::mode_create);
  const stack_ptr stack = file->add_stack(false);
  stack->create({30000}, uint16);
  const samples_list samples(30000);
  stack->write(uint16, samples.data(), nullptr, VBFStackInterface::all_samples);
  file->close();
}

TEST(BFFileFaultTest, WhatCannotBeReadWhileOpeningIsNotTakenForMissing) {
  const TemporaryFile target;
  write_far_dictionary(target);
  for (const SystemCall call : {SystemCall::read, SystemCall::seek}) {
    fail_each(call, EIO, [&](const Fault& fault) {
      VBFFile file;
      bool happened = false;
      bool failed = false;
      {
        const ScopedSystemFault scope(fault);
        try {
          file->open(target.name(), VFile::mode_read);
        } catch (const VrelError&) {
          failed = true;
        }
        happened = scope.happened();
      }
      EXPECT_EQ(failed, happened);
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
void run_again(const Step& step) {
  try {
    step();
  } catch (const VrelError& again) {
    EXPECT_STREQ(again.get_msg(), "Trying to write more samples than the stack is long!");
  }
}

void run_twice(const Step& step) {
  try {
    step();
  } catch (const VrelError& error) {
    EXPECT_EQ(error.get_oserr_id(), ENOSPC);
    run_again(step);
  }
}

// The first time in a file that cannot grow beyond a size.
void run_limited(const Step& step, std::size_t size) {
  bool failed = false;
  {
    const ScopedFileSizeLimit limit(size);
    try {
      step();
    } catch (const VrelError& error) {
      failed = error.get_oserr_id() == EFBIG;
    }
  }
  if (failed) run_again(step);
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

TEST(BFFileFaultTest, WhoTriesAgainAfterATransferThatBrokeOffGetsTheSameFile) {
  const TemporaryFile reference;
  {
    VBFFile file(reference.name(), VFile::mode_create);
    write_raw(file, [](const Step& step) { step(); });
    file->finish();
  }
  const std::string content = reference.content();
  for (std::size_t size = 0; size < content.size(); size += 23) {
    SCOPED_TRACE("limit " + std::to_string(size));
    const TemporaryFile target;
    VBFFile file(target.name(), VFile::mode_create);
    write_raw(file, [&](const Step& step) { run_limited(step, size); });
    file->finish();
    // But for the position of the dictionary, which the reference has as well by now.
    EXPECT_EQ(target.content().substr(34), content.substr(34, target.content().size() - 34));
  }
}

TEST(BFFileFaultTest, ACommitThatFailedBehindTheSamplesOfAStreamIsDoneAgain) {
  int recovered = 0;
  fail_each(SystemCall::write, ENOSPC, [&](const Fault& fault) {
    const TemporaryFile target;
    VBFFile file(target.name(), VFile::mode_create);
    const stack_ptr stack = file->add_stack(false);
    stack->create({20, 0}, uint16);
    stack->set_compression(1, 6);
    const samples_list samples = samples_of(0);
    stack->write(uint16, samples.data(), nullptr, length);
    bool happened = false;
    {
      const ScopedSystemFault scope(fault);
      try {
        stack->commit(0);
      } catch (const VrelError& error) {
        EXPECT_EQ(error.get_oserr_id(), ENOSPC);
      }
      happened = scope.happened();
    }
    if (!happened) return false;
    try {
      stack->commit(0);
      samples_list read(length);
      file->get_stack(0)->read(uint16, read.data(), nullptr);
      EXPECT_EQ(read, samples);
      ++recovered;
    } catch (const VrelError& error) {
      EXPECT_STREQ(error.get_msg(), "File not open!");
      EXPECT_EQ(recovered, 0) << "only the stream itself cannot be written again";
    }
    return true;
  });
  EXPECT_GE(recovered, 4);
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

}  // namespace
