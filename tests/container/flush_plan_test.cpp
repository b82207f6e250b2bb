// Where flush points fall in stacks of given sizes.
#include "container/flush_plan_internal.h"

#include <gtest/gtest.h>

#include <functional>
#include <numeric>
#include <random>
#include <vector>

namespace {

using Vrel::detail::automatic_block_size;
using Vrel::detail::choose_flush_block_size;

u64 size_of(u64 sample_size, const std::vector<unsigned>& sizes) {
  return std::accumulate(sizes.begin(), sizes.end(), sample_size, std::multiplies<>());
}

u64 plan(u64 sample_size, const std::vector<unsigned>& sizes) {
  return choose_flush_block_size(automatic_block_size, size_of(sample_size, sizes), sample_size,
                                 sizes);
}

TEST(FlushPlanTest, SmallStacksHaveNoFlushPoints) {
  EXPECT_EQ(plan(1, {65535}), 0u);
  EXPECT_EQ(plan(8, {}), 0u);
  EXPECT_EQ(plan(8, {100, 0}), 0u);
  EXPECT_EQ(choose_flush_block_size(1000, 65535, 1, {65535}), 0u);
  EXPECT_EQ(plan(1, {65536}), 65536u);
}

TEST(FlushPlanTest, AWantedSizeStays) {
  EXPECT_EQ(choose_flush_block_size(1000, 65536, 1, {65536}), 1000u);
  EXPECT_EQ(choose_flush_block_size(0, 65536, 1, {65536}), 0u);
}

TEST(FlushPlanTest, ABlockInTheRangeIsAWholeNumberOfRows) {
  EXPECT_EQ(plan(1, {262144}), 262144u);
  EXPECT_EQ(plan(2, {100, 1000, 50}), 200000u);
  EXPECT_EQ(plan(1, {1, 1, 70000, 3}), 70000u);
}

TEST(FlushPlanTest, ALargerBlockIsDividedAlongItsLastDimension) {
  EXPECT_EQ(plan(8, {512, 512}), 262144u);
  EXPECT_EQ(plan(1, {1000, 1000}), 250000u);
}

TEST(FlushPlanTest, WithoutADivisorInTheRangeItIsOneStepBack) {
  // 7001 is prime: block / 13 is 65933, and block / 14 is below 64 KiB.
  const u64 block = 7001ULL * 4 * 31;
  ASSERT_GT(block, 262144u);
  EXPECT_EQ(plan(4 * 31, {7001}), block / 13);
}

TEST(FlushPlanTest, AGreatBlockIsPlannedAtOnce) {
  EXPECT_EQ(plan(16, {65521, 65537}), plan(16, {65521, 65537, 1}));
  const u64 block = plan(16, {4294967291U});
  EXPECT_GE(block, 65536u);
}

// The rule as it is told, step by step.
u64 slow_plan(u64 sample_size, const std::vector<unsigned>& sizes) {
  if (size_of(sample_size, sizes) < 65536) return 0;
  u64 block = sample_size;
  u64 last = 1;
  for (const unsigned size : sizes) {
    if (block >= 65536) break;
    block *= size;
    last = size;
  }
  if (block <= 262144) return block;
  for (u64 v = 2;; ++v) {
    if (block / v > 262144) continue;
    if (block / v < 65536) return v == 2 ? 65536 : block / (v - 1);
    if (last % v == 0) return block / v;
  }
}

TEST(FlushPlanTest, TheShortWayGivesWhatTheRuleGives) {
  std::mt19937 random(20);
  for (int round = 0; round < 3000; ++round) {
    const u64 sample_size = u64{1} << (random() % 5);
    std::vector<unsigned> sizes(1 + random() % 3);
    for (unsigned& size : sizes)
      size = 1 + static_cast<unsigned>(random() % (1u << (random() % 22)));
    SCOPED_TRACE("round " + std::to_string(round));
    ASSERT_EQ(plan(sample_size, sizes), slow_plan(sample_size, sizes));
  }
}

}  // namespace
