#include <vrelio/stack/region.h>
#include <vrelio/stack/stack_info.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <numeric>

#include "foundation/raise_internal.h"
#include "stack/region_fit_internal.h"
#include "stack/stack_errors_internal.h"

using namespace Vrel::detail;

namespace {

[[noreturn]] void raise_uncountable() { raise(id_plain, "Invalid region!"); }

// A size as an upper bound: the highest bound stands for every end of an axis that no int holds.
int bound_of(unsigned int size) {
  constexpr auto end = static_cast<unsigned int>(VStackRegion::end_of_axis);
  return static_cast<int>(std::min(size, end));
}

int lower_bound(std::int64_t index) {
  if (index >= VStackRegion::end_of_axis) raise_invalid_region();
  return static_cast<int>(index);
}

int upper_bound(std::int64_t index, unsigned int size) {
  return index == size ? bound_of(size) : lower_bound(index);
}

// Writes both parts of a fit, axis by axis, and pairs the axes by their places in the permutations.
class PartWriter {
 public:
  PartWriter(VStackRegion& source_part, VStackRegion& destination_part)
      : source_part_(source_part), destination_part_(destination_part) {
    source_part_.permutation.clear();
    destination_part_.permutation.clear();
  }

  void write(const RegionFit& fit, const std::vector<unsigned int>& sizes) {
    for (const AxisFit& axis : fit.axes) {
      write_source(axis, sizes[axis.source_axis]);
      if (axis.is_walked) write_result(axis, fit.sizes[axis.result_axis]);
    }
    for (const AxisFit& axis : fit.missing) write_result(axis, fit.sizes[axis.result_axis]);
    for (const AxisFit& axis : fit.axes)
      if (!axis.is_walked) source_part_.permutation.push_back(axis.source_axis);
  }

 private:
  void write_source(const AxisFit& axis, unsigned int size) {
    source_part_.from[axis.source_axis] = lower_bound(axis.source.from);
    source_part_.to[axis.source_axis] = upper_bound(axis.source.to, size);
    if (axis.is_walked) source_part_.permutation.push_back(axis.source_axis);
  }

  void write_result(const AxisFit& axis, unsigned int size) {
    destination_part_.from[axis.result_axis] = lower_bound(axis.result.from);
    destination_part_.to[axis.result_axis] = upper_bound(axis.result.to, size);
    destination_part_.permutation.push_back(axis.result_axis);
  }

  VStackRegion& source_part_;
  VStackRegion& destination_part_;
};

}  // namespace

void VStackRegion::create(const VStackInfoInterface* info, int result_type) {
  create(info->get_sizes(), result_type == 0 ? info->get_dt() : result_type);
}

void VStackRegion::create(const std::vector<unsigned int>& sizes, int result_type) {
  type = result_type;
  from.assign(sizes.size(), 0);
  to.resize(sizes.size());
  std::transform(sizes.begin(), sizes.end(), to.begin(), bound_of);
  permutation.resize(sizes.size());
  std::iota(permutation.begin(), permutation.end(), 0U);
}

bool VStackRegion::is_empty() const {
  const std::size_t rank = std::min(from.size(), to.size());
  for (std::size_t axis = 0; axis < rank; ++axis)
    if (from[axis] >= to[axis]) return true;
  return false;
}

unsigned long long VStackRegion::get_num_pixels() const {
  unsigned long long product = 1;
  if (from.size() != to.size()) raise_uncountable();
  for (std::size_t axis = 0; axis < from.size(); ++axis) {
    const std::int64_t size = std::int64_t{to[axis]} - from[axis];
    if (size < 0) raise_uncountable();
    if (__builtin_mul_overflow(product, static_cast<unsigned long long>(size), &product))
      raise_product_too_large();
  }
  return product;
}

std::vector<unsigned int> VStackRegion::validate(const VStackInfoInterface* info,
                                                 bool& inside) const {
  const RegionFit fit = fit_region(*this, info->get_sizes());
  inside = fit.is_inside;
  return fit.sizes;
}

std::vector<unsigned int> VStackRegion::validate(const VStackInfoInterface* info, bool& inside,
                                                 VStackRegion& source_part,
                                                 VStackRegion& destination_part) const {
  const std::vector<unsigned int> sizes = info->get_sizes();
  const RegionFit fit = fit_region(*this, sizes);
  inside = fit.is_inside;
  VStackRegion source;
  VStackRegion destination;
  source.create(info, 0);
  destination.create(std::vector<unsigned int>(fit.sizes.size()), 0);
  PartWriter(source, destination).write(fit, sizes);
  source_part = source;
  destination_part = destination;
  return fit.sizes;
}
