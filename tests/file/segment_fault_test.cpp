// What a segment makes of a system that fails.
#include <gtest/gtest.h>
#include <vrelio/file/zipped_segment.h>

#include <cerrno>
#include <functional>
#include <string>

#include "file/segment_samples.h"
#include "support/attached_file.h"
#include "support/system_fault.h"

namespace {

using Vrel::testing::AttachedFile;
using Vrel::testing::Fault;
using Vrel::testing::sample_data;
using Vrel::testing::ScopedSystemFault;
using Vrel::testing::size_of;
using Vrel::testing::SystemCall;

constexpr unsigned no_limit = VZippedSegment::no_limit;
constexpr u64 block_size = 3000;

struct Stored {
  u64 begin;
  u64 size;
  std::vector<u64> flush_positions;
};

Stored write_segment(VZippedSegment& segment, VFile& file, int level, const std::string& data) {
  const u64 begin = segment.init_w(file, level, no_limit);
  segment.set_flush_block_size(block_size);
  for (std::size_t done = 0; done < data.size(); done += 2000) {
    segment.write(&data[done], 2000);
  }
  const u64 size = segment.write_end();
  u64 ignored = 0;
  return {begin, size, segment.get_flush_positions(ignored)};
}

void read_segment(VZippedSegment& segment, VFile& file, int level, const Stored& stored,
                  const std::string& data) {
  segment.init_r(file, level, stored.begin, stored.size, size_of(data));
  segment.set_flush_positions(stored.flush_positions, block_size);
  std::string bytes(2000, '\0');
  for (const u64 position : {u64{0}, u64{7000}, u64{3000}, u64{18000}}) {
    segment.seek(position);
    segment.read(bytes.data(), 2000);
    EXPECT_EQ(bytes, data.substr(position, 2000));
  }
}

// Lets the first, second, ... call of a kind fail until one run needs no more of them.
void fail_each(SystemCall call, int error, const std::function<void()>& run,
               const std::string& expected, int expected_id) {
  int failures = 0;
  for (bool happened = true; happened; failures += happened ? 1 : 0) {
    const ScopedSystemFault fault(Fault{call, failures + 1, error, 3});
    try {
      run();
      EXPECT_FALSE(fault.happened()) << "nothing was raised for call " << failures + 1;
    } catch (const VrelError& raised) {
      const std::string text = raised.get_msg();
      EXPECT_EQ(text.substr(0, expected.size()), expected);
      EXPECT_EQ(raised.get_id(), expected_id);
    }
    happened = fault.happened();
    ASSERT_LT(failures, 1000);
  }
  EXPECT_GT(failures, 0);
}

class SegmentFaultTest : public testing::TestWithParam<int> {
 protected:
  SegmentFaultTest() { memory_.file().set_chunk_size(4096); }

  // After each failure the same object starts again.
  void fail_each_while_writing(SystemCall call, int error, const std::string& text, int id) {
    const auto run = [&] {
      memory_.file().seek(0);
      write_segment(segment_, memory_.file(), GetParam(), data_);
    };
    fail_each(call, error, run, text, id);
  }

  void fail_each_while_reading(SystemCall call, int error, const std::string& text, int id) {
    const Stored stored = write_segment(segment_, memory_.file(), GetParam(), data_);
    const auto run = [&] { read_segment(segment_, memory_.file(), GetParam(), stored, data_); };
    fail_each(call, error, run, text, id);
  }

  const std::string data_ = sample_data(20000, 1);
  AttachedFile memory_;
  VZippedSegment segment_;
};

TEST_P(SegmentFaultTest, AWriteThatTheSystemRefusesIsToldWithItsSize) {
  fail_each_while_writing(SystemCall::write, ENOSPC, "Failed writing ", -3);
}

TEST_P(SegmentFaultTest, AReadThatTheSystemRefusesIsToldWithItsSize) {
  fail_each_while_reading(SystemCall::read, EIO, "Failed reading ", -3);
}

TEST_P(SegmentFaultTest, NothingIsReadFromAPlaceThatWasNotReached) {
  fail_each_while_reading(SystemCall::seek, EIO, "Invalid stack position specified in header!", -4);
}

TEST_P(SegmentFaultTest, NothingIsWrittenToAPlaceThatWasNotReached) {
  // The first two calls are the test's own move and the segment's question for its begin.
  const std::string before = memory_.content();
  for (int n = 2; n < 6; ++n) {
    memory_.file().seek(0);
    const ScopedSystemFault fault(Fault{SystemCall::seek, n - 1, EIO});
    try {
      write_segment(segment_, memory_.file(), GetParam(), data_);
      ADD_FAILURE() << "nothing was raised for call " << n;
    } catch (const VrelError& raised) {
      EXPECT_STREQ(raised.get_msg(), "Invalid stack position specified in header!");
      EXPECT_EQ(raised.get_id(), -4);
    }
  }
}

TEST_P(SegmentFaultTest, ShortTransfersAreCompleted) {
  const ScopedSystemFault short_writes(Fault{SystemCall::write, 0, 0, 100});
  Stored stored;
  stored = write_segment(segment_, memory_.file(), GetParam(), data_);
  EXPECT_TRUE(short_writes.happened());
  read_segment(segment_, memory_.file(), GetParam(), stored, data_);
}

TEST_P(SegmentFaultTest, ShortReadsAreCompleted) {
  const Stored stored = write_segment(segment_, memory_.file(), GetParam(), data_);
  const ScopedSystemFault short_reads(Fault{SystemCall::read, 0, 0, 100});
  read_segment(segment_, memory_.file(), GetParam(), stored, data_);
  EXPECT_TRUE(short_reads.happened());
}

INSTANTIATE_TEST_SUITE_P(Levels, SegmentFaultTest, testing::Values(0, 1));

// The cost of a call is in proportion to what it asks for.
TEST(SegmentTransferTest, SmallReadsInSequenceFetchSeldom) {
  const std::string data = sample_data(200000, 2);
  AttachedFile memory;
  VZippedSegment segment;
  const u64 begin = segment.init_w(memory.file(), 1, no_limit);
  segment.write(data.data(), size_of(data));
  const u64 size = segment.write_end();
  segment.init_r(memory.file(), 1, begin, size, size_of(data));
  const ScopedSystemFault watch(Fault{SystemCall::read, -1, EIO});
  char byte;
  for (std::size_t i = 0; i < data.size(); ++i) {
    segment.read(&byte, 1);
    ASSERT_EQ(byte, data[i]);
  }
  EXPECT_LE(watch.calls(), 5);
}

TEST(SegmentTransferTest, ASeekFetchesOnce) {
  const std::string data = sample_data(200000, 2);
  AttachedFile memory;
  VZippedSegment segment;
  segment.init_w(memory.file(), 1, no_limit);
  segment.set_flush_block_size(50000);
  segment.write(data.data(), size_of(data));
  const u64 size = segment.write_end();
  u64 ignored = 0;
  const std::vector<u64> positions = segment.get_flush_positions(ignored);
  segment.init_r(memory.file(), 1, 0, size, size_of(data));
  segment.set_flush_positions(positions, 50000);
  for (const u64 position : {130000u, 30000u, 50000u, 190000u}) {
    const ScopedSystemFault watch(Fault{SystemCall::read, -1, EIO});
    std::string bytes(500, '\0');
    segment.seek(position);
    segment.read(bytes.data(), 500);
    EXPECT_EQ(bytes, data.substr(position, 500));
    EXPECT_EQ(watch.calls(), 1);
  }
}

}  // namespace
