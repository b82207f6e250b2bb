// How much memory the program may take, whatever a file asks for.
#pragma once

#include <cstdint>

namespace Vrel::tool {

constexpr std::uint64_t default_max_memory = std::uint64_t{1} << 30;

/// From now on taking more than `bytes` for data fails as if the system had no more.
/// \return false where the system, or a sanitizer that needs the memory for itself, knows no limit.
bool limit_memory(std::uint64_t bytes);

}  // namespace Vrel::tool
