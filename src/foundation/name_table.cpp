#include <algorithm>

#include "foundation/name_table_internal.h"
#include "foundation/raise_internal.h"

namespace Vrel::detail {

const name_row* name_table::find(int id) const {
  const name_row* found = std::find_if(
      first_, last_, [&](const name_row& row) { return (row.id & mask_) == (id & mask_); });
  return found == last_ ? nullptr : found;
}

const char* name_table::get_name(int id) const {
  if (const name_row* row = find(id)) return row->name;
  if (const name_row* default_row = find(0)) return default_row->name;
  raise(id_plain, "Map entry not found and no default specified!");
}

int name_table::get_id(std::string_view name) const {
  const name_row* found =
      std::find_if(first_, last_, [&](const name_row& row) { return name == row.name; });
  return found == last_ ? 0 : found->id & mask_;
}

}  // namespace Vrel::detail
