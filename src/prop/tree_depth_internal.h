// The bound on the depth of trees that are walked by recursion.
#pragma once

#include <cstddef>

namespace Vrel::detail {

/// Values above each other in a tree that is walked, and elements above each other in XML.
constexpr std::size_t highest_depth = 256;

/// \throws VrelError "Property tree too deep!" (-1) for more than `highest_depth` levels.
void check_depth(std::size_t levels);

}  // namespace Vrel::detail
