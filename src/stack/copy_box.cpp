#include "stack/copy_box_internal.h"

#include <algorithm>
#include <utility>

#include "foundation/stream_internal.h"
#include "stack/box_copy_internal.h"

namespace Vrel::detail {
namespace {

// As for conversions of one run: measured there.
constexpr std::size_t streaming_size = std::size_t{16} << 20;

// A unit of that many bytes needs no company to use the lines that it lies in.
constexpr std::size_t long_unit_size = 64;

// Tiles of fewer units do not repay what they take to set up.
constexpr std::size_t smallest_tile = 64;

bool is_contiguous(const BoxAxis& axis, const BoxConversion& conversion) {
  return axis.source_stride == static_cast<std::ptrdiff_t>(conversion.source_size()) &&
         axis.destination_stride == static_cast<std::ptrdiff_t>(conversion.destination_size());
}

BoxUnit unit_of(const BoxConversion& conversion, std::size_t elements) {
  return {elements, elements * conversion.source_size(), elements * conversion.destination_size()};
}

// Takes the first axis out if units can be made of it.
BoxUnit take_unit(const BoxConversion& conversion, std::vector<BoxAxis>& axes) {
  if (axes.empty() || !is_contiguous(axes.front(), conversion)) return unit_of(conversion, 1);
  const std::size_t elements = axes.front().count;
  axes.erase(axes.begin());
  return unit_of(conversion, elements);
}

std::size_t total_size(const BoxUnit& unit, const std::vector<BoxAxis>& axes) {
  std::size_t size = unit.destination_size;
  for (const BoxAxis& axis : axes) size *= axis.count;
  return size;
}

std::size_t axis_of_source(const std::vector<BoxAxis>& axes) {
  const auto smallest =
      std::min_element(axes.begin(), axes.end(), [](const BoxAxis& first, const BoxAxis& second) {
        return first.source_stride < second.source_stride;
      });
  return static_cast<std::size_t>(smallest - axes.begin());
}

bool repays_tiles(const BoxCopy& copy, std::size_t source_axis) {
  return source_axis != 0 && copy.unit.source_size < long_unit_size &&
         copy.axes[0].count * copy.axes[source_axis].count >= smallest_tile;
}

}  // namespace

void convert_units(const BoxCopy& copy, const unsigned char* source, unsigned char* destination,
                   std::size_t count) {
  copy.conversion.run(source, destination, count * copy.unit.elements);
}

bool copy_box(int source_type, int destination_type, const unsigned char* source,
              unsigned char* destination, std::vector<BoxAxis> axes) {
  const BoxConversion conversion(source_type, destination_type);
  if (!conversion.is_supported()) return false;
  if (is_empty(axes)) return true;
  axes = simplify_axes(std::move(axes));
  const BoxUnit unit = take_unit(conversion, axes);
  const bool streams = has_streaming_stores && total_size(unit, axes) >= streaming_size;
  const BoxCopy copy = {conversion, source, destination, unit, std::move(axes), streams};
  const std::size_t source_axis = axis_of_source(copy.axes);
  if (!copy.axes.empty() && repays_tiles(copy, source_axis))
    copy_by_tiles(copy, source_axis);
  else
    copy_by_rows(copy);
  if (streams) finish_streaming();
  return true;
}

}  // namespace Vrel::detail
