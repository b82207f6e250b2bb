// Numbers of the other byte order.
#pragma once

#include <cstddef>

namespace Vrel::tool {

/// Reverse the bytes of each number in place.
/// \param size   bytes of all numbers.
/// \param width  bytes of a number: 1, 2, 4 or 8.
void reverse_bytes(void* numbers, std::size_t size, unsigned width);

/// Bytes of the numbers that a sample of this type consists of: the parts of a complex one.
unsigned number_width(int data_type);

}  // namespace Vrel::tool
