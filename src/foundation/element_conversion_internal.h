// The choice of one loop for a pair of data type ids, made once for any number of elements.
#pragma once

#include "foundation/convert_run_internal.h"

namespace Vrel::detail {

// What happens to imaginary parts that lie in a plane of their own.
enum class conversion_mode { plain, join, split };

struct element_conversion {
  // One step of the loop; without a kernel where the pair of types has no conversion.
  conversion step = {{nullptr, false}, 0, 0};
  unsigned int steps_per_element = 1;
};

// The conversion that vrel_dt_convert runs for this pair in this mode.
element_conversion find_conversion(int source_type, int destination_type, conversion_mode mode);

}  // namespace Vrel::detail
