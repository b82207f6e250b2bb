// Where a visitor is, and the text of that.
#include <vrelio/prop/prop_visitor.h>

#include <algorithm>
#include <cstddef>

#include "prop/kind_list_internal.h"

namespace {

// In a row, and in the first row, the index along it says it all.
bool is_along_row(const VProparrayBase::index_list& size, const VProparrayBase::index_list& pos) {
  return size.size() == 2 && (size[0] == 1 || pos[0] == 0);
}

VProparrayBase::index_list position_in(const VProparrayBase& array, unsigned int idx) {
  const VProparrayBase::index_list size = array.get_size(false);
  const VProparrayBase::index_list pos = array.get_pos(idx);
  return is_along_row(size, pos) ? VProparrayBase::index_list{pos[1]} : pos;
}

std::string list_of(const VProparrayBase::index_list& pos) {
  std::string text;
  for (const unsigned int index : pos) {
    if (!text.empty()) text += ',';
    text += std::to_string(index);
  }
  return text;
}

// An array of texts has no level of its own.
bool is_in_texts(const std::vector<const VProp*>& arrays) {
  return !arrays.empty() && arrays.back()->get_id() == Vrel::detail::id_text_array;
}

void append_key(std::string& path, const std::string& key) {
  if (!path.empty()) path += '.';
  path += key;
}

}  // namespace

void VPropPos::reset() { indices.clear(); }

bool VPropPos::decend(const std::string& key) {
  keys.push_back(key);
  indices.push_back(no_index);
  return true;
}

bool VPropPos::decend(unsigned int idx) {
  keys.emplace_back();
  indices.push_back(idx);
  return true;
}

bool VPropPos::set_key(const std::string& key) {
  if (keys.empty()) return false;
  keys.back() = key;
  return true;
}

void VPropPos::ascend() {
  if (!keys.empty()) keys.pop_back();
  if (!indices.empty()) indices.pop_back();
}

std::string VPropPos::get_cur_key() const { return keys.empty() ? std::string() : keys.back(); }

unsigned int VPropPos::get_cur_idx() const { return indices.empty() ? no_index : indices.back(); }

std::string VPropVisitor::get_cur_path(unsigned int depth) {
  positions.clear();
  const std::size_t levels = std::min<std::size_t>(depth, indices.size());
  std::string path;
  for (std::size_t level = 0; level < levels; ++level) append_level(path, level);
  return path;
}

// After an error and a reset there are more keys than levels, after an error alone fewer containers;
// those of the deepest levels belong together.
void VPropVisitor::append_level(std::string& path, std::size_t level) {
  const std::size_t above = indices.size() - level;
  const std::size_t containers = arrays.size() - (is_in_texts(arrays) ? 1 : 0);
  const std::string key = above <= keys.size() ? keys[keys.size() - above] : std::string();
  if (indices[level] == no_index) return append_key(path, key);
  if (above > containers) return;
  const VProp& array = *arrays[containers - above];
  const bool is_cell = array.get_id() == Vrel::detail::id_cell_array;
  positions.push_back(position_in(*array.get_arr(true), indices[level]));
  path += (is_cell ? '{' : '(') + list_of(positions.back()) + (is_cell ? '}' : ')');
  if (!key.empty()) append_key(path, key);
}
