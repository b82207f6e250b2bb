// Writes values into properties.
#include <vrelio/foundation/error.h>
#include <vrelio/remote/property_bridge.h>

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "prop/kind_list_internal.h"
#include "remote/array_levels_internal.h"
#include "remote/bridge_kinds_internal.h"
#include "remote/checked_number_internal.h"
#include "remote/wrong_type_error_internal.h"

using namespace Vrel::detail;

namespace Json {

namespace {

std::string no_property(const std::string& key) { return "No property '" + key + "'"; }

// Without making a report of the error, as `what` does for those of the library.
const char* text_of(const std::exception& error) {
  const auto* const of_library = dynamic_cast<const VrelError*>(&error);
  return of_library == nullptr ? error.what() : of_library->get_msg();
}

// What a property, or an element of it, of the plain type T is to hold.
template <class T>
T plain_of(const Value& value, const VProp& prop) {
  if constexpr (std::is_same_v<T, bool>) {
    if (value.kind() == kind_boolean) return value.get<bool>();
  } else if constexpr (std::is_same_v<T, VPropstring>) {
    if (value.kind() == kind_string) {
      return VPropstring(value.get<std::string>(), VPropstring::encoding_local);
    }
  } else {
    if (value.kind() == kind_integer) return checked_number<T>(value.get<int>());
    if (value.kind() == kind_decimal) return checked_number<T>(value.get<double>());
  }
  throw WrongTypeError(prop);
}

template <class T>
bool write_plain(const Value& value, VProp& prop) {
  const T wanted = plain_of<T>(value, prop);
  T& held = prop.get<T>();
  if (held == wanted) return false;
  held = wanted;
  return true;
}

template <class T>
std::vector<const Value*> items_for(const Value& value, const VProp& prop) {
  if (value.kind() != kind_array) throw WrongTypeError(prop);
  return find_items(array_levels(prop.get<VProparray<T>>()), value);
}

template <class T>
void write_plain_array(const Value& value, VProp& prop) {
  std::vector<T> wanted;
  for (const Value* const item : items_for<T>(value, prop)) {
    wanted.push_back(plain_of<T>(*item, prop));
  }
  std::copy(wanted.begin(), wanted.end(), prop.get<VProparray<T>>().begin());
}

// Writes a tree from its front to its end, and knows below which members it is.
class Writing {
 public:
  static bool write(const Value& value, VProp& prop) {
    Writing writing;
    try {
      const bool is_changed = writing.write_node(value, prop);
      while (!writing.frames_.empty()) writing.step();
      return is_changed;
    } catch (const std::exception& error) {
      const std::string members = writing.members_text();
      if (members.empty()) throw;
      throw std::invalid_argument(members + text_of(error));
    }
  }

 private:
  // A value with the property or the element of a struct array that it goes into.
  struct Step {
    const Value* value = nullptr;
    VProp* prop = nullptr;
    VPropstruct* fields = nullptr;
    const std::string* key = nullptr;  // of a member
  };

  // The steps of one container.
  struct Frame {
    std::vector<Step> steps;
    std::size_t next = 0;
    const std::string* member = nullptr;  // that is being written
  };

  void step() {
    Frame& frame = frames_.back();
    frame.member = nullptr;
    if (frame.next == frame.steps.size()) {
      frames_.pop_back();
      return;
    }
    const Step step = frame.steps[frame.next++];
    if (step.fields != nullptr) {
      write_element(*step.value, *step.fields);
      return;
    }
    if (step.prop == nullptr) throw std::invalid_argument(no_property(*step.key));
    frame.member = step.key;
    write_node(*step.value, *step.prop);
  }

  bool write_node(const Value& value, VProp& prop) {
    return with_kind(
        prop.get_id(),
        [&](auto of) {
          using T = typename decltype(of)::type;
          if constexpr (is_plain_kind<T>) {
            return write_plain<T>(value, prop);
          } else {
            write_container<T>(value, prop);
            return false;
          }
        },
        [&]() -> bool { throw WrongTypeError(prop); });
  }

  template <class T>
  void write_container(const Value& value, VProp& prop) {
    if constexpr (is_plain_array<T>) {
      write_plain_array<typename T::value_type>(value, prop);
    } else if constexpr (is_tree_array<T>) {
      open_array<typename T::value_type>(value, prop);
    } else if constexpr (std::is_same_v<T, VPropstruct>) {
      if (value.kind() != kind_map) throw WrongTypeError(prop);
      open_struct(value.map(), prop.get<VPropstruct>());
    } else {
      throw WrongTypeError(prop);
    }
  }

  // An element of a struct array takes what a property that holds a struct does.
  void write_element(const Value& value, VPropstruct& fields) {
    if (value.kind() != kind_map) throw WrongTypeError(VProp(VPropstruct()));
    open_struct(value.map(), fields);
  }

  // All members are looked up at once, since a struct finds each by going through all.
  void open_struct(const Object& map, VPropstruct& fields) {
    std::unordered_map<std::string_view, VProp*> members;
    for (auto& [name, member] : fields) members.emplace(name, &member);
    Frame frame;
    for (const auto& [key, value] : map) {
      const auto member = members.find(key);
      frame.steps.push_back(
          {&value, member == members.end() ? nullptr : member->second, nullptr, &key});
    }
    frames_.push_back(std::move(frame));
  }

  template <class T>
  void open_array(const Value& value, VProp& prop) {
    const std::vector<const Value*> items = items_for<T>(value, prop);
    auto& elements = prop.get<VProparray<T>>();
    Frame frame;
    for (std::size_t i = 0; i < items.size(); ++i) {
      frame.steps.push_back(step_into(*items[i], elements[i]));
    }
    frames_.push_back(std::move(frame));
  }

  static Step step_into(const Value& value, VProp& prop) {
    return {&value, &prop, nullptr, nullptr};
  }
  static Step step_into(const Value& value, VPropstruct& fields) {
    return {&value, nullptr, &fields, nullptr};
  }

  std::string members_text() const {
    std::string text;
    for (const Frame& frame : frames_) {
      if (frame.member == nullptr) continue;
      text += "Invalid argument for property '" + *frame.member + "'\n";
    }
    return text;
  }

  std::vector<Frame> frames_;  // the innermost last
};

}  // namespace

bool set_value(const Value& value, VProp& prop) { return Writing::write(value, prop); }

}  // namespace Json
