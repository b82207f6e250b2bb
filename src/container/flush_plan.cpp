#include "container/flush_plan_internal.h"

#include <algorithm>

namespace Vrel::detail {

namespace {

constexpr u64 least_block = 65536;
constexpr u64 largest_block = 262144;

// Intended: without a divisor in the range it is one step back, which may lie above the range and may
// divide nothing; FlushPlanTest.WithoutADivisorInTheRangeItIsOneStepBack. Half of a block that is too large is
// never too small, so there is a step to go back.
u64 divide_block(u64 block, u64 size) {
  u64 divisor = std::max<u64>(2, block / (largest_block + 1) + 1);
  while (block / divisor >= least_block) {
    if (size % divisor == 0) return block / divisor;
    ++divisor;
  }
  return block / (divisor - 1);
}

}  // namespace

u64 choose_flush_block_size(u64 wanted, u64 size, u64 sample_size,
                            const std::vector<unsigned>& sizes) {
  if (size < least_block) return 0;
  if (wanted != automatic_block_size) return wanted;
  u64 block = sample_size;
  u64 last_size = 1;
  for (const unsigned dimension : sizes) {
    if (block >= least_block) break;
    last_size = dimension;
    block *= dimension;
  }
  return block <= largest_block ? block : divide_block(block, last_size);
}

}  // namespace Vrel::detail
