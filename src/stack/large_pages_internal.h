// Memory in large pages, where the system has them.
#pragma once

#include <cstddef>

namespace Vrel::detail {

/// Tell the system that a block is worth large pages. A hint, which cannot fail: walks across a stack meet
/// another small page with every step.
void prefer_large_pages(void* begin, std::size_t size) noexcept;

}  // namespace Vrel::detail
