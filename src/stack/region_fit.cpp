#include "stack/region_fit_internal.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <utility>

#include "foundation/raise_internal.h"
#include "stack/stack_errors_internal.h"

namespace Vrel::detail {
namespace {

// The bounds of an axis of the region; `size` is null where the stack has no such axis.
IndexSpan bounds_of(const VStackRegion& region, std::size_t axis, const unsigned int* size) {
  IndexSpan bounds = {region.from[axis], region.to[axis]};
  if (region.to[axis] == VStackRegion::end_of_axis)
    bounds.to = size != nullptr ? *size : bounds.from + 1;
  constexpr std::int64_t highest_size = std::numeric_limits<unsigned int>::max();
  if (bounds.to < bounds.from || bounds.to - bounds.from > highest_size) raise_invalid_region();
  return bounds;
}

std::vector<IndexSpan> all_bounds(const VStackRegion& region,
                                  const std::vector<unsigned int>& sizes) {
  if (region.from.size() != region.to.size()) raise_invalid_region();
  std::vector<IndexSpan> bounds;
  bounds.reserve(region.from.size());
  for (std::size_t axis = 0; axis < region.from.size(); ++axis)
    bounds.push_back(bounds_of(region, axis, axis < sizes.size() ? &sizes[axis] : nullptr));
  return bounds;
}

// Part of a walked axis: what lies before the stack or behind it has no element there.
void fit_walked(AxisFit& axis, const IndexSpan& bounds, std::int64_t size) {
  axis.source.from = std::max<std::int64_t>(bounds.from, 0);
  axis.source.to = std::clamp<std::int64_t>(bounds.to, 0, size);
  axis.result.from = axis.source.from - bounds.from;
  axis.result.to = axis.source.to - bounds.from;
}

// The one index at which an axis is held that the result does not have.
void fit_held(AxisFit& axis, std::int64_t index, std::int64_t size) {
  if (index >= 0 && index < size) axis.source = {index, index + 1};
}

// An axis that the stack does not have counts as one of size 1.
void fit_missing(AxisFit& axis, const IndexSpan& bounds) {
  if (bounds.from <= 0 && bounds.to > 0) axis.result = {-bounds.from, 1 - bounds.from};
}

class Fitter {
 public:
  Fitter(const VStackRegion& region, const std::vector<unsigned int>& sizes)
      : sizes_(sizes), bounds_(all_bounds(region, sizes)), is_taken_(bounds_.size()) {
    fit_.axes.resize(sizes.size());
    fit_.sizes.reserve(region.permutation.size());
    for (const unsigned int axis : region.permutation) walk(axis);
    hold_the_rest();
  }

  RegionFit take() { return std::move(fit_); }

 private:
  void walk(unsigned int source_axis) {
    if (source_axis >= bounds_.size() || is_taken_[source_axis])
      raise(id_mode, "Invalid permutation!");
    is_taken_[source_axis] = true;
    const IndexSpan& bounds = bounds_[source_axis];
    const auto result_axis = static_cast<unsigned int>(fit_.sizes.size());
    fit_.sizes.push_back(static_cast<unsigned int>(bounds.to - bounds.from));
    if (source_axis < sizes_.size()) {
      AxisFit& axis = fit_.axes[source_axis];
      const std::int64_t size = sizes_[source_axis];
      axis.is_walked = true;
      axis.result_axis = result_axis;
      fit_walked(axis, bounds, size);
      if (bounds.from < 0 || bounds.to > size) fit_.is_inside = false;
    } else {
      AxisFit axis;
      axis.is_walked = true;
      axis.result_axis = result_axis;
      fit_missing(axis, bounds);
      fit_.missing.push_back(axis);
      fit_.is_inside = false;
    }
  }

  void hold_the_rest() {
    for (std::size_t axis = 0; axis < sizes_.size(); ++axis) {
      fit_.axes[axis].source_axis = static_cast<unsigned int>(axis);
      const std::int64_t index = axis < bounds_.size() ? bounds_[axis].from : 0;
      if (!fit_.axes[axis].is_walked) fit_held(fit_.axes[axis], index, sizes_[axis]);
    }
  }

  const std::vector<unsigned int>& sizes_;
  const std::vector<IndexSpan> bounds_;
  std::vector<bool> is_taken_;
  RegionFit fit_;
};

}  // namespace

RegionFit fit_region(const VStackRegion& region, const std::vector<unsigned int>& sizes) {
  return Fitter(region, sizes).take();
}

}  // namespace Vrel::detail
