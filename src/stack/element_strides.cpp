#include "stack/element_strides_internal.h"

#include <vrelio/foundation/data_type.h>

namespace Vrel::detail {

std::vector<std::size_t> element_strides(const std::vector<unsigned int>& sizes, int type) {
  std::vector<std::size_t> strides;
  strides.reserve(sizes.size());
  auto stride = static_cast<std::size_t>(vrel_dt_get_size(type));
  for (const unsigned int size : sizes) {
    strides.push_back(stride);
    stride *= size;
  }
  return strides;
}

}  // namespace Vrel::detail
