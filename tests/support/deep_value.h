// Values of which the depth would overflow the stack of anything that recurses.
#pragma once

#include <vrelio/json/value.h>

#include <utility>

/// As deep as tests go.
constexpr int deep_levels = 1000000;

/// Arrays in arrays, the innermost of which holds `innermost`.
inline Json::Value nested_arrays(int levels, Json::Value innermost) {
  Json::Value value;
  Json::Value* inner = &value;
  for (int level = 0; level < levels; ++level) inner = &inner->array().emplace_back();
  *inner = std::move(innermost);
  return value;
}

/// Maps in maps under the key "a"; every level has a further entry behind it, so that none is the last.
inline Json::Value nested_maps(int levels, Json::Value innermost) {
  Json::Value value;
  Json::Value* inner = &value;
  for (int level = 0; level < levels; ++level) {
    (*inner)["b"] = level;
    inner = &(*inner)["a"];
  }
  *inner = std::move(innermost);
  return value;
}

/// An array in a map in an array and so on; every level has siblings on both sides.
inline Json::Value nested_both(int levels, Json::Value innermost) {
  Json::Value value;
  Json::Value* inner = &value;
  for (int level = 0; level < levels; level += 2) {
    Json::Array& items = inner->array();
    items.emplace_back(level);
    Json::Value& map = items.emplace_back();
    items.emplace_back("behind");
    inner = &map["in"];
    map["before"] = true;
  }
  *inner = std::move(innermost);
  return value;
}
