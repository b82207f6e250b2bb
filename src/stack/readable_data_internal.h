// The elements of a stack, where there are as many as it says.
#pragma once

#include <vrelio/stack/stack.h>

namespace Vrel::detail {

/// The first element. Raises "Internal error!" (-1) for a stack whose buffer is smaller than its
/// description, as a failed operation leaves it.
const unsigned char* readable_data(const VStackInterface& stack);

}  // namespace Vrel::detail
