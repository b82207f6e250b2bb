#include "lib/import_stack.h"

#include <vrelio/container/records.h>
#include <vrelio/foundation/data_type.h>
#include <vrelio/foundation/error.h>

#include <algorithm>
#include <limits>

namespace Vrel::tool {

u64 count_samples(const std::vector<u64>& sizes) {
  constexpr u64 most = std::numeric_limits<unsigned>::max();
  if (sizes.size() > max_rank) {
    throw VrelError(
        VrelError()("%zu axes are more than the 15 that a stack can have!", sizes.size())(-4));
  }
  u64 count = std::find(sizes.begin(), sizes.end(), u64{0}) != sizes.end() ? 0 : 1;
  for (const u64 size : sizes) {
    if (size > most || (size != 0 && count > most / size)) {
      throw VrelError(VrelError()("The product exceeds the maximum size."));
    }
    count *= size;
  }
  return count;
}

std::vector<ImportAxis> make_axes(const std::vector<u64>& sizes) {
  std::vector<ImportAxis> axes(sizes.size());
  for (std::size_t axis = 0; axis < sizes.size(); ++axis) {
    axes[axis].size = static_cast<unsigned>(sizes[axis]);
  }
  return axes;
}

u64 count_bytes(const ImportStack& stack) {
  std::vector<u64> sizes;
  for (const ImportAxis& axis : stack.axes) sizes.push_back(axis.size);
  return count_samples(sizes) * static_cast<u64>(vrel_dt_get_size(stack.data_type));
}

}  // namespace Vrel::tool
