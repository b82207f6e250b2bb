#include "remote/array_levels_internal.h"

#include <algorithm>
#include <iterator>

namespace Vrel::detail {

std::vector<unsigned int> array_levels(const VProparrayBase& array) {
  if (array.count() == 0) return {};
  if (array.count() == 1) return {1};
  std::vector<unsigned int> levels;
  const VProparrayBase::index_list sizes = array.get_size(true);
  std::copy_if(sizes.rbegin(), sizes.rend(), std::back_inserter(levels),
               [](unsigned int size) { return size > 1; });
  return levels;
}

// Both walks go level by level: the lists of one level are together the items of the one above.

std::vector<Json::Value*> make_items(const std::vector<unsigned int>& levels, Json::Value& value) {
  if (levels.empty()) {
    value.array();
    return {};
  }
  std::vector<Json::Value*> items = {&value};
  for (const unsigned int length : levels) {
    std::vector<Json::Value*> next;
    next.reserve(items.size() * length);
    for (Json::Value* const item : items) {
      Json::Array& list = item->array();
      list.resize(length);
      for (Json::Value& inner : list) next.push_back(&inner);
    }
    items.swap(next);
  }
  return items;
}

std::vector<const Json::Value*> find_items(const std::vector<unsigned int>& levels,
                                           const Json::Value& value) {
  if (levels.empty()) {
    if (!value.array().empty()) throw Json::BadCast();
    return {};
  }
  std::vector<const Json::Value*> items = {&value};
  for (const unsigned int length : levels) {
    std::vector<const Json::Value*> next;
    for (const Json::Value* const item : items) {
      const Json::Array& list = item->array();
      if (list.size() != length) throw Json::BadCast();
      for (const Json::Value& inner : list) next.push_back(&inner);
    }
    items.swap(next);
  }
  return items;
}

}  // namespace Vrel::detail
