#include <limits>

#include "stack/element_count_internal.h"
#include "stack/stack_errors_internal.h"

namespace Vrel::detail {

std::uint32_t count_elements(const std::uint32_t* sizes, std::uint32_t rank) {
  std::uint32_t product = 1;
  for (std::uint32_t axis = 0; axis < rank; ++axis) {
    if (sizes[axis] == 0) return 0;
    if (sizes[axis] > std::numeric_limits<std::uint32_t>::max() / product) {
      raise_product_too_large();
    }
    product *= sizes[axis];
  }
  return product;
}

}  // namespace Vrel::detail
