#include <gtest/gtest.h>
#include <vrelio/file/zipped_segment.h>
#include <zlib.h>

#include <algorithm>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "file/plain_segment.h"
#include "file/segment_samples.h"
#include "support/attached_file.h"
#include "support/expect_error.h"
#include "support/temporary_file.h"

namespace {

using Vrel::testing::AttachedFile;
using Vrel::testing::plain_write;
using Vrel::testing::PlainStored;
using Vrel::testing::sample_data;
using Vrel::testing::size_of;
using Vrel::testing::TemporaryFile;
using Vrel::testing::warns;

constexpr unsigned no_limit = VZippedSegment::no_limit;
constexpr unsigned default_chunk = Vrel::testing::default_chunk;

void write_in_pieces(VZippedSegment& segment, const std::string& data, std::size_t piece) {
  for (std::size_t done = 0; done < data.size(); done += piece) {
    const std::string part = data.substr(done, piece);
    segment.write(part.data(), size_of(part));
  }
}

std::string read_bytes(VZippedSegment& segment, std::size_t size) {
  std::string bytes(size, '\0');
  segment.read(bytes.data(), size_of(bytes));
  return bytes;
}

std::string read_in_pieces(VZippedSegment& segment, std::size_t size, std::size_t piece) {
  std::string bytes;
  while (bytes.size() < size) bytes += read_bytes(segment, std::min(piece, size - bytes.size()));
  return bytes;
}

// Inflated by zlib alone.
std::string inflated(const std::string& stored, int window_bits, std::size_t size) {
  z_stream stream{};
  inflateInit2(&stream, window_bits);
  std::string data(size, '\0');
  stream.next_in = Vrel::testing::plain_bytes(stored.data());
  stream.avail_in = size_of(stored);
  stream.next_out = Vrel::testing::plain_bytes(data.data());
  stream.avail_out = size_of(data);
  inflate(&stream, Z_SYNC_FLUSH);
  data.resize(data.size() - stream.avail_out);
  inflateEnd(&stream);
  return data;
}

// A segment that was written to a file behind some other bytes, which also follow it.
class Written {
 public:
  Written(const std::string& data, int level, u64 block_size, std::size_t piece = ~std::size_t{0},
          unsigned chunk_size = default_chunk)
      : level_(level), block_size_(block_size) {
    file().set_chunk_size(chunk_size);
    file().write("other", 5);
    VZippedSegment segment;
    begin_ = segment.init_w(file(), level, no_limit);
    if (block_size != 0) segment.set_flush_block_size(block_size);
    write_in_pieces(segment, data, piece);
    size_ = segment.write_end();
    u64 stored_block_size = 0;
    flush_positions_ = segment.get_flush_positions(stored_block_size);
    EXPECT_EQ(stored_block_size, block_size);
    segment.end();
    file().seek(begin_ + size_);
    file().write("more", 4);
  }

  VFile& file() { return file_.file(); }
  AttachedFile& memory() { return file_; }
  u64 begin() const { return begin_; }
  u64 size() const { return size_; }
  const std::vector<u64>& flush_positions() const { return flush_positions_; }
  std::string stored() const { return file_.content().substr(begin_, size_); }

  void open(VZippedSegment& segment, unsigned limit = no_limit) {
    segment.init_r(file(), level_, begin_, size_, limit);
    segment.set_flush_positions(flush_positions_, block_size_);
  }

 private:
  AttachedFile file_;
  int level_;
  u64 block_size_;
  u64 begin_ = 0;
  u64 size_ = 0;
  std::vector<u64> flush_positions_;
};

// --- Round trips

class VZippedSegmentRoundTripTest : public testing::TestWithParam<unsigned> {
 protected:
  struct Form {
    int level;
    u64 block_size;
    std::size_t piece;
    std::string data;
  };

  void for_each_form(const std::function<void(const Form&)>& body) {
    const std::vector<int> some_levels = {0, 1, 6};
    const std::vector<int> all_levels = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9};
    for (const int level : GetParam() == default_chunk ? all_levels : some_levels) {
      for (const u64 block_size : {0u, 1u, 1000u, 65536u}) {
        const std::string data = sample_data(block_size == 1 ? 300 : 70001, 5);
        for (const std::size_t piece : {std::size_t{1}, std::size_t{1013}, data.size()}) {
          SCOPED_TRACE(testing::Message()
                       << "level " << level << ", blocks " << block_size << ", pieces " << piece);
          body({level, block_size, piece, data});
        }
      }
    }
  }
};

TEST_P(VZippedSegmentRoundTripTest, GivesBackWhatWasWritten) {
  for_each_form([](const Form& form) {
    Written written(form.data, form.level, form.block_size, form.piece, GetParam());
    for (const unsigned limit : {no_limit, size_of(form.data)}) {
      for (const std::size_t read_piece : {form.data.size(), std::size_t{777}}) {
        VZippedSegment segment;
        written.open(segment, limit);
        EXPECT_EQ(read_in_pieces(segment, form.data.size(), read_piece), form.data);
        EXPECT_EQ(segment.tell(), form.data.size());
      }
    }
  });
}

// In less room than 7 bytes the bare engine could repeat its flush for ever.
TEST_P(VZippedSegmentRoundTripTest, StoresWhatTheBareEngineMakes) {
  for_each_form([](const Form& form) {
    const Written written(form.data, form.level, form.block_size, form.piece, GetParam());
    if (form.level == 0) {
      EXPECT_EQ(written.stored(), form.data);
      EXPECT_TRUE(written.flush_positions().empty());
      return;
    }
    const PlainStored plain =
        plain_write(form.data, form.level, form.block_size, form.piece, std::max(GetParam(), 7u));
    EXPECT_EQ(written.stored(), plain.bytes);
    EXPECT_EQ(written.flush_positions(), plain.flush_positions);
  });
}

INSTANTIATE_TEST_SUITE_P(Chunks, VZippedSegmentRoundTripTest,
                         testing::Values(1u, 5u, 7u, 4096u, default_chunk));

TEST(VZippedSegmentTest, AnEmptyStreamReadsAsNothing) {
  for (const int level : {0, 1, 9}) {
    Written written("", level, 1000);
    EXPECT_TRUE(written.flush_positions().empty());
    VZippedSegment segment;
    written.open(segment, 0);
    segment.read(nullptr, 0);
    EXPECT_VREL_ERROR(read_bytes(segment, 1), "Trying to read beyond segment boundary!", -1);
  }
}

TEST(VZippedSegmentTest, AWrittenStreamIsOneForTheBareEngine) {
  const std::string data = sample_data(50000, 1);
  const Written written(data, 6, 4096, 1013);
  EXPECT_EQ(inflated(written.stored(), MAX_WBITS, data.size() + 1), data);
}

TEST(VZippedSegmentTest, AStreamOfTheBareEngineReads) {
  const std::string data = sample_data(50000, 1);
  uLongf size = compressBound(data.size());
  std::string stored(size, '\0');
  ASSERT_EQ(compress2(Vrel::testing::plain_bytes(stored.data()), &size,
                      Vrel::testing::plain_bytes(data.data()), data.size(), 9),
            Z_OK);
  stored.resize(size);
  AttachedFile memory(stored);
  VZippedSegment segment;
  segment.init_r(memory.file(), 1, 0, stored.size(), no_limit);
  EXPECT_EQ(read_bytes(segment, data.size()), data);
}

TEST(VZippedSegmentTest, EveryFlushPointStartsARawStream) {
  const std::string data = sample_data(20500, 2);
  const Written written(data, 1, 1000);
  ASSERT_EQ(written.flush_positions().size(), 20u);
  for (std::size_t k = 1; k <= 20; ++k) {
    const std::string rest = written.stored().substr(written.flush_positions()[k - 1]);
    EXPECT_EQ(inflated(rest, -MAX_WBITS, data.size()), data.substr(1000 * k)) << k;
  }
}

// --- Writing

TEST(VZippedSegmentTest, StartsAtTheFilesCurrentPosition) {
  AttachedFile memory("abcdef");
  memory.file().seek(4);
  VZippedSegment segment;
  EXPECT_EQ(segment.init_w(memory.file(), 0, no_limit), 4u);
  segment.write("XY", 2);
  EXPECT_EQ(segment.get_beg_pos_file(), 4u);
  EXPECT_EQ(segment.get_cur_pos_file(), 6u);
  EXPECT_EQ(segment.tell(), 2u);
  EXPECT_EQ(memory.content(), "abcdXY");
}

TEST(VZippedSegmentTest, FinishingARawSegmentLeavesTheFileUntouched) {
  AttachedFile memory;
  VZippedSegment segment;
  segment.init_w(memory.file(), 0, no_limit);
  segment.write("abc", 3);
  memory.file().seek(1);
  segment.write(nullptr, 0);
  EXPECT_EQ(segment.write_end(), 3u);
  EXPECT_EQ(memory.content(), "abc");
  EXPECT_EQ(memory.file().tell(), 1u);
}

TEST(VZippedSegmentTest, WritingEndTellsTheStoredSize) {
  AttachedFile memory("12345");
  memory.file().seek(5);
  VZippedSegment segment;
  segment.init_w(memory.file(), 3, no_limit);
  segment.write("abc", 3);
  const u64 size = segment.write_end();
  EXPECT_EQ(memory.content().size(), 5 + size);
  EXPECT_EQ(segment.get_cur_pos_file(), 5 + size);
  EXPECT_EQ(segment.write_end(), size);
}

TEST(VZippedSegmentTest, AWriteOfTwoBlocksAndAHalfGivesTwoFlushPoints) {
  AttachedFile memory;
  VZippedSegment segment;
  segment.init_w(memory.file(), 1, no_limit);
  segment.set_flush_block_size(1000);
  const std::string data = sample_data(2500, 3);
  segment.write(data.data(), 2500);
  u64 block_size = 0;
  EXPECT_EQ(segment.get_flush_positions(block_size).size(), 2u);
  EXPECT_EQ(block_size, 1000u);
  segment.write(data.data(), 499);
  EXPECT_EQ(segment.get_flush_positions(block_size).size(), 2u);
  segment.write(data.data(), 1);
  EXPECT_EQ(segment.get_flush_positions(block_size).size(), 3u);
}

TEST(VZippedSegmentTest, AWriteThatEndsOnABoundaryFlushesAtOnce) {
  AttachedFile memory;
  VZippedSegment segment;
  segment.init_w(memory.file(), 1, no_limit);
  segment.set_flush_block_size(1000);
  segment.write(sample_data(1000, 3).data(), 1000);
  u64 block_size = 0;
  ASSERT_EQ(segment.get_flush_positions(block_size).size(), 1u);
  EXPECT_EQ(segment.get_flush_positions(block_size)[0], segment.get_cur_pos_file());
  EXPECT_EQ(memory.content().size(), segment.get_cur_pos_file());
}

TEST(VZippedSegmentTest, AFlushPositionIsRelativeToTheBegin) {
  const std::string data = sample_data(3500, 3);
  const Written written(data, 4, 1000);
  const PlainStored plain = plain_write(data, 4, 1000, data.size(), default_chunk);
  EXPECT_EQ(written.begin(), 5u);
  EXPECT_EQ(written.flush_positions(), plain.flush_positions);
}

TEST(VZippedSegmentTest, BehindALastFlushPointOnlyTheEndMarkAndTheChecksumFollow) {
  const Written written(sample_data(3000, 3), 1, 1000);
  ASSERT_EQ(written.flush_positions().size(), 3u);
  const std::string rest = written.stored().substr(written.flush_positions()[2]);
  EXPECT_EQ(rest.size(), 6u);
  EXPECT_EQ(rest.substr(0, 2), std::string("\x03\x00", 2));
}

TEST(VZippedSegmentTest, AWriteOfNothingIsNothing) {
  AttachedFile memory;
  for (const int level : {0, 1, -1}) {
    VZippedSegment segment;
    segment.init_w(memory.file(), level, no_limit);
    segment.write("", 0);
    EXPECT_EQ(memory.content(), "");
  }
}

TEST(VZippedSegmentTest, WritingAfterTheEndIsRefusedByTheEngine) {
  AttachedFile memory;
  VZippedSegment segment;
  segment.init_w(memory.file(), 1, no_limit);
  segment.write_end();
  EXPECT_VREL_ERROR(segment.write("a", 1), "Zip error (id: -2)!", -10);
}

TEST(VZippedSegmentTest, AStreamThatIsNotFinishedLacksItsEnd) {
  AttachedFile memory;
  const std::string data = sample_data(3000, 3);
  {
    VZippedSegment segment;
    segment.init_w(memory.file(), 1, no_limit);
    segment.set_flush_block_size(3000);
    segment.write(data.data(), 3000);
  }
  const std::string stored = memory.content();
  EXPECT_EQ(stored, plain_write(data, 1, 3000, 3000, default_chunk).bytes.substr(0, stored.size()));
  VZippedSegment segment;
  segment.init_r(memory.file(), 1, 0, stored.size(), no_limit);
  testing::internal::CaptureStderr();
  EXPECT_EQ(read_bytes(segment, 3000), data);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Inconsistency in segment!\n");
}

// --- Reading

TEST(VZippedSegmentTest, AReadOfNothingTouchesNothing) {
  for (const int level : {0, 1, -1}) {
    AttachedFile memory("abc");
    VZippedSegment segment;
    segment.init_r(memory.file(), level, 1, 0, no_limit);
    memory.file().seek(2);
    segment.read(nullptr, 0);
    EXPECT_EQ(memory.file().tell(), 2u);
    EXPECT_EQ(segment.tell(), 0u);
  }
}

TEST(VZippedSegmentTest, ARawSegmentReadsItsBytesAlone) {
  AttachedFile memory("abcdef");
  VZippedSegment segment;
  segment.init_r(memory.file(), 0, 1, 4, no_limit);
  EXPECT_EQ(read_bytes(segment, 2), "bc");
  EXPECT_EQ(segment.get_cur_pos_file(), 3u);
  EXPECT_EQ(read_bytes(segment, 2), "de");
  memory.file().seek(0);
  EXPECT_VREL_ERROR(read_bytes(segment, 1), "Trying to read beyond segment boundary!", -1);
  EXPECT_EQ(memory.file().tell(), 0u);
  EXPECT_EQ(segment.tell(), 4u);
}

TEST(VZippedSegmentTest, ARawSegmentSeeksAnywhereAndReadsOnlyWithin) {
  AttachedFile memory("abcdef");
  VZippedSegment segment;
  segment.init_r(memory.file(), 0, 1, 4, no_limit);
  EXPECT_EQ(segment.seek(3), 3u);
  EXPECT_EQ(read_bytes(segment, 1), "e");
  for (const u64 target : {u64{4}, u64{5}, ~u64{0}, ~u64{0} - 1}) {
    EXPECT_EQ(segment.seek(target), target);
    EXPECT_EQ(segment.tell(), target);
    EXPECT_VREL_ERROR(read_bytes(segment, 1), "Trying to read beyond segment boundary!", -1);
  }
  segment.seek(0);
  EXPECT_EQ(read_bytes(segment, 4), "bcde");
}

TEST(VZippedSegmentTest, ASeekIsForReadingAndBelowTheLimit) {
  for (const int level : {0, 1}) {
    Written written("abcdef", level, 0);
    VZippedSegment segment;
    written.open(segment, 6);
    EXPECT_EQ(segment.seek(5), 5u);
    EXPECT_VREL_ERROR(segment.seek(6), "Invalid position in segment!", -1);
    EXPECT_VREL_ERROR(segment.seek(~u64{0}), "Invalid position in segment!", -1);
    EXPECT_EQ(read_bytes(segment, 1), "f");
    EXPECT_VREL_ERROR(segment.seek(6), "Invalid position in segment!", -1);
    EXPECT_VREL_ERROR(read_bytes(segment, 1), "Trying to read beyond segment boundary!", -1);
    segment.init_w(written.file(), level, no_limit);
    EXPECT_VREL_ERROR(segment.seek(0), "Trying to seek in write mode!", -1);
  }
}

TEST(VZippedSegmentTest, RandomSeeksAndReadsGiveThePlainBytes) {
  const std::string data = sample_data(300000, 7);
  for (const u64 block_size : {u64{0}, u64{1000}, u64{65536}}) {
    for (const unsigned chunk_size : {4096u, default_chunk}) {
      Written written(data, 1, block_size, 100000, chunk_size);
      VZippedSegment segment;
      written.open(segment, size_of(data));
      std::mt19937 random(11);
      for (int i = 0; i < (block_size == 0 ? 100 : 1000); ++i) {
        const std::size_t position = random() % data.size();
        segment.seek(position);
        for (std::size_t at = position; at < data.size() && random() % 4 != 0;) {
          const std::size_t size = std::min<std::size_t>(random() % 3000, data.size() - at);
          ASSERT_EQ(read_bytes(segment, size), data.substr(at, size)) << "seed 11, " << position;
          at += size;
          ASSERT_EQ(segment.tell(), at);
        }
      }
    }
  }
}

TEST(VZippedSegmentTest, ASeekToABlockStartsAtItsFlushPoint) {
  const std::string data = sample_data(10500, 8);
  Written written(data, 1, 1000);
  VZippedSegment segment;
  written.open(segment);
  for (const std::size_t k : {7u, 3u, 10u, 1u}) {
    EXPECT_EQ(segment.seek(1000 * k), 1000 * k);
    EXPECT_EQ(segment.get_cur_pos_file(), written.begin() + written.flush_positions()[k - 1]);
    EXPECT_EQ(read_bytes(segment, 400), data.substr(1000 * k, 400));
  }
}

TEST(VZippedSegmentTest, ASeekFetchesNoMoreThanItsBlock) {
  const std::string data = sample_data(200000, 8);
  Written written(data, 1, 50000);
  VZippedSegment segment;
  written.open(segment, size_of(data));
  segment.seek(120000);
  read_bytes(segment, 100);
  EXPECT_EQ(segment.get_cur_pos_file(), written.begin() + written.flush_positions()[2]);
  segment.seek(99990);
  read_bytes(segment, 20);
  EXPECT_EQ(segment.get_cur_pos_file(), written.begin() + written.flush_positions()[2]);
}

TEST(VZippedSegmentTest, AReadFetchesNoFurtherThanTheBlockOfItsLastByte) {
  const std::string data = sample_data(200000, 8);
  for (const unsigned chunk_size : {1000u, 40000u, default_chunk}) {
    Written written(data, 1, 50000, 200000, chunk_size);
    VZippedSegment segment;
    written.open(segment, size_of(data));
    segment.seek(50000);
    EXPECT_EQ(read_bytes(segment, 99000), data.substr(50000, 99000));
    EXPECT_LE(segment.get_cur_pos_file(), written.begin() + written.flush_positions()[2]);
  }
}

TEST(VZippedSegmentTest, AFirstReadWithoutFlushPointsFetchesAboutWhatIsWanted) {
  const std::string noise = [] {
    std::mt19937 random(3);
    std::string bytes(1000000, '\0');
    for (char& byte : bytes) byte = static_cast<char>(random());
    return bytes;
  }();
  Written written(noise, 1, 0);
  VZippedSegment segment;
  written.open(segment);
  read_bytes(segment, 100);
  EXPECT_EQ(segment.get_cur_pos_file(), written.begin() + 32768);
  EXPECT_EQ(read_bytes(segment, 999900), noise.substr(100));
}

TEST(VZippedSegmentTest, ASeekToThePresentPositionLeavesTheStreamAlone) {
  const std::string data = sample_data(10500, 8);
  Written written(data, 1, 1000);
  VZippedSegment segment;
  written.open(segment);
  segment.seek(5500);
  const u64 place = segment.get_cur_pos_file();
  // A restart would need these.
  segment.set_flush_positions({~u64{0}}, 1000);
  EXPECT_EQ(segment.seek(5500), 5500u);
  EXPECT_EQ(segment.get_cur_pos_file(), place);
  EXPECT_EQ(read_bytes(segment, 100), data.substr(5500, 100));
}

TEST(VZippedSegmentTest, ASeekForwardInABlockFallsBackToItsStart) {
  const std::string data = sample_data(10500, 8);
  Written written(data, 1, 1000);
  VZippedSegment segment;
  written.open(segment);
  segment.seek(5500);
  segment.set_flush_positions({0, 0, 0, 0, ~u64{0}}, 1000);
  EXPECT_VREL_ERROR(segment.seek(5510), "Inconsistency in segment!", -10);
}

TEST(VZippedSegmentTest, AtTheStartOfABlockASeekForwardInItGoesOn) {
  const std::string data = sample_data(10500, 8);
  Written written(data, 1, 1000);
  VZippedSegment segment;
  written.open(segment);
  segment.seek(5000);
  segment.set_flush_positions({0, 0, 0, 0, ~u64{0}}, 1000);
  EXPECT_EQ(segment.seek(5010), 5010u);
  EXPECT_EQ(read_bytes(segment, 100), data.substr(5010, 100));
}

TEST(VZippedSegmentTest, BehindTheLastFlushPointReadsToTheEndWithoutError) {
  for (const std::size_t length : {10500u, 10000u}) {
    const std::string data = sample_data(length, 8);
    Written written(data, 1, 1000);
    VZippedSegment segment;
    written.open(segment);
    segment.seek(length - 1);
    EXPECT_FALSE(warns([&] { EXPECT_EQ(read_bytes(segment, 1), data.substr(length - 1)); }));
    segment.seek(length);
    EXPECT_EQ(segment.tell(), length);
    EXPECT_VREL_ERROR(read_bytes(segment, 1), "Inconsistency in segment!", -10);
  }
}

TEST(VZippedSegmentTest, ASeekToTheBeginReturnsToTheWholeStream) {
  const std::string data = sample_data(10500, 8);
  for (const u64 block_size : {u64{0}, u64{1000}}) {
    Written written(data, 1, block_size);
    VZippedSegment segment;
    written.open(segment);
    segment.seek(7300);
    EXPECT_EQ(segment.seek(0), 0u);
    EXPECT_EQ(read_bytes(segment, data.size()), data);
  }
}

TEST(VZippedSegmentTest, WithoutFlushPointsASeekBackRestartsAtTheBegin) {
  const std::string data = sample_data(10500, 8);
  Written written(data, 1, 0);
  VZippedSegment segment;
  written.open(segment);
  read_bytes(segment, 9000);
  segment.seek(300);
  EXPECT_EQ(read_bytes(segment, 9000), data.substr(300, 9000));
}

TEST(VZippedSegmentTest, SegmentsOnOneFileDoNotDisturbEachOther) {
  const std::string data = sample_data(100000, 9);
  const std::string other(data.rbegin(), data.rend());
  AttachedFile memory;
  const PlainStored first_stored = plain_write(data, 1, 5000, 100000, default_chunk);
  const PlainStored second_stored = plain_write(other, 6, 0, 100000, default_chunk);
  memory.set_content(first_stored.bytes + second_stored.bytes + data);
  const u64 second_begin = first_stored.bytes.size();
  const u64 third_begin = second_begin + second_stored.bytes.size();
  memory.file().set_chunk_size(1000);
  VZippedSegment first;
  VZippedSegment second;
  VZippedSegment third;
  first.init_r(memory.file(), 1, 0, second_begin, 100000);
  first.set_flush_positions(first_stored.flush_positions, 5000);
  second.init_r(memory.file(), 6, second_begin, second_stored.bytes.size(), 100000);
  third.init_r(memory.file(), 0, third_begin, data.size(), 100000);
  for (std::size_t at = 0; at < data.size(); at += 500) {
    ASSERT_EQ(read_bytes(first, 500), data.substr(at, 500));
    ASSERT_EQ(read_bytes(second, 500), other.substr(at, 500));
    ASSERT_EQ(read_bytes(third, 500), data.substr(at, 500));
    if (at % 7000 == 0) first.seek(0);
    first.seek(std::min<u64>(at + 500, 99999));
  }
}

TEST(VZippedSegmentTest, WritersTakeTheirTurnsWithReadersOnOneFile) {
  const std::string data = sample_data(50000, 9);
  Written written(data, 1, 1000);
  VZippedSegment reader;
  written.open(reader);
  VZippedSegment writer;
  written.file().seek(~u64{0});
  const u64 begin = writer.init_w(written.file(), 1, no_limit);
  for (std::size_t at = 0; at < data.size(); at += 500) {
    const std::string bytes = read_bytes(reader, 500);
    writer.write(bytes.data(), 500);
  }
  const u64 size = writer.write_end();
  reader.init_r(written.file(), 1, begin, size, no_limit);
  EXPECT_EQ(read_bytes(reader, data.size()), data);
}

TEST(VZippedSegmentTest, WithABlockSizeOfZeroATableIsNotUsed) {
  const std::string data = sample_data(5000, 8);
  Written written(data, 1, 1000);
  VZippedSegment segment;
  written.open(segment, 5000);
  segment.set_flush_positions({~u64{0}, ~u64{0}}, 0);
  EXPECT_EQ(segment.seek(2500), 2500u);
  EXPECT_EQ(segment.seek(300), 300u);
  EXPECT_EQ(read_bytes(segment, 4700), data.substr(300));
}

TEST(VZippedSegmentTest, TextsPassThroughASegmentLikeThroughAFile) {
  for (const int level : {0, 1}) {
    AttachedFile memory;
    VZippedSegment segment;
    segment.init_w(memory.file(), level, no_limit);
    segment.write_str("with its length", true);
    segment.write_str("", false);
    segment.write_str("", true);
    segment.write_str("bare", false);
    const u64 size = segment.write_end();
    segment.init_r(memory.file(), level, 0, size, no_limit);
    std::string text;
    segment.read_str(text, 0xFFFFFFFF);
    EXPECT_EQ(text, "with its length");
    segment.read_str(text, 0xFFFFFFFF);
    EXPECT_EQ(text, "");
    segment.read_str(text, 4);
    EXPECT_EQ(text, "bare");
  }
}

TEST(VZippedSegmentTest, ATextBehindTheBoundaryIsRefusedInTheWordsOfTheSegment) {
  for (const int level : {0, 1}) {
    Written written("abcdef", level, 0);
    VZippedSegment segment;
    written.open(segment, 6);
    std::string text;
    for (const unsigned length : {7u, 100000000u}) {
      EXPECT_VREL_ERROR(segment.read_str(text, length), "Trying to read beyond segment boundary!",
                        -1);
    }
    segment.read_str(text, 6);
    EXPECT_EQ(text, "abcdef");
  }
}

// Counts what passes through the virtual read.
class CountingSegment : public VZippedSegment {
 public:
  using VZippedSegment::initialize;
  void read(void* buffer, unsigned size) override {
    counted += size;
    VZippedSegment::read(buffer, size);
  }
  u64 counted = 0;
};

TEST(VZippedSegmentTest, ASeekSkipsThroughTheVirtualReadFromItsStartOn) {
  Written written(sample_data(300000, 8), 1, 100000);
  CountingSegment segment;
  written.open(segment);
  segment.seek(199999);
  EXPECT_EQ(segment.counted, 99999u);
  segment.counted = 0;
  segment.seek(200000);
  EXPECT_EQ(segment.counted, 0u);
}

TEST(VZippedSegmentTest, WhatInitializesBothDirectionsIsThereForDerivedClasses) {
  AttachedFile memory("abcdef");
  CountingSegment segment;
  segment.initialize(memory.file(), 0, 2, 3, false, no_limit);
  EXPECT_EQ(segment.is_initialized(), 1);
  EXPECT_EQ(read_bytes(segment, 3), "cde");
  segment.initialize(memory.file(), 0, 1, ~u64{0}, true, 2);
  EXPECT_EQ(segment.is_initialized(), 2);
  segment.write("XY", 2);
  EXPECT_VREL_ERROR(segment.write("Z", 1), "Trying to write beyond segment boundary!", -1);
  EXPECT_EQ(memory.content(), "aXYdef");
}

// --- States and refusals

TEST(VZippedSegmentTest, TellsItsState) {
  AttachedFile memory("abc");
  VZippedSegment segment;
  EXPECT_EQ(segment.is_initialized(), 0);
  segment.init_r(memory.file(), 1, 0, 3, no_limit);
  EXPECT_EQ(segment.is_initialized(), 1);
  segment.init_w(memory.file(), 1, no_limit);
  EXPECT_EQ(segment.is_initialized(), 2);
  segment.end();
  segment.end();
  EXPECT_EQ(segment.is_initialized(), 0);
}

TEST(VZippedSegmentTest, ASegmentThatWasEndedStartsAfresh) {
  const std::string data = sample_data(5000, 1);
  Written written(data, 1, 1000);
  VZippedSegment segment;
  for (int i = 0; i < 2; ++i) {
    written.open(segment);
    EXPECT_EQ(segment.tell(), 0u);
    EXPECT_EQ(read_bytes(segment, 5000), data);
  }
  segment.end();
  u64 block_size = 5;
  EXPECT_TRUE(segment.get_flush_positions(block_size).empty());
  EXPECT_EQ(block_size, 0u);
}

TEST(VZippedSegmentTest, ACopyOfASegmentWithoutAFileStartsOnItsOwn) {
  const VZippedSegment segment;
  VZippedSegment copy(segment);
  Written written("abc", 1, 0);
  written.open(copy);
  EXPECT_EQ(segment.is_initialized(), 0);
  EXPECT_EQ(read_bytes(copy, 3), "abc");
}

TEST(VZippedSegmentTest, WithoutAFileEveryOperationIsRefused) {
  VZippedSegment segment;
  char byte = 0;
  EXPECT_VREL_ERROR(segment.read(&byte, 1), "File not open!", -1);
  EXPECT_VREL_ERROR(segment.write(&byte, 1), "File not open!", -1);
  EXPECT_VREL_ERROR(segment.seek(1), "File not open!", -1);
  EXPECT_VREL_ERROR(segment.write_end(), "File not open!", -1);
}

TEST(VZippedSegmentTest, AClosedFileIsRefused) {
  VFile file;
  AttachedFile memory;
  VZippedSegment segment;
  segment.init_r(memory.file(), 1, 0, 0, no_limit);
  EXPECT_VREL_ERROR(segment.init_r(file, 1, 0, 0, no_limit), "File not open!", -1);
  EXPECT_EQ(segment.is_initialized(), 0);
  EXPECT_VREL_ERROR(segment.init_w(file, 1, no_limit), "File not open!", -1);
}

TEST(VZippedSegmentTest, AFileThatCannotBeWrittenLeavesTheSegmentAsItWas) {
  AttachedFile memory("abc");
  VZippedSegment segment;
  segment.init_r(memory.file(), 0, 0, 3, no_limit);
  const TemporaryFile temporary("other");
  VFile for_reading(temporary.name(), VFile::mode_read);
  EXPECT_VREL_ERROR(segment.init_w(for_reading, 0, no_limit), "Trying to write in read mode!", -1);
  VFile closed;
  EXPECT_VREL_ERROR(segment.init_w(closed, 0, no_limit), "File not open!", -1);
  EXPECT_EQ(segment.is_initialized(), 1);
  EXPECT_EQ(read_bytes(segment, 3), "abc");
}

TEST(VZippedSegmentTest, AnErrorLeavesTheSegmentInitialised) {
  const std::string data = sample_data(5000, 1);
  Written written(data, 1, 0);
  VZippedSegment segment;
  segment.init_r(written.file(), 1, written.begin(), written.size() / 2, no_limit);
  EXPECT_VREL_ERROR(read_bytes(segment, 5000), "Trying to read beyond segment boundary!", -1);
  EXPECT_EQ(segment.is_initialized(), 1);
  EXPECT_EQ(segment.tell(), 0u);
  segment.init_w(written.file(), 42, no_limit);
  EXPECT_VREL_ERROR(segment.write("a", 1), "Zip error (id: -2)!", -10);
  EXPECT_EQ(segment.is_initialized(), 2);
}

TEST(VZippedSegmentTest, AFileClosedUnderASegmentIsRefused) {
  const TemporaryFile temporary(std::string(100, 'a'));
  VFile file(temporary.name(), VFile::mode_read);
  VZippedSegment raw;
  raw.init_r(file, 0, 0, 100, no_limit);
  VZippedSegment zipped;
  zipped.init_r(file, 1, 0, 100, no_limit);
  file.close();
  EXPECT_VREL_ERROR(read_bytes(raw, 1), "File not open!", -1);
  EXPECT_VREL_ERROR(read_bytes(zipped, 1), "File not open!", -1);
}

TEST(VZippedSegmentTest, AFileForReadingIsNotWritten) {
  const TemporaryFile temporary("abc");
  VFile file(temporary.name(), VFile::mode_read);
  VZippedSegment segment;
  EXPECT_VREL_ERROR(segment.init_w(file, 1, no_limit), "Trying to write in read mode!", -1);
}

TEST(VZippedSegmentTest, AReaderDoesNotWrite) {
  for (const int level : {0, 1}) {
    AttachedFile memory("abc");
    VZippedSegment segment;
    segment.init_r(memory.file(), level, 0, 3, no_limit);
    const char* const text = "Trying to write to file in read mode!";
    EXPECT_VREL_ERROR(segment.write("a", 1), text, -1);
    EXPECT_VREL_ERROR(segment.write(nullptr, 0), text, -1);
    EXPECT_VREL_ERROR(segment.write_end(), text, -1);
  }
}

TEST(VZippedSegmentTest, AWriterDoesNotRead) {
  for (const int level : {0, 1}) {
    AttachedFile memory("abc");
    VZippedSegment segment;
    segment.init_w(memory.file(), level, no_limit);
    char byte = 0;
    const char* const text = "Trying to read from file in write mode!";
    EXPECT_VREL_ERROR(segment.read(&byte, 1), text, -1);
    EXPECT_VREL_ERROR(segment.read(&byte, 0), text, -1);
  }
}

TEST(VZippedSegmentTest, NothingIsWrittenPastTheLimit) {
  for (const int level : {0, 1}) {
    AttachedFile memory;
    VZippedSegment segment;
    segment.init_w(memory.file(), level, 5);
    segment.write("abc", 3);
    EXPECT_VREL_ERROR(segment.write("def", 3), "Trying to write beyond segment boundary!", -1);
    EXPECT_VREL_ERROR(segment.write("def", ~0u), "Trying to write beyond segment boundary!", -1);
    segment.write("de", 2);
    EXPECT_VREL_ERROR(segment.write("f", 1), "Trying to write beyond segment boundary!", -1);
    const u64 size = segment.write_end();
    segment.init_r(memory.file(), level, 0, size, no_limit);
    EXPECT_EQ(read_bytes(segment, 5), "abcde");
  }
}

TEST(VZippedSegmentTest, NothingIsReadPastTheLimit) {
  for (const int level : {0, 1}) {
    Written written("abcdef", level, 0);
    VZippedSegment segment;
    written.open(segment, 4);
    EXPECT_VREL_ERROR(read_bytes(segment, 5), "Trying to read beyond segment boundary!", -1);
    EXPECT_EQ(read_bytes(segment, 4), "abcd");
    EXPECT_VREL_ERROR(read_bytes(segment, 1), "Trying to read beyond segment boundary!", -1);
    EXPECT_VREL_ERROR(segment.read(nullptr, ~0u), "Trying to read beyond segment boundary!", -1);
    segment.read(nullptr, 0);
  }
}

TEST(VZippedSegmentTest, TheFlushBlockSizeIsForAWriterThatHasNotStarted) {
  const char* const not_writing = "Setting flush block size only possible in write mode!";
  const char* const started = "Setting flush block size not possible after writing has started!";
  AttachedFile memory;
  VZippedSegment segment;
  EXPECT_VREL_ERROR(segment.set_flush_block_size(1), not_writing, -1);
  segment.init_r(memory.file(), 1, 0, 0, no_limit);
  EXPECT_VREL_ERROR(segment.set_flush_block_size(1), not_writing, -1);
  segment.init_w(memory.file(), 1, no_limit);
  segment.set_flush_block_size(1);
  segment.set_flush_block_size(2);
  segment.write("a", 1);
  EXPECT_VREL_ERROR(segment.set_flush_block_size(1), started, -1);
}

TEST(VZippedSegmentTest, TheFlushTableIsForAReader) {
  const char* const text = "Setting flush positions when writing.";
  AttachedFile memory;
  VZippedSegment segment;
  EXPECT_VREL_ERROR(segment.set_flush_positions({}, 1), text, -1);
  segment.init_w(memory.file(), 1, no_limit);
  EXPECT_VREL_ERROR(segment.set_flush_positions({}, 1), text, -1);
  segment.init_r(memory.file(), 1, 0, 0, no_limit);
  segment.set_flush_positions({3, 4}, 10);
  u64 block_size = 0;
  EXPECT_EQ(segment.get_flush_positions(block_size), (std::vector<u64>{3, 4}));
  EXPECT_EQ(block_size, 10u);
}

// --- Levels and chunk sizes that are none

TEST(VZippedSegmentTest, ALevelBelowZeroHasNoStream) {
  Written written("abc", 1, 0);
  VZippedSegment segment;
  segment.init_r(written.file(), -1, written.begin(), written.size(), no_limit);
  EXPECT_VREL_ERROR(read_bytes(segment, 1), "Zip error (-2)!", -10);
  EXPECT_VREL_ERROR(segment.seek(1), "Zip error (-2)!", -10);
  segment.init_w(written.file(), -1, no_limit);
  EXPECT_VREL_ERROR(segment.write("a", 1), "Zip error (id: -2)!", -10);
  EXPECT_VREL_ERROR(segment.write_end(), "Zip error (id: -2)!", -10);
}

TEST(VZippedSegmentTest, ALevelThatTheEngineDoesNotHaveReadsButDoesNotWrite) {
  Written written("abc", 1, 0);
  VZippedSegment segment;
  segment.init_r(written.file(), 42, written.begin(), written.size(), no_limit);
  EXPECT_EQ(read_bytes(segment, 3), "abc");
  segment.init_w(written.file(), 42, no_limit);
  EXPECT_VREL_ERROR(segment.write("a", 1), "Zip error (id: -2)!", -10);
  EXPECT_VREL_ERROR(segment.write_end(), "Zip error (id: -2)!", -10);
}

TEST(VZippedSegmentTest, WithoutAChunkOnlyRawSegmentsWork) {
  Written written("abc", 1, 0);
  written.file().set_chunk_size(0);
  VZippedSegment segment;
  segment.init_r(written.file(), 1, written.begin(), written.size(), no_limit);
  EXPECT_VREL_ERROR(read_bytes(segment, 1), "Zip error (-5)!", -10);
  EXPECT_VREL_ERROR(segment.seek(2), "Zip error (-5)!", -10);
  segment.init_w(written.file(), 1, no_limit);
  EXPECT_VREL_ERROR(segment.write("a", 1), "Zip error (id: -5)!", -10);
  EXPECT_VREL_ERROR(segment.write_end(), "Zip error (id: -5)!", -10);
  segment.init_r(written.file(), 0, 0, 5, no_limit);
  EXPECT_EQ(read_bytes(segment, 5), "other");
}

TEST(VZippedSegmentTest, AChunkSizeCountsFromTheStart) {
  const std::string data = sample_data(5000, 1);
  Written written(data, 1, 0);
  VZippedSegment segment;
  written.open(segment);
  written.file().set_chunk_size(0);
  segment.seek(3000);
  EXPECT_EQ(read_bytes(segment, 2000), data.substr(3000));
}

// --- Hostile numbers

TEST(VZippedSegmentTest, APlaceThatNoFileReachesIsAnError) {
  const char* const text = "Invalid stack position specified in header!";
  AttachedFile memory("abc");
  for (const int level : {0, 1}) {
    for (const u64 begin : {~u64{0} - 5, u64{1} << 63}) {
      VZippedSegment segment;
      segment.init_r(memory.file(), level, begin, 100, no_limit);
      if (level == 0 && begin > u64{1} << 63) {
        EXPECT_VREL_ERROR(read_bytes(segment, 6), "Trying to read beyond segment boundary!", -1);
      }
      EXPECT_VREL_ERROR(read_bytes(segment, 5), text, -4);
    }
  }
}

TEST(VZippedSegmentTest, ABeginOfAllOnesHoldsNothing) {
  AttachedFile memory("abc");
  VZippedSegment segment;
  segment.init_r(memory.file(), 0, ~u64{0}, 100, no_limit);
  EXPECT_VREL_ERROR(read_bytes(segment, 1), "Trying to read beyond segment boundary!", -1);
  segment.init_r(memory.file(), 1, ~u64{0}, 100, no_limit);
  EXPECT_VREL_ERROR(read_bytes(segment, 1), "Zip error (-5)!", -10);
}

TEST(VZippedSegmentTest, AnEndBehindThatOfTheFileFailsInTheFile) {
  const std::string data = sample_data(5000, 1);
  const PlainStored plain = plain_write(data, 1, 0, 5000, default_chunk);
  AttachedFile memory(plain.bytes);
  for (const u64 size : {u64{plain.bytes.size() + 1}, u64{20000}, u64{1} << 40, ~u64{0}}) {
    VZippedSegment segment;
    segment.init_r(memory.file(), 1, 0, size, 5000);
    const u64 fetched = std::min<u64>(size, default_chunk);
    EXPECT_VREL_ERROR(read_bytes(segment, 5000),
                      "Failed reading " + std::to_string(fetched) + " bytes from file!", -3);
  }
}

TEST(VZippedSegmentTest, AFlushPointOutsideTheStoredBytesIsAnErrorWhenItIsUsed) {
  const std::string data = sample_data(5000, 1);
  Written written(data, 1, 1000);
  for (const u64 position : {written.size() + 1, ~u64{0}}) {
    VZippedSegment segment;
    written.open(segment);
    segment.set_flush_positions({position, written.flush_positions()[1], 0}, 1000);
    EXPECT_VREL_ERROR(segment.seek(1500), "Inconsistency in segment!", -10);
    EXPECT_EQ(segment.seek(2500), 2500u);
    EXPECT_EQ(read_bytes(segment, 100), data.substr(2500, 100));
    EXPECT_EQ(segment.seek(0), 0u);
    EXPECT_EQ(read_bytes(segment, 5000), data);
  }
}

TEST(VZippedSegmentTest, AFlushPointAtTheEndOfTheStoredBytesHasNothingToDecode) {
  Written written(sample_data(5000, 1), 1, 1000);
  VZippedSegment segment;
  written.open(segment);
  segment.set_flush_positions({written.size()}, 1000);
  EXPECT_VREL_ERROR(segment.seek(1500), "Zip error (-5)!", -10);
}

TEST(VZippedSegmentTest, AFlushBlockSizeBeyondAnyPositionNeverFlushes) {
  AttachedFile memory;
  VZippedSegment segment;
  segment.init_w(memory.file(), 1, no_limit);
  segment.set_flush_block_size(~u64{0});
  segment.write("abc", 3);
  u64 block_size = 0;
  EXPECT_TRUE(segment.get_flush_positions(block_size).empty());
}

}  // namespace
