// Runs one loop over whole buffers, through the cache or past it.
#pragma once

#include <cstddef>

#include "foundation/convert_kernels_internal.h"

namespace Vrel::detail {

struct conversion {
  convert_loop loop;
  // Bytes that one element of the loop takes from each source and puts to each destination.
  std::size_t source_size;
  std::size_t destination_size;
};

void run_conversion(const conversion& conversion, const convert_buffers& buffers,
                    std::size_t count);

}  // namespace Vrel::detail
