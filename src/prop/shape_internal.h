// The number of elements of a shape.
#pragma once

#include <vrelio/prop/prop_array.h>

#include <cstdint>

namespace Vrel::detail {

/// The highest number of elements that an array can have.
constexpr std::uint64_t highest_count = 0xFFFFFFFF;

/// The product of all sizes; 0 for an empty shape; above `highest_count` for every product that 32 bits do
/// not hold.
std::uint64_t element_count(const VProparrayBase::index_list& shape);

}  // namespace Vrel::detail
