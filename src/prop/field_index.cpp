#include "prop/field_index_internal.h"

#include "prop/kind_list_internal.h"

namespace Vrel::detail {
namespace {

// The fields of all structs that are there along a path.
std::size_t count_fields_along(const VPropstruct& fields, const std::string& path) {
  std::size_t count = fields.size();
  const VPropstruct* within = &fields;
  std::size_t begin = 0;
  for (std::size_t dot = path.find('.'); dot != std::string::npos; dot = path.find('.', begin)) {
    const auto field = within->find(path.substr(begin, dot - begin));
    if (field == within->end() || field->second.get_id() != id_struct) break;
    within = &static_cast<const VProp&>(field->second).get<VPropstruct>();
    count += within->size();
    begin = dot + 1;
  }
  return count;
}

}  // namespace

// A few names are looked for one by one; for more of them all fields are put into the index, each of which
// takes as long as passing many.
Field_index::Field_index(VPropstruct& fields, std::size_t count, Field_search_budget& budget)
    : fields_(fields), is_small_(count <= small_count), budget_(budget) {
  constexpr std::size_t cost_of_indexing = 64;
  budget.spend(fields.size() * (is_small_ ? count : cost_of_indexing));
  if (is_small_) return;
  fields_.reserve(fields.size() + count);
  places_.reserve(fields.size() + count);
}

bool Field_index::find(const std::string& name, std::size_t& place) {
  for (; known_ < fields_.size(); ++known_) places_.emplace(fields_[known_].first, known_);
  const auto found = places_.find(name);
  if (found == places_.end()) return false;
  place = found->second;
  return true;
}

bool Field_index::has(const std::string& name) {
  std::size_t place = 0;
  return is_small_ ? fields_.has_key(name) : find(name, place);
}

VProp& Field_index::at(const std::string& path) {
  if (!vrel_prop_is_valid_name(path)) {
    budget_.spend(count_fields_along(fields_, path));
    return fields_[path];
  }
  if (is_small_) return fields_[path];
  std::size_t place = 0;
  if (find(path, place)) return fields_[place].second;
  fields_.emplace_back(path, VProp());
  return fields_.back().second;
}

}  // namespace Vrel::detail
