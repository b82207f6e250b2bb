// A table that reads both ways: a number to its name, a name to its number.
#pragma once

#include <cstddef>
#include <string_view>

namespace Vrel::detail {

struct name_row {
  int id;
  const char* name;
};

// A view on rows that live as long as the program. The mask is applied to every id, those of the
// rows included. Where an id or a name stands in several rows, the first counts.
class name_table {
 public:
  template <std::size_t Size>
  constexpr explicit name_table(const name_row (&rows)[Size], int mask = -1)
      : first_(rows), last_(rows + Size), mask_(mask) {}

  // The name of an id; that of id 0 for an id without a row.
  // Raises "Map entry not found and no default specified!" (-1) where there is neither.
  const char* get_name(int id) const;
  // The id of exactly this name; 0 for any other text.
  int get_id(std::string_view name) const;

 private:
  const name_row* find(int id) const;

  const name_row* first_;
  const name_row* last_;
  int mask_;
};

}  // namespace Vrel::detail
