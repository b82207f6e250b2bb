#include <algorithm>
#include <cstdint>
#include <numeric>
#include <utility>

#include "foundation/stream_internal.h"
#include "stack/box_copy_internal.h"

namespace Vrel::detail {
namespace {

// Each of the buffers that a tile goes through. They stay in the first-level cache by measurement,
// and being contiguous none has lines that drive each other out there, whatever the strides outside.
constexpr std::size_t tile_size = std::size_t{16} << 10;

// What is read along the source at least, where the source has it.
constexpr std::size_t read_size = 128;

// Runs of fewer bytes are not streamed: most of their lines would be broken ones.
constexpr std::size_t streaming_run_size = 128;

constexpr BoxAxis no_axis = {1, 0, 0};

// Units that follow each other in a tile, and where the first of them is.
struct Piece {
  std::size_t count;
  BoxOffset offset;
};

// One side of a tile: an axis together with the one that continues it on the same side, cut into
// blocks of equal size, but for the first, which is shorter by `shift`, and the last.
class TileAxis {
 public:
  TileAxis(const BoxAxis& inner, const BoxAxis& next, std::size_t block, std::size_t shift)
      : inner_(inner), next_(next), block_(block), shift_(block < count() ? shift % block : 0) {}

  const BoxAxis& inner() const { return inner_; }
  std::size_t blocks() const { return (count() + shift_ + block_ - 1) / block_; }
  std::size_t begin(std::size_t index) const { return index == 0 ? 0 : index * block_ - shift_; }
  std::size_t end(std::size_t index) const {
    return std::min(count(), (index + 1) * block_ - shift_);
  }
  // How far it is from block to block.
  std::ptrdiff_t step() const {
    const BoxOffset offset = offset_of(block_);
    return offset.source + offset.destination;
  }

  BoxOffset offset_of(std::size_t unit) const {
    const auto index = static_cast<std::ptrdiff_t>(unit % inner_.count);
    const auto next_index = static_cast<std::ptrdiff_t>(unit / inner_.count);
    return {index * inner_.source_stride + next_index * next_.source_stride,
            index * inner_.destination_stride + next_index * next_.destination_stride};
  }

  // The units from `unit` on that the inner axis still holds, at most up to `end`.
  Piece piece_at(std::size_t unit, std::size_t end) const {
    return {std::min(inner_.count - unit % inner_.count, end - unit), offset_of(unit)};
  }

 private:
  std::size_t count() const { return inner_.count * next_.count; }

  BoxAxis inner_;
  BoxAxis next_;
  std::size_t block_;
  std::size_t shift_;
};

BoxAxis take(std::vector<BoxAxis>& axes, std::size_t index) {
  const BoxAxis taken = axes[index];
  axes.erase(axes.begin() + static_cast<std::ptrdiff_t>(index));
  return taken;
}

// The axis that continues another one on one side.
BoxAxis take_next(std::vector<BoxAxis>& axes, const BoxAxis& inner,
                  std::ptrdiff_t BoxAxis::*stride) {
  for (std::size_t i = 0; i < axes.size(); ++i)
    if (axes[i].*stride == inner.*stride * static_cast<std::ptrdiff_t>(inner.count))
      return take(axes, i);
  return no_axis;
}

std::size_t round_down(std::size_t value, std::size_t step) {
  return value < step ? value : value - value % step;
}

// Units past the start of a line in the destination.
std::size_t units_past_line(const BoxCopy& copy) {
  return reinterpret_cast<std::uintptr_t>(copy.destination) % line_size /
         copy.unit.destination_size;
}

// Rows lie along the first axis of the destination, columns along that of the source.
struct TileAxes {
  TileAxis rows;
  TileAxis columns;
  std::vector<BoxAxis> rest;
};

TileAxes choose_axes(const BoxCopy& copy, std::size_t source_axis) {
  std::vector<BoxAxis> rest = copy.axes;
  const BoxAxis column = take(rest, source_axis);
  const BoxAxis row = take(rest, 0);
  const BoxAxis next_row = take_next(rest, row, &BoxAxis::destination_stride);
  const BoxAxis next_column = take_next(rest, column, &BoxAxis::source_stride);
  const std::size_t units = tile_size / std::max(copy.unit.source_size, copy.unit.destination_size);
  const std::size_t all_rows = row.count * next_row.count;
  const std::size_t all_columns = column.count * next_column.count;
  const std::size_t least_columns =
      std::min(all_columns, std::max<std::size_t>(1, read_size / copy.unit.source_size));
  const std::size_t rows = std::min(all_rows, round_down(units / least_columns, line_size));
  const std::size_t columns = std::min(all_columns, round_down(units / rows, line_size));
  return {TileAxis(row, next_row, rows, units_past_line(copy)),
          TileAxis(column, next_column, columns, 0), std::move(rest)};
}

class TileCopy {
 public:
  TileCopy(const BoxCopy& copy, std::size_t source_axis)
      : copy_(copy),
        axes_(choose_axes(copy, source_axis)),
        converts_last_(copy.unit.source_size < copy.unit.destination_size),
        converts_first_(!converts_last_ && !copy.conversion.is_copy()),
        item_size_(std::min(copy.unit.source_size, copy.unit.destination_size)) {}

  void run() {
    BoxWalk walk(outer_axes());
    do {
      copy_tile(walk);
    } while (walk.next());
  }

 private:
  struct Shape {
    std::size_t rows;
    std::size_t columns;
  };

  // The blocks of both sides of a tile, which find their places themselves, and all other axes,
  // short steps first.
  std::vector<BoxAxis> outer_axes() {
    std::vector<BoxAxis> axes = {{axes_.rows.blocks(), 0, 0}, {axes_.columns.blocks(), 0, 0}};
    std::vector<std::ptrdiff_t> steps = {axes_.rows.step(), axes_.columns.step()};
    for (const BoxAxis& axis : axes_.rest) {
      axes.push_back(axis);
      steps.push_back(axis.source_stride + axis.destination_stride);
    }
    std::vector<std::size_t> order(axes.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::sort(order.begin(), order.end(),
              [&](std::size_t first, std::size_t second) { return steps[first] < steps[second]; });
    std::vector<BoxAxis> sorted;
    for (const std::size_t axis : order) {
      if (axis == 0) row_blocks_ = sorted.size();
      if (axis == 1) column_blocks_ = sorted.size();
      sorted.push_back(axes[axis]);
    }
    return sorted;
  }

  void copy_tile(const BoxWalk& walk) {
    const unsigned char* source = copy_.source + walk.offset().source;
    unsigned char* destination = copy_.destination + walk.offset().destination;
    const std::size_t first_row = axes_.rows.begin(walk.index(row_blocks_));
    const std::size_t first_column = axes_.columns.begin(walk.index(column_blocks_));
    const Shape shape = {axes_.rows.end(walk.index(row_blocks_)) - first_row,
                         axes_.columns.end(walk.index(column_blocks_)) - first_column};
    read_tile(source + axes_.columns.offset_of(first_column).source, first_row, shape);
    if (converts_first_) convert_units(copy_, read_, converted_, shape.rows * shape.columns);
    write_tile(destination + axes_.rows.offset_of(first_row).destination, first_column, shape);
  }

  // Fills `read_` with rows of units.
  void read_tile(const unsigned char* source, std::size_t first_row, const Shape& shape) {
    const std::size_t row_size = shape.columns * copy_.unit.source_size;
    const std::size_t end = first_row + shape.rows;
    for (std::size_t row = first_row; row < end;) {
      const Piece piece = axes_.rows.piece_at(row, end);
      read_piece({source + piece.offset.source, axes_.rows.inner().source_stride},
                 rows_in(read_ + (row - first_row) * row_size, row_size), piece.count,
                 shape.columns);
      row += piece.count;
    }
  }

  void read_piece(SourceRows source, DestinationRows read, std::size_t rows, std::size_t columns) {
    const std::size_t unit_size = copy_.unit.source_size;
    const std::ptrdiff_t pitch = axes_.columns.inner().source_stride;
    if (pitch == static_cast<std::ptrdiff_t>(unit_size))
      return move_rows(source, read, columns * unit_size, rows);
    for (std::size_t i = 0; i < rows; ++i)
      move_rows({source.at(i), pitch}, rows_in(read.at(i), unit_size), unit_size, columns);
  }

  void write_tile(unsigned char* destination, std::size_t first_column, const Shape& shape) {
    const unsigned char* tile = converts_first_ ? converted_ : read_;
    const auto pitch = static_cast<std::ptrdiff_t>(shape.columns * item_size_);
    const std::size_t end = first_column + shape.columns;
    for (std::size_t column = first_column; column < end;) {
      const Piece piece = axes_.columns.piece_at(column, end);
      write_piece(
          {tile + (column - first_column) * item_size_, pitch},
          {destination + piece.offset.destination, axes_.columns.inner().destination_stride},
          shape.rows, piece.count);
      column += piece.count;
    }
  }

  void write_piece(SourceRows tile, DestinationRows destination, std::size_t rows,
                   std::size_t columns) {
    const std::size_t unit_size = copy_.unit.destination_size;
    const std::size_t row_size = rows * unit_size;
    const std::ptrdiff_t pitch = axes_.rows.inner().destination_stride;
    const bool has_rows = pitch == static_cast<std::ptrdiff_t>(unit_size);
    const bool is_one_run = destination.pitch == static_cast<std::ptrdiff_t>(row_size);
    const std::size_t run_size = is_one_run ? row_size * columns : row_size;
    const bool streams = has_rows && copy_.streams && run_size >= streaming_run_size;
    if (has_rows && !streams && !converts_last_)
      return transpose_rows(tile, destination, unit_size, rows, columns);
    const SourceRows turned = {turn(tile, rows, columns), static_cast<std::ptrdiff_t>(row_size)};
    if (streams) return stream_rows(turned, destination, row_size, columns);
    if (has_rows) return move_rows(turned, destination, row_size, columns);
    for (std::size_t i = 0; i < columns; ++i)
      move_rows({turned.at(i), static_cast<std::ptrdiff_t>(unit_size)}, {destination.at(i), pitch},
                unit_size, rows);
  }

  // Columns as rows, of converted units.
  const unsigned char* turn(SourceRows tile, std::size_t rows, std::size_t columns) {
    transpose_rows(tile, rows_in(turned_, rows * item_size_), item_size_, rows, columns);
    if (!converts_last_) return turned_;
    convert_units(copy_, turned_, converted_, rows * columns);
    return converted_;
  }

  static DestinationRows rows_in(unsigned char* buffer, std::size_t row_size) {
    return {buffer, static_cast<std::ptrdiff_t>(row_size)};
  }

  const BoxCopy& copy_;
  TileAxes axes_;
  // Units are transposed while they are small.
  bool converts_last_;
  bool converts_first_;
  std::size_t item_size_;
  // Which of the outer axes the blocks are.
  std::size_t row_blocks_ = 0;
  std::size_t column_blocks_ = 0;
  alignas(line_size) unsigned char read_[tile_size];
  alignas(line_size) unsigned char turned_[tile_size];
  alignas(line_size) unsigned char converted_[tile_size];
};

}  // namespace

void copy_by_tiles(const BoxCopy& copy, std::size_t source_axis) {
  TileCopy(copy, source_axis).run();
}

}  // namespace Vrel::detail
