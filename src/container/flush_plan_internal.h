// How many bytes of samples lie between two flush points of a stack.
#pragma once

#include <vrelio/foundation/integers.h>

#include <vector>

namespace Vrel::detail {

// A block size that nobody has set.
constexpr u64 automatic_block_size = ~u64{0};

// The block size of a stack of `size` bytes, 0 for no flush points. One that was wanted stays unless the
// stack is too small; else a whole number of rows or planes is aimed at, of 64 to 256 KiB.
u64 choose_flush_block_size(u64 wanted, u64 size, u64 sample_size,
                            const std::vector<unsigned>& sizes);

}  // namespace Vrel::detail
