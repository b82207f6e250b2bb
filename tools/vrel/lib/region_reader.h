// The samples of a region in the order in which they stand in the file.
#pragma once

#include <cstdint>
#include <vector>

#include "lib/region.h"
#include "lib/sample_copy.h"

namespace Vrel::tool {

/// Where the samples of a region stand in a stack: runs of samples that follow one another, each as
/// long as can be, in ascending order. A region of whole rows or planes has one run for each block of
/// them.
class RegionWalk {
 public:
  /// \param sizes  of the stack, the fastest axis first.
  /// \param region  within the stack, a range for each axis.
  RegionWalk(const std::vector<std::uint32_t>& sizes, const Region& region);

  /// The next run; one without samples once all have been given.
  SampleRange next();

 private:
  struct Axis {
    u64 size;
    u64 stride;
    u64 index;
  };

  void advance();

  std::vector<Axis> axes_;  ///< those that lead from run to run, the fastest first
  u64 position_ = 0;
  u64 run_ = 1;
  bool is_done_ = false;
};

/// Reads the samples of a region one after the other, never backwards, so that a compressed stack is
/// decoded once and no more of it than lies between the first sample of each run and its last.
class RegionReader {
 public:
  /// \param read  reads samples of the stack.
  /// \param sample_size  bytes of one sample.
  /// \param walk  where the region's samples stand.
  RegionReader(ReadSamples read, unsigned sample_size, RegionWalk walk);

  /// Read the next `count` samples, of which the region has to have so many left.
  void read(u64 count, void* destination);

 private:
  ReadSamples read_;
  unsigned sample_size_;
  RegionWalk walk_;
  SampleRange run_{0, 0};
};

}  // namespace Vrel::tool
