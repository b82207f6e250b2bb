#include "prop/field_index_internal.h"

namespace Vrel::detail {

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
  if (is_small_ || !vrel_prop_is_valid_name(path)) return fields_[path];
  std::size_t place = 0;
  if (find(path, place)) return fields_[place].second;
  fields_.emplace_back(path, VProp());
  return fields_.back().second;
}

}  // namespace Vrel::detail
