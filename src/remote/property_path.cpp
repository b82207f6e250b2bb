// Follows paths of names and indices.
#include <vrelio/prop/prop_struct.h>
#include <vrelio/remote/property_bridge.h>

#include <charconv>
#include <string_view>
#include <type_traits>

#include "prop/kind_list_internal.h"
#include "prop/numeric_internal.h"

using namespace Vrel::detail;

namespace Json {

namespace {

// The element at an index in text; null if there is none.
template <class Elements>
auto* find_element(Elements& elements, std::string_view text) {
  unsigned int index = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, index);
  const bool is_found = error == std::errc() && stop == end && index < elements.size();
  return is_found ? &elements[index] : nullptr;
}

// Text up to the first slash, and what is behind it.
struct Split_path {
  explicit Split_path(std::string_view path)
      : head(path.substr(0, path.find('/'))), has_rest(head.size() < path.size()) {
    if (has_rest) rest = path.substr(head.size() + 1);
  }

  std::string_view head;
  std::string_view rest;
  bool has_rest;
};

bool is_scalar_array(int id) {
  const int element = element_id(id);
  return is_array(id) && (real_row(element) != -1 || element == id_logical || element == id_text);
}

// Where a path has led to. Access to a tree that is not constant makes the handles on the way the sole
// owners of what they hold.
template <class Prop>
class Walk {
 public:
  using Result = std::pair<Prop*, std::string>;

  Walk(Prop& start, const std::string& path) : here_(&start), path_(path) {}

  Result run() {
    while (here_ != nullptr && !is_found_) step();
    if (here_ == nullptr) return {nullptr, std::string()};
    return {here_, std::string(path_)};
  }

 private:
  template <class T>
  using Held = std::conditional_t<std::is_const_v<Prop>, const T, T>;

  void step() {
    const int id = here_->get_id();
    if (is_scalar_array(id)) {
      is_found_ = true;
    } else if (id == id_struct) {
      enter(here_->template get<VPropstruct>());
    } else if (id == id_cell_array) {
      enter(here_->template get<VProparray<VProp>>());
    } else if (id == id_struct_array) {
      enter_struct_array();
    } else {
      here_ = nullptr;
    }
  }

  void enter(Held<VPropstruct>& fields) {
    const Split_path path(path_);
    const auto field = fields.find(std::string(path.head));
    here_ = field == fields.end() ? nullptr : &field->second;
    is_found_ = here_ != nullptr && !path.has_rest;
    path_ = path.rest;
  }

  void enter(Held<VProparray<VProp>>& cells) {
    const Split_path path(path_);
    here_ = find_element(cells, path.head);
    path_ = path.rest;
  }

  void enter_struct_array() {
    const Split_path path(path_);
    if (!path.has_rest) {
      is_found_ = true;
      return;
    }
    auto* const fields = find_element(here_->template get<VProparray<VPropstruct>>(), path.head);
    path_ = path.rest;
    if (fields == nullptr) {
      here_ = nullptr;
    } else {
      enter(*fields);
    }
  }

  Prop* here_;
  std::string_view path_;
  bool is_found_ = false;
};

}  // namespace

std::pair<VProp*, std::string> find_property(VProp& prop, const std::string& path) {
  return Walk<VProp>(prop, path).run();
}

std::pair<const VProp*, std::string> find_property(const VProp& prop, const std::string& path) {
  return Walk<const VProp>(prop, path).run();
}

}  // namespace Json
