// A description that is made from a region of another one.
#include <vrelio/stack/region.h>
#include <vrelio/stack/stack_info_imp.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "stack/stack_errors_internal.h"

using namespace Vrel::detail;

namespace {

// The pixels of an axis that a region shows, and the pixel of the result that the first becomes.
struct VisibleSpan {
  std::size_t begin;
  std::size_t end;
  std::size_t place;
};

VisibleSpan visible_span(const VStackRegion& region, unsigned int axis, unsigned int size) {
  const auto inside = [&](int bound) {
    return static_cast<std::size_t>(std::clamp<std::int64_t>(bound, 0, size));
  };
  const std::int64_t place = std::max<std::int64_t>(-std::int64_t{region.from[axis]}, 0);
  return {inside(region.from[axis]), inside(region.to[axis]), static_cast<std::size_t>(place)};
}

// As many values as the result has, with the visible ones of the source at their places.
template <class T>
std::vector<T> show(const std::vector<T>& source, const VisibleSpan& span, std::size_t size) {
  std::vector<T> result(size);
  const std::size_t end = std::min(span.end, source.size());
  for (std::size_t i = span.begin; i < end; ++i) result[span.place + (i - span.begin)] = source[i];
  return result;
}

}  // namespace

class VStackInfoImp::RegionTaker {
 public:
  RegionTaker(VStackInfoImp& result, const VStackInfoInterface& source, const VStackRegion& region)
      : result_(result),
        source_(source),
        region_(region),
        source_position_(source.get_stack_position()),
        source_rank_(source.get_rank()),
        is_taken_(source_rank_) {}

  void take() {
    create_result();
    result_.set_description(source_.get_description());
    result_.set_name(source_.get_name());
    for (unsigned int axis = 0; axis < region_.permutation.size(); ++axis)
      if (region_.permutation[axis] < source_rank_) take_axis(axis, region_.permutation[axis]);
    take_position();
    result_.set_stack_position(position_);
  }

 private:
  void create_result() {
    if (!source_position_.is_valid_for(&source_)) raise_invalid_stack_position();
    bool inside = false;
    const std::vector<unsigned int> sizes = region_.validate(&source_, inside);
    VStackInfoInterface& created = result_;
    created.create(sizes, region_.type == 0 ? source_.get_dt() : region_.type);
    position_.create(&result_, std::max(source_position_.axes.count(), result_.get_rank()));
  }

  void take_axis(unsigned int axis, unsigned int source_axis) {
    is_taken_[source_axis] = true;
    result_.set_label(axis, source_.get_label(source_axis));
    const VisibleSpan span =
        visible_span(region_, source_axis, source_.get_dimension_size(source_axis));
    take_extent(axis, source_axis, span);
    const std::vector<std::string> labels = source_.get_col_labels(source_axis);
    const std::size_t size = labels.empty() ? 0 : result_.sizes_[axis];
    result_.set_col_labels(axis, show(labels, span, size));
    take_projection(axis, source_axis);
  }

  void take_extent(unsigned int axis, unsigned int source_axis, const VisibleSpan& span) {
    result_.set_col_positions(axis, {});
    if (source_.is_equidistant(source_axis)) return take_equidistant(axis, source_axis);
    result_.take_length(axis, 1.0);
    result_.take_offset(axis, 0.0);
    result_.set_col_positions(
        axis, show(source_.get_col_positions(source_axis), span, result_.sizes_[axis]));
  }

  // Intended: the first term of the offset counts pixels, in 32 bits and without their length;
  // StackInfoRegionTest.TheOffsetGrowsByWholePixelsOfNoLength.
  void take_equidistant(unsigned int axis, unsigned int source_axis) {
    const unsigned int source_size = source_.get_dimension_size(source_axis);
    if (source_size == 0) {
      result_.take_length(axis, 1.0);
      return result_.take_offset(axis, 0.0);
    }
    const unsigned int size = result_.sizes_[axis];
    const double source_length = source_.get_length(source_axis);
    const double source_begin = source_.get_offset(source_axis) - source_length * 0.5;
    const double length = size * source_length / source_size;
    const unsigned int whole_pixels =
        static_cast<unsigned int>(region_.from[source_axis]) * size / source_size;
    result_.take_length(axis, length);
    result_.take_offset(axis, whole_pixels + source_begin + length * 0.5);
  }

  // Both matrices have their rows running fastest.
  void take_projection(unsigned int axis, unsigned int source_axis) {
    const std::size_t rows = position_.axes.count();
    const std::size_t source_rows = source_position_.axes.count();
    for (std::size_t row = 0; row < source_rows; ++row)
      position_.projection[axis * rows + row] =
          source_position_.projection[source_axis * source_rows + row];
  }

  void take_position() {
    const std::size_t source_rows = source_position_.axes.count();
    std::copy_n(source_position_.axes.begin(), source_rows, position_.axes.begin());
    std::copy_n(source_position_.offset.begin(), source_rows, position_.offset.begin());
    for (unsigned int axis = 0; axis < source_rank_; ++axis)
      if (!is_taken_[axis]) move_to_held(axis);
  }

  // The position moves by where the region holds an axis that the result does not have.
  void move_to_held(unsigned int source_axis) {
    const std::size_t rows = source_position_.axes.count();
    const double place = held_place(source_axis);
    for (std::size_t row = 0; row < rows; ++row)
      position_.offset[row] += source_position_.projection[source_axis * rows + row] * place;
  }

  double held_place(unsigned int source_axis) const {
    if (source_.is_equidistant(source_axis)) return source_.get_offset(source_axis);
    const int pixel = source_axis < region_.from.size() ? region_.from[source_axis] : 0;
    return source_.get_col_position(source_axis, static_cast<unsigned int>(pixel));
  }

  VStackInfoImp& result_;
  const VStackInfoInterface& source_;
  const VStackRegion& region_;
  const VStackPosition source_position_;
  const unsigned int source_rank_;
  std::vector<bool> is_taken_;
  VStackPosition position_;
};

void VStackInfoImp::create(const VStackInfoInterface* info, const VStackRegion& region) {
  check_unlocked();
  if (info == static_cast<const VStackInfoInterface*>(this)) {
    const VStackInfoImp original(*this);
    return RegionTaker(*this, original, region).take();
  }
  RegionTaker(*this, *info, region).take();
}
