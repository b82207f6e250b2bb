// A part of a stack: a range of indices on each axis.
#pragma once

#include <vrelio/file/file_access.h>

#include <vector>

namespace Vrel::tool {

/// Indices on one axis, half-open.
struct AxisRange {
  u64 first = 0;           ///< first index
  u64 end = 0;             ///< index behind the last
  bool is_single = false;  ///< asked for as one index, so that the axis goes away

  /// Number of indices.
  u64 size() const { return end - first; }
};

/// A range for each axis, the fastest first.
using Region = std::vector<AxisRange>;

/// Number of samples; 1 without axes.
inline u64 number_of_samples(const Region& region) {
  u64 number = 1;
  for (const AxisRange& range : region) number *= range.size();
  return number;
}

}  // namespace Vrel::tool
