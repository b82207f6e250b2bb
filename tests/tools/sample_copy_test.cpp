#include "lib/sample_copy.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>

#include "support/expect_error.h"

namespace Vrel::tool {
namespace {

using testing::ElementsAre;
using testing::Pair;

constexpr u64 huge = 18446744073709551615ull;
constexpr const char* beyond = "Trying to read beyond segment boundary!";

void expect_range(SampleRange range, u64 position, u64 count) {
  EXPECT_EQ(range.position, position);
  EXPECT_EQ(range.count, count);
}

class CollectedOutput : public Output {
 public:
  using Output::write;
  void write(const void* data, std::size_t size) override {
    content.append(static_cast<const char*>(data), size);
  }
  void finish() override {}

  std::string content;
};

TEST(SampleRangeTest, WhatIsNotGivenMeansAllThatIsLeft) {
  expect_range(choose_range(24, std::nullopt, std::nullopt), 0, 24);
  expect_range(choose_range(24, 10, std::nullopt), 10, 14);
  expect_range(choose_range(24, std::nullopt, 5), 0, 5);
  expect_range(choose_range(24, 20, 4), 20, 4);
}

TEST(SampleRangeTest, NoSamplesAtTheEndArePossible) {
  expect_range(choose_range(24, 24, std::nullopt), 24, 0);
  expect_range(choose_range(24, 24, 0), 24, 0);
  expect_range(choose_range(0, std::nullopt, std::nullopt), 0, 0);
}

TEST(SampleRangeTest, SamplesThatDoNotExistAreRefused) {
  EXPECT_VREL_ERROR(choose_range(24, 25, std::nullopt), beyond, -1);
  EXPECT_VREL_ERROR(choose_range(24, 25, 0), beyond, -1);
  EXPECT_VREL_ERROR(choose_range(24, std::nullopt, 25), beyond, -1);
  EXPECT_VREL_ERROR(choose_range(24, 20, 5), beyond, -1);
}

TEST(SampleRangeTest, SumsDoNotWrapAround) {
  EXPECT_VREL_ERROR(choose_range(24, 2, huge), beyond, -1);
  EXPECT_VREL_ERROR(choose_range(24, huge, 2), beyond, -1);
  EXPECT_VREL_ERROR(choose_range(24, huge, huge), beyond, -1);
}

// A stack whose samples are their own numbers, of `Sample` type.
template <class Sample>
std::string copied(SampleRange range, std::vector<std::pair<u64, u64>>& reads) {
  const auto read = [&](u64 position, u64 count, void* destination) {
    reads.emplace_back(position, count);
    for (u64 i = 0; i < count; ++i) {
      const auto sample = static_cast<Sample>(position + i);
      std::memcpy(static_cast<char*>(destination) + i * sizeof sample, &sample, sizeof sample);
    }
  };
  CollectedOutput output;
  ProgressBar progress(0, {}, std::chrono::steady_clock::now);
  copy_samples(read, sizeof(Sample), range, output, progress);
  return output.content;
}

TEST(SampleCopyTest, ASmallRangeIsOneRead) {
  std::vector<std::pair<u64, u64>> reads;
  EXPECT_EQ(copied<char>({'a', 5}, reads), "abcde");
  EXPECT_THAT(reads, ElementsAre(Pair('a', 5)));
}

TEST(SampleCopyTest, ALargeRangeGoesThroughBlocksOfFourMebibytes) {
  std::vector<std::pair<u64, u64>> reads;
  const std::string content = copied<u64>({7, 1200000}, reads);
  EXPECT_THAT(reads, ElementsAre(Pair(7, 524288), Pair(524295, 524288), Pair(1048583, 151424)));
  ASSERT_EQ(content.size(), 1200000u * 8);
  for (u64 i = 0; i < 1200000; ++i) {
    u64 sample = 0;
    std::memcpy(&sample, content.data() + i * 8, 8);
    ASSERT_EQ(sample, i + 7);
  }
}

TEST(SampleCopyTest, NoSamplesAreNoRead) {
  std::vector<std::pair<u64, u64>> reads;
  EXPECT_EQ(copied<char>({3, 0}, reads), "");
  EXPECT_TRUE(reads.empty());
}

}  // namespace
}  // namespace Vrel::tool
