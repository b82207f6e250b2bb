// Moves of many rows of bytes, cheap for rows of any length.
#pragma once

#include <cstddef>

namespace Vrel::detail {

/// Rows of equal length in a buffer: where the first begins, and the bytes from one to the next.
template <class Byte>
struct Rows {
  Byte* first;
  std::ptrdiff_t pitch;

  Byte* at(std::size_t row) const { return first + static_cast<std::ptrdiff_t>(row) * pitch; }
};

using SourceRows = Rows<const unsigned char>;
using DestinationRows = Rows<unsigned char>;

/// Through the cache.
void move_rows(SourceRows source, DestinationRows destination, std::size_t row_size,
               std::size_t count);

/// Whole lines past the cache, what is left at the ends of a row through it; good for rows of many
/// lines. `finish_streaming` is left to the caller.
void stream_rows(SourceRows source, DestinationRows destination, std::size_t row_size,
                 std::size_t count);

/// The columns of `source` become the rows of `destination`. An item has `item_size` bytes; a row
/// of the source holds `columns` items, a row of the destination `rows`.
void transpose_rows(SourceRows source, DestinationRows destination, std::size_t item_size,
                    std::size_t rows, std::size_t columns);

}  // namespace Vrel::detail
