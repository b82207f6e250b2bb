// Makes values of properties.
#include <vrelio/remote/property_bridge.h>

#include <algorithm>
#include <cstddef>
#include <vector>

#include "prop/kind_list_internal.h"
#include "remote/array_levels_internal.h"
#include "remote/bridge_kinds_internal.h"
#include "remote/checked_number_internal.h"
#include "remote/wrong_type_error_internal.h"

using namespace Vrel::detail;

namespace Json {

namespace {

template <class T>
Value to_value(const T& plain) {
  if constexpr (std::is_same_v<T, bool>) {
    return plain;
  } else if constexpr (std::is_same_v<T, VPropstring>) {
    return plain.to(VPropstring::encoding_local);
  } else if constexpr (std::is_floating_point_v<T>) {
    return static_cast<double>(plain);
  } else {
    return checked_number<int>(plain);
  }
}

// Reads a tree from its front to its end, so that of several errors the first one shows.
class Reading {
 public:
  static Value read(const VProp& prop) {
    Value result;
    Reading reading;
    reading.open_.emplace_back(&prop, &result);
    while (!reading.open_.empty()) reading.read_next();
    return result;
  }

 private:
  void read_next() {
    const auto [prop, value] = open_.back();
    open_.pop_back();
    const std::size_t before = open_.size();
    // What a member of the same name left.
    *value = Value();
    read_node(*prop, *value);
    std::reverse(open_.begin() + static_cast<std::ptrdiff_t>(before), open_.end());
  }

  void read_node(const VProp& prop, Value& value) {
    with_kind(
        prop.get_id(),
        [&](auto of) {
          using T = typename decltype(of)::type;
          if constexpr (is_plain_kind<T>) {
            value = to_value(prop.get<T>());
          } else if constexpr (std::is_same_v<T, VPropstruct>) {
            read_fields(prop.get<T>(), value);
          } else if constexpr (is_plain_array<T> || is_tree_array<T>) {
            read_array(prop.get<T>(), value);
          } else {
            throw WrongTypeError(prop);
          }
        },
        [&] { throw WrongTypeError(prop); });
  }

  void read_fields(const VPropstruct& fields, Value& value) {
    Object& map = value.map();
    for (const auto& [name, member] : fields) open_.emplace_back(&member, &map[name]);
  }

  template <class T>
  void read_array(const VProparray<T>& array, Value& value) {
    const std::vector<Value*> items = make_items(array_levels(array), value);
    for (std::size_t i = 0; i < items.size(); ++i) read_element<T>(array[i], *items[i]);
  }

  template <class T>
  void read_element(const T& element, Value& item) {
    if constexpr (std::is_same_v<T, VProp>) {
      open_.emplace_back(&element, &item);
    } else if constexpr (std::is_same_v<T, VPropstruct>) {
      read_fields(element, item);
    } else {
      item = to_value(element);
    }
  }

  // What is still to be read, with the places of the values; the next one stands last.
  std::vector<std::pair<const VProp*, Value*>> open_;
};

}  // namespace

Value get_value(const VProp& prop) { return Reading::read(prop); }

Map<std::string, Value> get_parameters(const VProp& prop) {
  if (prop.get_id() != id_struct) return {};
  return std::move(get_value(prop).map());
}

}  // namespace Json
