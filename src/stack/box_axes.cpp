#include "stack/box_axes_internal.h"

#include <algorithm>
#include <cassert>
#include <utility>

namespace Vrel::detail {
namespace {

bool continues(const BoxAxis& axis, const BoxAxis& inner) {
  const auto count = static_cast<std::ptrdiff_t>(inner.count);
  return axis.source_stride == count * inner.source_stride &&
         axis.destination_stride == count * inner.destination_stride;
}

}  // namespace

bool is_empty(const std::vector<BoxAxis>& axes) {
  return std::any_of(axes.begin(), axes.end(), [](const BoxAxis& axis) { return axis.count == 0; });
}

std::vector<BoxAxis> simplify_axes(std::vector<BoxAxis> axes) {
  axes.erase(
      std::remove_if(axes.begin(), axes.end(), [](const BoxAxis& axis) { return axis.count == 1; }),
      axes.end());
  assert(std::all_of(axes.begin(), axes.end(), [](const BoxAxis& axis) {
    return axis.source_stride >= 0 && axis.destination_stride > 0;
  }));
  std::sort(axes.begin(), axes.end(), [](const BoxAxis& first, const BoxAxis& second) {
    return first.destination_stride < second.destination_stride;
  });
  std::vector<BoxAxis> merged;
  for (const BoxAxis& axis : axes) {
    if (!merged.empty() && continues(axis, merged.back()))
      merged.back().count *= axis.count;
    else
      merged.push_back(axis);
  }
  return merged;
}

BoxWalk::BoxWalk(std::vector<BoxAxis> axes) : axes_(std::move(axes)), indices_(axes_.size(), 0) {}

bool BoxWalk::next() {
  for (std::size_t i = 0; i < axes_.size(); ++i) {
    const BoxAxis& axis = axes_[i];
    offset_.source += axis.source_stride;
    offset_.destination += axis.destination_stride;
    if (++indices_[i] < axis.count) return true;
    const auto count = static_cast<std::ptrdiff_t>(axis.count);
    offset_.source -= count * axis.source_stride;
    offset_.destination -= count * axis.destination_stride;
    indices_[i] = 0;
  }
  return false;
}

}  // namespace Vrel::detail
