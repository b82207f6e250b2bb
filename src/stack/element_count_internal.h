// How many elements a stack of given sizes has.
#pragma once

#include <cstdint>

namespace Vrel::detail {

// The product of the sizes, walked from axis 0 on: 1 for no sizes; 0 from the first zero on,
// whatever follows. Raises "The product exceeds the maximum size." (-1) where it passes 32 bits
// before a zero is met.
std::uint32_t count_elements(const std::uint32_t* sizes, std::uint32_t rank);

}  // namespace Vrel::detail
