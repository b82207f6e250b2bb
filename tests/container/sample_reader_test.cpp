#include <vrelio/container/sample_reader.h>

#include <gtest/gtest.h>
#include <vrelio/container/chain.h>

#include <cerrno>
#include <string>
#include <vector>

#include "support/expect_error.h"
#include "support/fluorescence.h"
#include "support/golden.h"
#include "support/system_fault.h"
#include "support/temporary_file.h"
#include "support/vbf_writer.h"

namespace {

using Vrel::FileRecord;
using Vrel::SampleReader;
using Vrel::StackRecord;
using Vrel::testing::golden;
using Vrel::testing::ScopedSystemFault;
using Vrel::testing::StackToWrite;
using Vrel::testing::SystemCall;
using Vrel::testing::TemporaryFile;

constexpr const char* beyond = "Trying to read beyond segment boundary!";

// A file on disk with the record of its first stack, which a test may change before it reads.
class OpenStack {
 public:
  explicit OpenStack(const std::string& bytes)
      : place_(bytes), file_(place_.name(), VFile::mode_read) {
    FileRecord record;
    read_chain(file_, record);
    stack_ = record.stacks.at(0);
  }

  VFile& file() { return file_; }
  StackRecord& stack() { return stack_; }

 private:
  TemporaryFile place_;
  VFile file_;
  StackRecord stack_;
};

std::string read(SampleReader& reader, u64 position, u64 count) {
  std::string bytes(count * reader.get_sample_size(), 'x');
  reader.read(position, count, bytes.data());
  return bytes;
}

// What the golden stacks "raw" and "zipped" hold: 24 samples of 2 bytes.
std::string golden_samples() {
  std::string bytes;
  for (char byte = 1; byte < 49; ++byte) bytes += byte;
  return bytes;
}

TEST(SampleReaderTest, KnowsTheNumberAndTheSizeOfItsSamples) {
  OpenStack open(golden("raw"));
  const SampleReader reader(open.file(), open.stack());
  EXPECT_EQ(reader.get_number_of_samples(), 24u);
  EXPECT_EQ(reader.get_sample_size(), 2u);
}

TEST(SampleReaderTest, EveryRangeOfARawAndOfAZippedStackIsRead) {
  const std::string expected = golden_samples();
  for (const char* name : {"raw", "zipped"}) {
    OpenStack open(golden(name));
    SampleReader reader(open.file(), open.stack());
    for (u64 position = 0; position < 24; ++position) {
      for (u64 count = 1; position + count <= 24; ++count) {
        EXPECT_EQ(read(reader, position, count), expected.substr(2 * position, 2 * count)) << name;
      }
    }
  }
}

TEST(SampleReaderTest, AStackWithoutDataReadsAsZeros) {
  OpenStack open(golden("empty_zipped"));
  SampleReader reader(open.file(), open.stack());
  EXPECT_EQ(read(reader, 0, 3), std::string(3, '\0'));
  EXPECT_EQ(read(reader, 2, 1), std::string(1, '\0'));
  EXPECT_VREL_ERROR(read(reader, 2, 2), beyond, -1);
}

TEST(SampleReaderTest, WhatTheStackDoesNotHaveRaisesBeforeTheFileIsTouched) {
  for (const char* name : {"raw", "zipped"}) {
    OpenStack open(golden(name));
    SampleReader reader(open.file(), open.stack());
    const ScopedSystemFault never({SystemCall::read, -1, EIO});
    char byte;
    EXPECT_VREL_ERROR(reader.read(24, 1, &byte), beyond, -1);
    EXPECT_VREL_ERROR(reader.read(0, 25, &byte), beyond, -1);
    EXPECT_VREL_ERROR(reader.read(23, ~u64{0}, &byte), beyond, -1);
    EXPECT_VREL_ERROR(reader.read(~u64{0}, 1, &byte), beyond, -1);
    EXPECT_EQ(never.calls(), 0);
  }
}

TEST(SampleReaderTest, ReadingNothingDoesNothing) {
  OpenStack open(golden("zipped"));
  SampleReader reader(open.file(), open.stack());
  reader.read(24, 0, nullptr);
  reader.read(1000, 0, nullptr);
}

TEST(SampleReaderTest, RawSamplesThatTheDataAreaDoesNotHoldAreNotMadeUp) {
  OpenStack open(golden("raw"));
  open.stack().number_of_samples = 30;
  SampleReader reader(open.file(), open.stack());
  EXPECT_EQ(read(reader, 20, 4), golden_samples().substr(40));
  const ScopedSystemFault never({SystemCall::read, -1, EIO});
  EXPECT_VREL_ERROR(read(reader, 20, 5), beyond, -1);
  EXPECT_VREL_ERROR(read(reader, 24, 1), beyond, -1);
  EXPECT_EQ(never.calls(), 0);
}

TEST(SampleReaderTest, AStreamThatIsTooShortIsAnInconsistency) {
  OpenStack open(golden("zipped"));
  open.stack().number_of_samples = 30;
  SampleReader reader(open.file(), open.stack());
  EXPECT_VREL_ERROR(read(reader, 0, 30), "Inconsistency in segment!", -10);
}

TEST(SampleReaderTest, ALevelMeansNothingToInflatingUnlessItIsZero) {
  for (const int level : {-7, -1, 1, 9, 42}) {
    OpenStack open(golden("zipped"));
    open.stack().header.compression_level = level;
    SampleReader reader(open.file(), open.stack());
    EXPECT_EQ(read(reader, 0, 24), golden_samples()) << level;
  }
}

TEST(SampleReaderTest, LevelZeroAndUnknownCompressionTypesAreRaw) {
  OpenStack open(golden("raw"));
  open.stack().header.compression_type = 1;
  open.stack().header.compression_level = 0;
  SampleReader level_zero(open.file(), open.stack());
  EXPECT_EQ(read(level_zero, 0, 24), golden_samples());
  open.stack().header.compression_type = 2;
  open.stack().header.compression_level = 6;
  SampleReader type_two(open.file(), open.stack());
  EXPECT_EQ(read(type_two, 0, 24), golden_samples());
}

TEST(SampleReaderTest, AFlushTableOfARawStackIsOfNoUse) {
  OpenStack open(golden("raw"));
  open.stack().flush_positions = {1, 2, 3};
  open.stack().flush_block_size = 16;
  SampleReader reader(open.file(), open.stack());
  const ScopedSystemFault never({SystemCall::read, -1, EIO});
  EXPECT_EQ(read(reader, 9, 15), golden_samples().substr(18));
  EXPECT_EQ(read(reader, 0, 1), golden_samples().substr(0, 2));
  EXPECT_EQ(read(reader, 4, 3), golden_samples().substr(8, 6));
  EXPECT_EQ(never.calls(), 3) << "what lies between two reads is not read";
}

TEST(SampleReaderTest, AFlushPointOutsideTheDataAreaRaisesWhenItIsUsed) {
  OpenStack open(golden("zipped"));
  for (const u64 point : {u64{100000}, ~u64{0}, ~u64{0} - 440}) {
    open.stack().flush_positions[0] = point;
    SampleReader reader(open.file(), open.stack());
    EXPECT_EQ(read(reader, 0, 4), golden_samples().substr(0, 8));
    EXPECT_VREL_ERROR(read(reader, 8, 1), "Inconsistency in segment!", -10);
  }
}

TEST(SampleReaderTest, ATypeWithoutAnElementSizeCannotBeRead) {
  OpenStack open(golden("raw"));
  open.stack().header.data_type = 0x4000;
  EXPECT_VREL_ERROR(SampleReader(open.file(), open.stack()),
                    "Invalid on-the-fly conversion from 'cell' to 'cell'!", -1);
  open.stack().header.data_type = 12345;
  EXPECT_VREL_ERROR(SampleReader(open.file(), open.stack()),
                    "Invalid on-the-fly conversion from 'none' to 'none'!", -1);
}

TEST(SampleReaderTest, ReadersOfOneFileDoNotDisturbEachOther) {
  OpenStack open(golden("zipped"));
  SampleReader first(open.file(), open.stack());
  SampleReader second(open.file(), open.stack());
  for (u64 position = 0; position < 24; ++position) {
    EXPECT_EQ(read(first, position, 1), golden_samples().substr(2 * position, 2));
    EXPECT_EQ(read(second, 23 - position, 1), golden_samples().substr(2 * (23 - position), 2));
  }
}

// A stack of 64 rows of 1,000 samples.
class SampleReaderRegionTest : public testing::Test {
 protected:
  SampleReaderRegionTest() : samples_(Vrel::testing::make_fluorescence({{1000, 64}})) {}

  std::string file_with_blocks(u64 block_size) const {
    StackToWrite stack;
    stack.record = Vrel::testing::make_stack_record(4, {1000, 64});
    stack.record.header.compression_type = 1;
    stack.record.flush_block_size = block_size;
    const auto* const bytes = reinterpret_cast<const char*>(samples_.data());
    stack.samples.assign(bytes, bytes + 2 * samples_.size());
    const TemporaryFile place;
    VFile file(place.name(), VFile::mode_create);
    Vrel::testing::write_vbf(file, "", {stack}, {});
    return place.content();
  }

  // Reads part of each row, without coming back to what was fetched.
  void expect_cheap_walk(SampleReader& reader) const {
    const ScopedSystemFault never({SystemCall::read, -1, EIO});
    for (u64 row = 0; row < 64; ++row) {
      std::vector<std::uint16_t> part(100);
      reader.read(row * 1000 + 450, 100, part.data());
      const auto expected = samples_.begin() + static_cast<std::ptrdiff_t>(row * 1000 + 450);
      ASSERT_EQ(part, std::vector<std::uint16_t>(expected, expected + 100)) << row;
    }
    EXPECT_LE(never.calls(), 16);
  }

  std::vector<std::uint16_t> samples_;
};

TEST_F(SampleReaderRegionTest, AWalkOverTheRowsOfARegionFetchesNoBlockTwice) {
  OpenStack open(file_with_blocks(16000));
  SampleReader reader(open.file(), open.stack());
  expect_cheap_walk(reader);
}

TEST_F(SampleReaderRegionTest, BehindTheLastFlushPointAWalkFetchesNothingTwiceEither) {
  OpenStack open(file_with_blocks(2000));
  StackRecord stack = open.stack();
  stack.flush_positions.resize(1);
  SampleReader reader(open.file(), stack);
  expect_cheap_walk(reader);
}

}  // namespace
