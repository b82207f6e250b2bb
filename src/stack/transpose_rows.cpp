#include <cstdint>
#include <cstring>
#include <utility>

#include "stack/move_rows_internal.h"

namespace Vrel::detail {
namespace {

constexpr std::size_t vector_size = 16;

template <class Item>
struct VectorOf {
  using type __attribute__((vector_size(vector_size))) = Item;
};

template <class Item>
using Vector = typename VectorOf<Item>::type;

template <class Item>
constexpr std::size_t lanes = vector_size / sizeof(Item);

// Items of both by turns, from item `First` of each on.
template <class Item, std::size_t First, std::size_t... Lane>
Vector<Item> interleave(Vector<Item> even, Vector<Item> odd, std::index_sequence<Lane...>) {
  return __builtin_shufflevector(even, odd, (First + Lane / 2 + Lane % 2 * lanes<Item>)...);
}

// A square of as many rows as a row has items. Each round doubles the runs of items that come from
// one column.
template <class Item>
void transpose_square(SourceRows source, DestinationRows destination) {
  constexpr std::size_t size = lanes<Item>;
  using Lanes = std::make_index_sequence<size>;
  Vector<Item> rows[size];
  for (std::size_t i = 0; i < size; ++i) std::memcpy(&rows[i], source.at(i), vector_size);
  for (std::size_t round = 1; round < size; round *= 2) {
    Vector<Item> next[size];
    for (std::size_t i = 0; i < size / 2; ++i) {
      next[2 * i] = interleave<Item, 0>(rows[i], rows[i + size / 2], Lanes());
      next[2 * i + 1] = interleave<Item, size / 2>(rows[i], rows[i + size / 2], Lanes());
    }
    std::memcpy(rows, next, sizeof rows);
  }
  for (std::size_t i = 0; i < size; ++i) std::memcpy(destination.at(i), &rows[i], vector_size);
}

SourceRows part(SourceRows rows, std::size_t row, std::size_t offset) {
  return {rows.at(row) + offset, rows.pitch};
}

DestinationRows part(DestinationRows rows, std::size_t row, std::size_t offset) {
  return {rows.at(row) + offset, rows.pitch};
}

template <class Item>
void transpose_items(SourceRows source, DestinationRows destination, std::size_t rows,
                     std::size_t columns) {
  const auto move = [&](std::size_t row, std::size_t column) {
    std::memcpy(destination.at(column) + row * sizeof(Item), source.at(row) + column * sizeof(Item),
                sizeof(Item));
  };
  if (rows < columns) {
    for (std::size_t row = 0; row < rows; ++row)
      for (std::size_t column = 0; column < columns; ++column) move(row, column);
  } else {
    for (std::size_t column = 0; column < columns; ++column)
      for (std::size_t row = 0; row < rows; ++row) move(row, column);
  }
}

// Squares first, then the rows and the columns that are left.
template <class Item>
void transpose_squares(SourceRows source, DestinationRows destination, std::size_t rows,
                       std::size_t columns) {
  constexpr std::size_t size = lanes<Item>;
  const std::size_t square_rows = rows / size * size;
  const std::size_t square_columns = columns / size * size;
  for (std::size_t column = 0; column < square_columns; column += size)
    for (std::size_t row = 0; row < square_rows; row += size)
      transpose_square<Item>(part(source, row, column * sizeof(Item)),
                             part(destination, column, row * sizeof(Item)));
  transpose_items<Item>(part(source, square_rows, 0),
                        part(destination, 0, square_rows * sizeof(Item)), rows - square_rows,
                        square_columns);
  transpose_items<Item>(part(source, 0, square_columns * sizeof(Item)),
                        part(destination, square_columns, 0), rows, columns - square_columns);
}

// Items of any size.
void transpose_groups(SourceRows source, DestinationRows destination, std::size_t item_size,
                      std::size_t rows, std::size_t columns) {
  const auto pitch = static_cast<std::ptrdiff_t>(item_size);
  for (std::size_t row = 0; row < rows; ++row)
    move_rows({source.at(row), pitch}, {destination.first + row * item_size, destination.pitch},
              item_size, columns);
}

}  // namespace

void transpose_rows(SourceRows source, DestinationRows destination, std::size_t item_size,
                    std::size_t rows, std::size_t columns) {
  switch (item_size) {
    case 1:
      return transpose_squares<std::uint8_t>(source, destination, rows, columns);
    case 2:
      return transpose_squares<std::uint16_t>(source, destination, rows, columns);
    case 4:
      return transpose_squares<std::uint32_t>(source, destination, rows, columns);
    case 8:
      return transpose_squares<std::uint64_t>(source, destination, rows, columns);
    case 16:
      return transpose_items<Vector<std::uint8_t>>(source, destination, rows, columns);
    default:
      transpose_groups(source, destination, item_size, rows, columns);
  }
}

}  // namespace Vrel::detail
