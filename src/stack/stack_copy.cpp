// Copies of regions of stacks.
#include <vrelio/stack/region.h>
#include <vrelio/stack/stack_imp.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>
#include <vector>

#include "stack/byte_buffer_internal.h"
#include "stack/copy_box_internal.h"
#include "stack/element_strides_internal.h"
#include "stack/readable_data_internal.h"
#include "stack/region_fit_internal.h"
#include "stack/stack_errors_internal.h"

using namespace Vrel::detail;

namespace {

// The elements of the source that a region shows, and where they come to lie.
struct Box {
  std::vector<BoxAxis> axes;
  std::size_t source_begin = 0;
  std::size_t result_begin = 0;
  bool is_empty = false;
};

class BoxMaker {
 public:
  BoxMaker(std::vector<std::size_t> source_strides, std::vector<std::size_t> result_strides)
      : source_strides_(std::move(source_strides)), result_strides_(std::move(result_strides)) {}

  Box make(const RegionFit& fit) {
    for (const AxisFit& axis : fit.axes) add(axis);
    for (const AxisFit& axis : fit.missing) add_missing(axis);
    return box_;
  }

 private:
  void add(const AxisFit& axis) {
    const std::size_t source_stride = source_strides_[axis.source_axis];
    box_.source_begin += static_cast<std::size_t>(axis.source.from) * source_stride;
    if (axis.source.from >= axis.source.to) box_.is_empty = true;
    if (!axis.is_walked) return;
    const std::size_t result_stride = result_strides_[axis.result_axis];
    box_.result_begin += static_cast<std::size_t>(axis.result.from) * result_stride;
    box_.axes.push_back({static_cast<std::size_t>(axis.source.to - axis.source.from),
                         static_cast<std::ptrdiff_t>(source_stride),
                         static_cast<std::ptrdiff_t>(result_stride)});
  }

  // One index, at which the stack has all that it has.
  void add_missing(const AxisFit& axis) {
    if (axis.result.from >= axis.result.to) box_.is_empty = true;
    box_.result_begin +=
        static_cast<std::size_t>(axis.result.from) * result_strides_[axis.result_axis];
  }

  const std::vector<std::size_t> source_strides_;
  const std::vector<std::size_t> result_strides_;
  Box box_;
};

}  // namespace

void VStackImp::copy(const VStackInterface* source, int type) {
  VStackRegion region;
  region.create(source, type);
  copy(source, region);
}

void VStackImp::copy(const VStackInterface* source, const VStackRegion& region) {
  if (source == static_cast<const VStackInterface*>(this)) {
    const VStackImp original(*this);
    return copy(static_cast<const VStackInterface*>(&original), region);
  }
  const unsigned char* const data = readable_data(*source);
  const Holder former = data_;
  // The elements of the source are not written over, where they are those of this stack.
  if (data_.local && data == get_data_ptr()) data_.local.reset();
  try {
    create(source, region);
  } catch (...) {
    data_ = former;
    throw;
  }
  copy_elements(*source, region);
}

void VStackImp::copy_elements(const VStackInterface& source, const VStackRegion& region) {
  const std::vector<unsigned int> source_sizes = source.get_sizes();
  const RegionFit fit = fit_region(region, source_sizes);
  if (fit.sizes != get_sizes()) raise_internal_error();
  const int source_type = source.get_dt();
  const Box box =
      BoxMaker(element_strides(source_sizes, source_type), element_strides(fit.sizes, get_dt()))
          .make(fit);
  if (box.is_empty) return;
  if (!fit.is_inside) std::memset(get_data_ptr(), 0, get_data_size());
  const unsigned char* const begin = readable_data(source) + box.source_begin;
  if (!copy_box(source_type, get_dt(), begin, get_data_ptr() + box.result_begin, box.axes))
    raise_invalid_element_type();
}
