#include "foundation/convert_loops_internal.h"

namespace Vrel::detail {

constexpr convert_kernels baseline_kernels = make_kernels();

}  // namespace Vrel::detail
