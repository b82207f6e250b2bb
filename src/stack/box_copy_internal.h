// What the two ways to copy a box share: row by row, and transposed tile by tile.
#pragma once

#include <cstddef>
#include <vector>

#include "stack/box_axes_internal.h"
#include "stack/box_conversion_internal.h"
#include "stack/copy_box_internal.h"
#include "stack/move_rows_internal.h"

namespace Vrel::detail {

/// Elements that lie one behind the other on both sides and stay together.
struct BoxUnit {
  std::size_t elements;
  std::size_t source_size;
  std::size_t destination_size;
};

struct BoxCopy {
  const BoxConversion& conversion;
  const unsigned char* source;
  unsigned char* destination;
  BoxUnit unit;
  /// Of units, simplified.
  std::vector<BoxAxis> axes;
  /// Whether the destination is far larger than what should go through the cache.
  bool streams;
};

/// Converts or moves whole units that lie one behind the other on both sides.
void convert_units(const BoxCopy& copy, const unsigned char* source, unsigned char* destination,
                   std::size_t count);

/// Reads and writes in the order of the destination; good where that is the order of the source as
/// well, or units are long.
void copy_by_rows(const BoxCopy& copy);

/// Reads in the order of the axis with the smallest stride in the source, and writes in that of the
/// first axis, which is another one.
void copy_by_tiles(const BoxCopy& copy, std::size_t source_axis);

}  // namespace Vrel::detail
