#include "foundation/convert_loops_internal.h"

namespace Vrel::detail {

constexpr convert_kernels avx2_kernels = make_kernels();

}  // namespace Vrel::detail
