// Small property trees, and the text of values.
#pragma once

#include <vrelio/json/value.h>
#include <vrelio/prop/prop_array.h>
#include <vrelio/prop/prop_struct.h>

#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace Vrel::testing {

/// As JSON, which tells an integer from a decimal.
template <class T>
std::string text_of(const T& value) {
  std::ostringstream text;
  text << value;
  return text.str();
}

/// An array of elements with a shape, the first index running fastest.
template <class T>
VProp shaped(const std::vector<unsigned int>& shape, const std::vector<T>& elements) {
  VProparray<T> array;
  array.assign(elements.begin(), elements.end());
  array.set_size(shape, VProparrayBase::set_mode_checked);
  return array;
}

/// An array that lost its shape.
inline VProp misshapen() {
  VProparray<int> array{1, 2, 3, 4};
  array.set_size({2, 2}, VProparrayBase::set_mode_checked);
  array.push_back(5);
  return array;
}

/// Structs in each other by the member "a", which holds `innermost` at the end.
inline VProp nested_structs(int levels, const VProp& innermost) {
  VProp value = innermost;
  for (int i = 0; i < levels; ++i) {
    VPropstruct fields(1);
    fields[0].first = "a";
    fields[0].second.swap(value);
    VProp outer;
    outer.get<VPropstruct>().swap(fields);
    value.swap(outer);
  }
  return value;
}

}  // namespace Vrel::testing
