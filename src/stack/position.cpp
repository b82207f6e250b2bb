#include <vrelio/foundation/error.h>
#include <vrelio/stack/position.h>
#include <vrelio/stack/stack_info.h>

#include <algorithm>
#include <cstddef>
#include <string>

#include "foundation/raise_internal.h"

using namespace Vrel::detail;

namespace {

// Elements that fit no shape have none.
bool has_shape(const VProparrayBase& array, const VProparrayBase::index_list& shape) {
  try {
    return array.get_size(true) == shape;
  } catch (const VrelError&) {
    return false;
  }
}

}  // namespace

VStackPosition::VStackPosition() { create(std::vector<unsigned int>(), 0); }

void VStackPosition::create(const std::vector<unsigned int>& sizes, unsigned int rank) {
  const auto columns = static_cast<unsigned int>(sizes.size());
  const unsigned int rows = rank == 0 ? columns : rank;
  if (rows < columns) {
    raise(id_plain, "Rank cannot be larger than the number of global axes!");
  }
  axes.set_size({rows}, VProparrayBase::set_mode_clear);
  offset.set_size({rows}, VProparrayBase::set_mode_clear);
  projection.set_size({rows, columns}, VProparrayBase::set_mode_clear);
  for (std::size_t axis = 0; axis < columns; ++axis) projection[axis * rows + axis] = 1.0;
}

void VStackPosition::create(const VStackInfoInterface* info, unsigned int rank) {
  create(info->get_sizes(), rank);
  const std::vector<std::string> labels = info->get_labels();
  const std::size_t named = std::min<std::size_t>(labels.size(), axes.count());
  for (std::size_t axis = 0; axis < named; ++axis)
    axes[axis].from(labels[axis], VPropstring::encoding_local);
}

bool VStackPosition::is_valid_for(const VStackInfoInterface* info) const {
  return fits(info->get_rank());
}

bool VStackPosition::fits(unsigned int stack_rank) const {
  const unsigned int rows = axes.count();
  return has_shape(axes, {rows}) && has_shape(offset, {rows}) &&
         has_shape(projection, {rows, stack_rank});
}
