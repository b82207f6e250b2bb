// Damaged streams: whatever happens is what the plain form of the segment does.
#include <gtest/gtest.h>
#include <vrelio/file/zipped_segment.h>

#include <random>
#include <string>
#include <vector>

#include "file/plain_segment.h"
#include "file/segment_outcome.h"
#include "file/segment_samples.h"
#include "support/attached_file.h"

namespace {

using Vrel::testing::AttachedFile;
using Vrel::testing::default_chunk;
using Vrel::testing::Outcome;
using Vrel::testing::plain_outcome;
using Vrel::testing::plain_write;
using Vrel::testing::PlainReader;
using Vrel::testing::PlainStored;
using Vrel::testing::sample_data;
using Vrel::testing::segment_outcome;
using Vrel::testing::Step;

constexpr unsigned no_limit = VZippedSegment::no_limit;

struct Case {
  std::string stored;
  std::vector<u64> flush_positions;
  u64 block_size = 0;
  unsigned limit = no_limit;
  unsigned chunk_size = default_chunk;
  std::vector<Step> steps;
};

class VZippedSegmentDamageTest : public testing::Test {
 protected:
  void SetUp() override { testing::internal::CaptureStderr(); }
  void TearDown() override { testing::internal::GetCapturedStderr(); }

  // Up to the first error, behind which the state is nobody's.
  void compare(const Case& sample) {
    memory_.set_content("front" + sample.stored + "behind");
    memory_.file().set_chunk_size(sample.chunk_size);
    VZippedSegment segment;
    segment.init_r(memory_.file(), 1, 5, sample.stored.size(), sample.limit);
    segment.set_flush_positions(sample.flush_positions, sample.block_size);
    PlainReader plain(sample.stored, sample.chunk_size, sample.limit);
    plain.set_flush_positions(sample.flush_positions, sample.block_size);
    for (const Step& step : sample.steps) {
      const Outcome expected = plain_outcome(plain, step);
      ASSERT_EQ(segment_outcome(segment, step), expected)
          << (step.is_seek ? "seek " : "read ") << step.amount << ", chunk " << sample.chunk_size;
      if (!expected.error.empty()) return;
    }
  }

  void compare_with_all_chunks(Case sample) {
    for (const unsigned chunk_size : {1u, 7u, 100u, 4096u, default_chunk}) {
      sample.chunk_size = chunk_size;
      ASSERT_NO_FATAL_FAILURE(compare(sample));
    }
  }

  AttachedFile memory_;
};

std::vector<std::vector<Step>> step_lists(u64 size) {
  std::vector<Step> bytewise(size + 1, Step{false, 1});
  std::vector<Step> odd(size / 37 + 2, Step{false, 37});
  return {{{false, size}, {false, 1}},
          bytewise,
          odd,
          {{true, size / 2}, {false, size - size / 2}},
          {{true, size - 1}, {false, 1}, {true, 3}, {false, 20}, {true, size}, {false, 1}}};
}

TEST_F(VZippedSegmentDamageTest, CutAtEveryLength) {
  const std::string data = sample_data(700, 21);
  const PlainStored plain = plain_write(data, 1, 300, 700, default_chunk);
  for (std::size_t length = 0; length <= plain.bytes.size(); ++length) {
    for (const unsigned limit : {no_limit, 700u}) {
      for (const auto& steps : step_lists(700)) {
        SCOPED_TRACE("cut at " + std::to_string(length));
        ASSERT_NO_FATAL_FAILURE(compare_with_all_chunks(
            {plain.bytes.substr(0, length), plain.flush_positions, 300, limit, 0, steps}));
      }
    }
  }
}

TEST_F(VZippedSegmentDamageTest, EveryBitFlipped) {
  const std::string data = sample_data(200, 22);
  const PlainStored plain = plain_write(data, 6, 90, 200, default_chunk);
  for (std::size_t bit = 0; bit < 8 * plain.bytes.size(); ++bit) {
    std::string stored = plain.bytes;
    stored[bit / 8] = static_cast<char>(stored[bit / 8] ^ (1 << bit % 8));
    for (const auto& steps : step_lists(200)) {
      SCOPED_TRACE("bit " + std::to_string(bit));
      ASSERT_NO_FATAL_FAILURE(
          compare_with_all_chunks({stored, plain.flush_positions, 90, no_limit, 0, steps}));
    }
  }
}

TEST_F(VZippedSegmentDamageTest, BytesBehindTheEnd) {
  const std::string data = sample_data(700, 23);
  const PlainStored plain = plain_write(data, 1, 300, 700, default_chunk);
  for (const std::size_t surplus : {1u, 4u, 5u, 40u}) {
    for (const auto& steps : step_lists(700)) {
      ASSERT_NO_FATAL_FAILURE(
          compare_with_all_chunks({plain.bytes + std::string(surplus, 'x'), plain.flush_positions,
                                   300, no_limit, 0, steps}));
    }
  }
}

// Sequences of small reads decode ahead, and no damage may show earlier or later for that.
TEST_F(VZippedSegmentDamageTest, RandomDamageInSequencesOfSmallReads) {
  constexpr std::size_t size = 40000;
  for (unsigned seed = 0; seed < 600; ++seed) {
    std::mt19937 random(seed);
    const u64 block_size = seed % 3 == 0 ? 0 : 9000;
    const PlainStored plain = plain_write(sample_data(size, seed % 10), 1 + int(seed % 9),
                                          block_size, size, default_chunk);
    std::string stored = plain.bytes;
    if (random() % 4 == 0) stored.resize(random() % stored.size());
    for (auto hits = random() % 3; hits > 0 && !stored.empty(); --hits) {
      char& byte = stored[random() % stored.size()];
      byte = static_cast<char>(byte ^ (1 << random() % 8));
    }
    std::vector<Step> steps;
    for (u64 position = 0; position < size + 500;) {
      if (random() % 60 == 0) {
        position = random() % size;
        steps.push_back({true, position});
      }
      const u64 amount = random() % 10 == 0 ? random() % 9000 : random() % 400;
      steps.push_back({false, amount});
      position += amount;
    }
    SCOPED_TRACE("seed " + std::to_string(seed));
    ASSERT_NO_FATAL_FAILURE(
        compare({stored, plain.flush_positions, block_size, no_limit, default_chunk, steps}));
  }
}

// A raw restart in front of matches that reach before it: the one failure that lies in the next
// byte itself.
TEST_F(VZippedSegmentDamageTest, AMatchThatReachesBeforeTheRestart) {
  const std::string noise = sample_data(3000, 24);
  const std::string data = noise + sample_data(20000, 25) + noise;
  const PlainStored plain = plain_write(data, 9, 0, data.size(), default_chunk);
  const std::string blocks = plain.bytes.substr(2);
  for (std::size_t whole = 0; whole < 600; ++whole) {
    std::vector<Step> steps = {{true, 1000}, {false, 50}};
    for (int i = 0; i < 1200; ++i) steps.push_back({false, 1 + (whole + u64(i)) % 40});
    SCOPED_TRACE(whole);
    ASSERT_NO_FATAL_FAILURE(
        compare({plain.bytes, {2 + whole}, 1000, no_limit, default_chunk, steps}));
  }
}

TEST_F(VZippedSegmentDamageTest, FlushTablesThatLie) {
  constexpr std::size_t size = 5000;
  const PlainStored plain = plain_write(sample_data(size, 26), 1, 1000, size, default_chunk);
  for (unsigned seed = 0; seed < 500; ++seed) {
    std::mt19937 random(seed);
    std::vector<u64> positions = plain.flush_positions;
    for (u64& position : positions) {
      if (random() % 2 == 0) position = random() % (plain.bytes.size() + 20);
    }
    std::vector<Step> steps;
    for (int i = 0; i < 20; ++i) {
      if (random() % 2 == 0) steps.push_back({true, random() % (size + 500)});
      steps.push_back({false, random() % 700});
    }
    SCOPED_TRACE("seed " + std::to_string(seed));
    ASSERT_NO_FATAL_FAILURE(
        compare_with_all_chunks({plain.bytes, positions, 1 + random() % 2000, no_limit, 0, steps}));
  }
}

TEST_F(VZippedSegmentDamageTest, ReadsOfOneByteAllTheWay) {
  const std::string data = sample_data(100000, 27);
  const PlainStored plain = plain_write(data, 1, 30000, data.size(), default_chunk);
  ASSERT_NO_FATAL_FAILURE(compare({plain.bytes, plain.flush_positions, 30000, 100000, default_chunk,
                                   std::vector<Step>(100001, Step{false, 1})}));
}

}  // namespace
