#include <algorithm>
#include <cstdint>
#include <numeric>
#include <utility>

#include "foundation/stream_internal.h"
#include "stack/box_copy_internal.h"

namespace Vrel::detail {
namespace {

// Each of the buffers that a tile goes through, by measurement. One fits into the first-level cache,
// and all of them into the second; being contiguous, none has lines that drive each other out there,
// whatever the strides outside are.
constexpr std::size_t tile_size = 32 * 1024;

// What is read along the source at least, where the source has it.
constexpr std::size_t read_size = 256;

// Elements from which on a conversion of its own for each row of a tile is cheap.
constexpr std::size_t long_row_elements = 32;

// Rows that are streamed have that many lines at least.
constexpr std::size_t streaming_row_size = 128;

constexpr BoxAxis no_axis = {1, 0, 0};

// An axis in blocks of equal size, but for the ends: the first block is shorter by `shift`.
class BlockedAxis {
 public:
  BlockedAxis(const BoxAxis& axis, std::size_t block, std::size_t shift = 0)
      : axis_(axis), block_(block), shift_(shift) {}

  const BoxAxis& axis() const { return axis_; }
  // The axis of the blocks.
  BoxAxis blocks() const {
    const auto block = static_cast<std::ptrdiff_t>(block_);
    return {(axis_.count + shift_ + block_ - 1) / block_, block * axis_.source_stride,
            block * axis_.destination_stride};
  }
  std::size_t size(std::size_t index) const {
    return std::min(axis_.count, (index + 1) * block_ - shift_) - begin(index);
  }
  // From where a walk along the blocks has come to the first unit of a block.
  std::ptrdiff_t lead(std::size_t index) const {
    return index == 0 ? 0 : -static_cast<std::ptrdiff_t>(shift_);
  }

 private:
  std::size_t begin(std::size_t index) const { return index == 0 ? 0 : index * block_ - shift_; }

  BoxAxis axis_;
  std::size_t block_;
  std::size_t shift_;
};

std::size_t round_down(std::size_t value, std::size_t step) {
  return value < step ? value : value - value % step;
}

// Units past the start of a line in the destination.
std::size_t units_past_line(const BoxCopy& copy) {
  return reinterpret_cast<std::uintptr_t>(copy.destination) % line_size /
         copy.unit.destination_size;
}

// What of the axes makes a tile. Its rows lie along the first axis of the destination, its columns
// along that of the source. Where a tile has the whole of such an axis, it goes on along the axis
// that continues it on the same side, if there is one, and so has layers and sheets.
class TileAxes {
 public:
  enum Role { rows, layers, columns, sheets, roles };

  TileAxes(const BoxCopy& copy, std::size_t source_axis) {
    std::vector<BoxAxis> rest = copy.axes;
    const BoxAxis column = take(rest, source_axis);
    const BoxAxis row = take(rest, 0);
    const BoxAxis layer = take_next(rest, row, &BoxAxis::destination_stride);
    const BoxAxis sheet = take_next(rest, column, &BoxAxis::source_stride);
    const std::size_t units =
        tile_size / std::max(copy.unit.source_size, copy.unit.destination_size);
    const std::size_t all_columns = column.count * sheet.count;
    const std::size_t least_columns =
        std::min(all_columns, std::max<std::size_t>(1, read_size / copy.unit.source_size));
    const std::size_t tile_rows =
        std::min(row.count * layer.count, round_down(units / least_columns, line_size));
    const std::size_t tile_columns =
        std::min(all_columns, round_down(units / tile_rows, line_size));
    add_pair(row, layer, tile_rows, units_past_line(copy));
    add_pair(column, sheet, tile_columns, 0);
    sort_outer(rest);
  }

  const BoxAxis& axis(Role role) const { return axes_[role].axis(); }
  const BlockedAxis& blocked(Role role) const { return axes_[role]; }
  // The blocks of the axes of a tile, and all other axes, short steps first.
  const std::vector<BoxAxis>& outer() const { return outer_; }
  std::size_t block(Role role, const BoxWalk& walk) const { return walk.index(places_[role]); }

 private:
  static BoxAxis take(std::vector<BoxAxis>& axes, std::size_t index) {
    const BoxAxis taken = axes[index];
    axes.erase(axes.begin() + static_cast<std::ptrdiff_t>(index));
    return taken;
  }

  // The axis that continues another one on one side.
  static BoxAxis take_next(std::vector<BoxAxis>& axes, const BoxAxis& inner,
                           std::ptrdiff_t BoxAxis::*stride) {
    for (std::size_t i = 0; i < axes.size(); ++i)
      if (axes[i].*stride == inner.*stride * static_cast<std::ptrdiff_t>(inner.count))
        return take(axes, i);
    return no_axis;
  }

  void add_pair(const BoxAxis& inner, const BoxAxis& next, std::size_t units, std::size_t shift) {
    const bool is_whole = units >= inner.count;
    axes_.emplace_back(inner, is_whole ? inner.count : units, is_whole ? 0 : shift % units);
    axes_.emplace_back(next, is_whole ? units / inner.count : 1);
  }

  void sort_outer(const std::vector<BoxAxis>& rest) {
    std::vector<BoxAxis> axes;
    for (const BlockedAxis& axis : axes_) axes.push_back(axis.blocks());
    axes.insert(axes.end(), rest.begin(), rest.end());
    std::vector<std::size_t> order(axes.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    const auto step = [&](std::size_t axis) {
      return axes[axis].source_stride + axes[axis].destination_stride;
    };
    std::sort(order.begin(), order.end(),
              [&](std::size_t first, std::size_t second) { return step(first) < step(second); });
    for (const std::size_t axis : order) {
      if (axis < roles) places_[axis] = outer_.size();
      outer_.push_back(axes[axis]);
    }
  }

  std::vector<BlockedAxis> axes_;
  std::vector<BoxAxis> outer_;
  // Where the blocks of each role are among the outer axes.
  std::size_t places_[roles] = {};
};

class TileCopy {
 public:
  TileCopy(const BoxCopy& copy, std::size_t source_axis) : copy_(copy), axes_(copy, source_axis) {}

  void run() {
    BoxWalk walk(axes_.outer());
    do {
      copy_tile(walk);
    } while (walk.next());
  }

 private:
  struct Shape {
    std::size_t rows;
    std::size_t layers;
    std::size_t columns;
    std::size_t sheets;

    std::size_t all_rows() const { return rows * layers; }
    std::size_t all_columns() const { return columns * sheets; }
  };

  void copy_tile(const BoxWalk& walk) {
    const auto size = [&](TileAxes::Role role) {
      return axes_.blocked(role).size(axes_.block(role, walk));
    };
    const Shape shape = {size(TileAxes::rows), size(TileAxes::layers), size(TileAxes::columns),
                         size(TileAxes::sheets)};
    const std::ptrdiff_t lead =
        axes_.blocked(TileAxes::rows).lead(axes_.block(TileAxes::rows, walk));
    const BoxAxis& row = axes_.axis(TileAxes::rows);
    read_tile(copy_.source + walk.offset().source + lead * row.source_stride, shape);
    write_tile(copy_.destination + walk.offset().destination + lead * row.destination_stride,
               shape);
  }

  // Fills `read_` with rows of converted units.
  void read_tile(const unsigned char* source, const Shape& shape) {
    const std::size_t layer_size = shape.rows * shape.all_columns() * copy_.unit.destination_size;
    const SourceRows layers = {source, axes_.axis(TileAxes::layers).source_stride};
    for (std::size_t i = 0; i < shape.layers; ++i)
      read_layer(layers.at(i), read_ + i * layer_size, shape);
  }

  void read_layer(const unsigned char* source, unsigned char* read, const Shape& shape) {
    const SourceRows rows = {source, axes_.axis(TileAxes::rows).source_stride};
    if (axes_.axis(TileAxes::columns).source_stride ==
        static_cast<std::ptrdiff_t>(copy_.unit.source_size))
      read_rows(rows, read, shape.rows, shape.all_columns());
    else
      read_units(rows, read, shape.rows, shape.all_columns());
  }

  void read_rows(SourceRows source, unsigned char* read, std::size_t rows, std::size_t columns) {
    const std::size_t row_size = columns * copy_.unit.source_size;
    if (copy_.conversion.is_copy())
      return move_rows(source, rows_in(read, row_size), row_size, rows);
    if (source.pitch == static_cast<std::ptrdiff_t>(row_size))
      return convert_units(copy_, source.first, read, rows * columns);
    if (columns * copy_.unit.elements < long_row_elements) {
      move_rows(source, rows_in(raw_, row_size), row_size, rows);
      return convert_units(copy_, raw_, read, rows * columns);
    }
    const std::size_t converted_size = columns * copy_.unit.destination_size;
    for (std::size_t i = 0; i < rows; ++i)
      convert_units(copy_, source.at(i), read + i * converted_size, columns);
  }

  // Nothing is contiguous in the source: units are picked one by one.
  void read_units(SourceRows source, unsigned char* read, std::size_t rows, std::size_t columns) {
    const std::size_t unit_size = copy_.unit.source_size;
    const std::ptrdiff_t pitch = axes_.axis(TileAxes::columns).source_stride;
    unsigned char* to = copy_.conversion.is_copy() ? read : raw_;
    for (std::size_t i = 0; i < rows; ++i)
      move_rows({source.at(i), pitch}, rows_in(to + i * columns * unit_size, unit_size), unit_size,
                columns);
    if (!copy_.conversion.is_copy()) convert_units(copy_, raw_, read, rows * columns);
  }

  void write_tile(unsigned char* destination, const Shape& shape) {
    const std::size_t unit_size = copy_.unit.destination_size;
    const DestinationRows sheets = {destination, axes_.axis(TileAxes::sheets).destination_stride};
    const SourceRows read = {read_, static_cast<std::ptrdiff_t>(shape.all_columns() * unit_size)};
    for (std::size_t i = 0; i < shape.sheets; ++i)
      write_sheet({read.first + i * shape.columns * unit_size, read.pitch}, sheets.at(i), shape);
  }

  void write_sheet(SourceRows read, unsigned char* destination, const Shape& shape) {
    const std::size_t unit_size = copy_.unit.destination_size;
    const std::size_t rows = shape.all_rows();
    const std::ptrdiff_t pitch = axes_.axis(TileAxes::rows).destination_stride;
    const DestinationRows to = {destination, axes_.axis(TileAxes::columns).destination_stride};
    const bool has_rows = pitch == static_cast<std::ptrdiff_t>(unit_size);
    const bool streams = has_rows && copy_.streams && rows * unit_size >= streaming_row_size;
    if (has_rows && !streams) return transpose_rows(read, to, unit_size, rows, shape.columns);
    const DestinationRows turned = rows_in(turned_, rows * unit_size);
    transpose_rows(read, turned, unit_size, rows, shape.columns);
    const SourceRows from = {turned_, turned.pitch};
    if (streams) return stream_rows(from, to, rows * unit_size, shape.columns);
    for (std::size_t i = 0; i < shape.columns; ++i)
      move_rows({from.at(i), static_cast<std::ptrdiff_t>(unit_size)}, {to.at(i), pitch}, unit_size,
                rows);
  }

  static DestinationRows rows_in(unsigned char* buffer, std::size_t row_size) {
    return {buffer, static_cast<std::ptrdiff_t>(row_size)};
  }

  const BoxCopy& copy_;
  TileAxes axes_;
  alignas(line_size) unsigned char raw_[tile_size];
  alignas(line_size) unsigned char read_[tile_size];
  alignas(line_size) unsigned char turned_[tile_size];
};

}  // namespace

void copy_by_tiles(const BoxCopy& copy, std::size_t source_axis) {
  TileCopy(copy, source_axis).run();
}

}  // namespace Vrel::detail
