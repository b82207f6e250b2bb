// What a region and a stack have in common.
#pragma once

#include <vrelio/stack/region.h>

#include <cstdint>
#include <vector>

namespace Vrel::detail {

/// A run of indices; empty where `to` is not above `from`. Wide enough for every bound and size.
struct IndexSpan {
  std::int64_t from = 0;
  std::int64_t to = 0;
};

/// One axis of the stack together with the axis of the result that walks it.
struct AxisFit {
  IndexSpan source;  // of the stack; one index where the axis is held
  IndexSpan result;  // where these indices come to lie
  bool is_walked = false;
  unsigned int source_axis = 0;  // nothing where the stack has no such axis
  unsigned int result_axis = 0;  // nothing where the axis is held
};

struct RegionFit {
  std::vector<unsigned int> sizes;  // of the result
  bool is_inside = true;
  std::vector<AxisFit> axes;     // one per axis of the stack
  std::vector<AxisFit> missing;  // one per axis of the result that the stack does not have
};

/// Hold a region against a stack of these sizes; errors as those of `VStackRegion::validate`.
RegionFit fit_region(const VStackRegion& region, const std::vector<unsigned int>& sizes);

}  // namespace Vrel::detail
