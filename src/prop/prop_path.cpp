// Walks along paths: from a value to the value that a path leads to.
#include <vrelio/prop/prop.h>
#include <vrelio/prop/prop_struct.h>

#include <algorithm>
#include <cctype>
#include <string_view>

#include "foundation/raise_internal.h"
#include "prop/kind_list_internal.h"
#include "prop/path_internal.h"
#include "prop/type_mismatch_internal.h"

using namespace Vrel::detail;

namespace {

using Cells = VProparray<VProp>;
using Structs = VProparray<VPropstruct>;

Segment split_field(std::string_view path) {
  Segment segment = split_path(path);
  if (segment.kind != Segment_kind::field) {
    raise(id_plain, "Expected path ...'%s' to start with struct member!",
          std::string(path).c_str());
  }
  return segment;
}

[[noreturn]] void raise_no_member(const std::string& name) {
  raise(id_plain, "Struct member '%s' does not exist!", name.c_str());
}

VProp& add_field(VPropstruct& fields, const std::string& name) {
  const char first = name.front();
  const bool is_letter = std::isalpha(static_cast<unsigned char>(first)) != 0;
  if (!is_letter && first != '_' && static_cast<unsigned char>(first) <= '~') {
    raise(id_plain, "Cannot create field: invalid start character '%c' in field name!", first);
  }
  const auto count = static_cast<unsigned int>(fields.size());
  if (count == fields.capacity()) vrel_prop_reserve(fields, count + std::max(count, 1U));
  fields.emplace_back(name, VProp());
  return fields.back().second;
}

// The ways of a walk that may change what it meets.
class Writer {
 public:
  using Prop = VProp;

  explicit Writer(bool create) : create_(create) {}

  VProp& field(VPropstruct& fields, const std::string& name) const {
    const auto found = fields.find(name);
    if (found != fields.end()) return found->second;
    if (!create_) raise_no_member(name);
    return add_field(fields, name);
  }
  // Intended: an empty value has no members, and stays empty if nothing is to be created;
  // PropPathTest.WithoutCreatingAnEmptyValueHasNoMembers.
  VProp& field(VProp& value, const std::string& name) const {
    if (value.empty() && !create_) raise_no_member(name);
    return field(value.get<VPropstruct>(), name);
  }
  template <class Array>
  void open(VProp& value) const {
    if (value.empty() && create_) value.get<Array>();
  }
  template <class Array>
  auto& element(VProp& value, const VProparrayBase::index_list& pos) const {
    Array& array = value.get<Array>();
    return array.at(array.get_idx(pos, create_));
  }

 private:
  bool create_;
};

// Those of a walk that may not.
class Reader {
 public:
  using Prop = const VProp;

  const VProp& field(const VPropstruct& fields, const std::string& name) const {
    const auto found = fields.find(name);
    if (found == fields.end()) raise_no_member(name);
    return found->second;
  }
  const VProp& field(const VProp& value, const std::string& name) const {
    if (value.empty()) raise_no_member(name);
    return field(value.get<VPropstruct>(), name);
  }
  template <class Array>
  void open(const VProp&) const {}
  template <class Array>
  const auto& element(const VProp& value, const VProparrayBase::index_list& pos) const {
    const Array& array = value.get<Array>();
    return array.at(array.get_idx(pos));
  }
};

template <class Ways>
typename Ways::Prop& step_into_cell(const Ways& ways, typename Ways::Prop& value,
                                    const Segment& segment, std::string_view path) {
  ways.template open<Cells>(value);
  if (value.get_id() != id_cell_array) {
    raise(id_plain, "Path ...'%s' references cell content from a non-cell array!",
          std::string(path).c_str());
  }
  return ways.template element<Cells>(value, segment.pos);
}

template <class Ways>
auto& step_into_struct(const Ways& ways, typename Ways::Prop& value, const Segment& segment,
                       std::string_view path) {
  ways.template open<Structs>(value);
  if (value.get_id() != id_struct_array) {
    raise(id_plain, "Path ...'%s' references struct from a non-struct array!",
          std::string(path).c_str());
  }
  if (segment.tail.empty()) {
    raise(id_plain, "Path ...'%s' ends in struct array!", std::string(path).c_str());
  }
  return ways.template element<Structs>(value, segment.pos);
}

template <class Ways>
typename Ways::Prop& walk(const Ways& ways, typename Ways::Prop& from, std::string_view path) {
  typename Ways::Prop* value = &from;
  while (!path.empty()) {
    Segment segment = split_path(path);
    if (segment.kind == Segment_kind::field) {
      value = &ways.field(*value, segment.head);
    } else if (segment.kind == Segment_kind::cell) {
      value = &step_into_cell(ways, *value, segment, path);
    } else {
      auto& fields = step_into_struct(ways, *value, segment, path);
      segment = split_field(segment.tail);
      value = &ways.field(fields, segment.head);
    }
    path = segment.tail;
  }
  return *value;
}

template <class Ways, class Fields>
typename Ways::Prop& walk_fields(const Ways& ways, Fields& fields, std::string_view path) {
  const Segment segment = split_field(path);
  return walk(ways, ways.field(fields, segment.head), segment.tail);
}

// Of an array that has no elements yet, so that it grows in every dimension.
void check_growth(const VProparrayBase::index_list& pos) {
  VProparrayBase::index_list shape = pos;
  for (unsigned int& size : shape) ++size;
  VProparrayBase::size(shape);
}

// Does what creating would do, but for the elements.
void check_path(std::string_view path) {
  bool is_in_struct = false;
  while (!path.empty() || is_in_struct) {
    const Segment segment = is_in_struct ? split_field(path) : split_path(path);
    check_growth(segment.pos);
    is_in_struct = segment.kind == Segment_kind::struct_element;
    path = segment.tail;
  }
}

}  // namespace

VProp& VProp::getp(const std::string& path, bool create) {
  return walk(Writer(create), *this, path);
}

const VProp& VProp::getp(const std::string& path) const { return walk(Reader(), *this, path); }

VProp& VPropstruct::getp(const std::string& path, bool create) {
  return walk_fields(Writer(create), *this, path);
}

const VProp& VPropstruct::getp(const std::string& path) const {
  return walk_fields(Reader(), *this, path);
}

VProp& VProp::operator()(unsigned int i, unsigned int j, unsigned int k, unsigned int l) {
  return Writer(true).element<Cells>(*this, VProparrayBase::val2pos(i, j, k, l));
}

const VProp& VProp::operator()(unsigned int i, unsigned int j, unsigned int k,
                               unsigned int l) const {
  return Reader().element<Cells>(*this, VProparrayBase::val2pos(i, j, k, l));
}

VPropstruct& VProp::s(unsigned int i, unsigned int j, unsigned int k, unsigned int l) {
  return Writer(true).element<Structs>(*this, VProparrayBase::val2pos(i, j, k, l));
}

const VPropstruct& VProp::s(unsigned int i, unsigned int j, unsigned int k, unsigned int l) const {
  return Reader().element<Structs>(*this, VProparrayBase::val2pos(i, j, k, l));
}

bool vrel_prop_is_valid_path(const std::string& path) {
  try {
    check_path(path);
    return true;
  } catch (const VrelError&) {
    return false;
  }
}
