// Where the elements of a stack stand in its buffer.
#pragma once

#include <cstddef>
#include <vector>

namespace Vrel::detail {

/// Bytes from one element to the next along each axis of a buffer of elements of a data type id.
std::vector<std::size_t> element_strides(const std::vector<unsigned int>& sizes, int type);

}  // namespace Vrel::detail
