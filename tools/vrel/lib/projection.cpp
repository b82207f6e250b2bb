#include "lib/projection.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace Vrel::tool {

namespace {

void raise_to(double& maximum, double value) {
  if (value > maximum || std::isnan(maximum)) maximum = value;
}

// A number of axes that can be walked: there is always a first one.
PictureAxes with_an_axis(PictureAxes axes) {
  if (axes.sizes.empty()) axes = {{1}, 0, 1};
  return axes;
}

}  // namespace

MaximumProjection::MaximumProjection(PictureAxes axes)
    : axes_(with_an_axis(std::move(axes))),
      index_(axes_.sizes.size(), 0),
      picture_(axes_.width() * axes_.height(), std::numeric_limits<double>::quiet_NaN()) {}

// From one index of an axis to the next in the picture.
u64 MaximumProjection::stride(std::size_t axis) const {
  if (axis == axes_.column) return 1;
  return axis == axes_.row ? axes_.width() : 0;
}

void MaximumProjection::add(const double* values, std::size_t count) {
  while (count > 0) {
    const u64 run = std::min<u64>(count, axes_.sizes[0] - index_[0]);
    add_run(values, run);
    advance(run);
    values += run;
    count -= run;
  }
}

void MaximumProjection::add_run(const double* values, u64 count) {
  const u64 step = stride(0);
  double* pixel = &picture_[place_];
  for (u64 i = 0; i < count; ++i, pixel += step) raise_to(*pixel, values[i]);
}

void MaximumProjection::advance(u64 count) {
  for (std::size_t axis = 0; axis < index_.size(); ++axis) {
    index_[axis] += count;
    place_ += count * stride(axis);
    if (index_[axis] < axes_.sizes[axis]) return;
    place_ -= axes_.sizes[axis] * stride(axis);
    index_[axis] = 0;
    count = 1;
  }
}

std::vector<double> MaximumProjection::take_picture() { return std::move(picture_); }

}  // namespace Vrel::tool
