#include "prop/xml_value_reader_internal.h"

#include <vrelio/prop/prop_cast.h>

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "foundation/raise_internal.h"
#include "prop/field_index_internal.h"
#include "prop/kind_list_internal.h"
#include "prop/shape_internal.h"
#include "prop/xml_attributes_internal.h"
#include "prop/xml_form_internal.h"

namespace Vrel::detail {
namespace {

// Whether the size is that of a single value, which only a mark makes an array.
bool is_one(const VProparrayBase::index_list& size) {
  return size == VProparrayBase::index_list{1, 1};
}

// Writes through the typed access, which refuses another kind.
void put(VProp& value, VProp& read) {
  if (value.empty()) {
    value.swap_value(read);
    return;
  }
  with_held_kind(read.get_id(), [&](auto of) {
    using T = typename decltype(of)::type;
    value.get<T>() = std::move(read.get<T>());
  });
}

VPropstring text_of(Xml_view element) {
  return VPropstring(element.find_text().value_or(std::string()), VPropstring::encoding_utf8);
}

void read_number(Xml_view element, int id, VProp& value) {
  std::string text = element.text();
  VProp read = vrel_string2val(text, id);
  put(value, read);
}

void read_numbers(Xml_view element, int id, VProp& value) {
  std::string text = element.find_text().value_or(std::string());
  VProp read = vrel_string2val(text, id | array_flag);
  put(value, read);
}

[[noreturn]] void raise_invalid_structs() { raise(id_plain, "Invalid struct array!"); }

// Intended: where the number of fields cannot be told, as for no elements, and for elements without
// fields, which take no space in the document, nothing is read;
// PropXmlReadTest.AnArrayOfStructsWithoutFieldsIsNotRead.
std::size_t count_fields(std::uint64_t structs, std::size_t children) {
  if (structs == 0 || children < structs || children % structs != 0) {
    raise_invalid_structs();
  }
  return static_cast<std::size_t>(children / structs);
}

void store_bits(std::optional<std::uint64_t> bits, VProp& value) {
  VProparrayBase* const array = value.get_arr(false);
  if (array != nullptr && bits) array->userbits = *bits;
}

}  // namespace

void Xml_value_reader::read(Xml_view element, VProp& value) {
  const Xml_view outer = std::exchange(current_, element);
  read_current(value);
  current_ = outer;
}

void Xml_value_reader::read_current(VProp& value) {
  const char* const written = current_.attribute("type");
  const std::string type = written == nullptr ? "" : written;
  if (type == "complex") return read_complex(value);
  const VProparrayBase::index_list size = read_size(current_);
  const std::optional<std::uint64_t> bits = find_bits(current_, "userbits");
  const int id = vrel_dt_from_name(type.c_str());
  if (id == id_none) raise(id_plain, "Unknown type '%s' in xml string!", type.c_str());
  const bool is_array = !is_one(size) || current_.attribute("isarr") != nullptr;
  if (id == id_text) {
    value.get<VPropstring>() = text_of(current_);
  } else if (id == id_cell) {
    return read_cell(bits, value);
  } else if (id == id_struct) {
    is_array ? read_structs(value) : read_struct(value);
  } else {
    is_array ? read_numbers(current_, id, value) : read_number(current_, id, value);
    if (is_array) value.get_arr(true)->set_size(size, VProparrayBase::set_mode_checked);
  }
  if (is_array) store_bits(bits, value);
}

void Xml_value_reader::read_cell(std::optional<std::uint64_t> bits, VProp& value) {
  if (read_flag(current_, "isempty")) return value.clear();
  if (find_integer(current_, "ischar").value_or(0) != 0) bits = xml_texts_bit;
  const bool are_texts = (bits.value_or(0) & xml_texts_bit) != 0;
  are_texts ? read_texts(value) : read_cells(value);
  store_bits(bits, value);
}

void Xml_value_reader::read_texts(VProp& value) {
  auto& texts = value.get<VProparray<VPropstring>>();
  for (Xml_view child = current_.first_child(); child; child = child.next()) {
    texts.push_back(text_of(child));
  }
  texts.set_size(read_size(current_), VProparrayBase::set_mode_checked);
}

void Xml_value_reader::read_cells(VProp& value) {
  auto& cells = value.get<VProparray<VProp>>();
  for (Xml_view child = current_.first_child(); child; child = child.next()) {
    read(child, cells.emplace_back());
  }
  cells.set_size(read_size(current_), VProparrayBase::set_mode_checked);
}

void Xml_value_reader::read_struct(VProp& value) {
  auto& fields = value.get<VPropstruct>();
  Field_index index(fields, current_.count_children(), budget_);
  for (Xml_view child = current_.first_child(); child; child = child.next()) {
    read(child, index.at(child.name()));
  }
}

void Xml_value_reader::read_structs(VProp& value) {
  const VProparrayBase::index_list size = read_size(current_);
  const std::uint64_t count = element_count(size);
  const std::size_t field_count = count_fields(count, current_.count_children());
  auto& structs = value.get<VProparray<VPropstruct>>();
  structs.reserve(structs.size() + count);
  Field_index first(structs.emplace_back(), field_count, budget_);
  Xml_view child = current_.first_child();
  for (std::size_t field = 0; field < field_count; ++field, child = child.next()) {
    read_field(child, 1, first);
  }
  for (std::uint64_t place = 2; place <= count; ++place) {
    Field_index index(structs.emplace_back(), field_count, budget_);
    for (std::size_t field = 0; field < field_count; ++field, child = child.next()) {
      if (!first.has(child.name())) raise_invalid_structs();
      read_field(child, place, index);
    }
  }
  structs.set_size(size, VProparrayBase::set_mode_checked);
}

void Xml_value_reader::read_field(Xml_view child, std::uint64_t place, Field_index& index) {
  if (find_integer(child, "idx") != static_cast<int>(place)) raise_invalid_structs();
  read(child, index.at(child.name()));
}

}  // namespace Vrel::detail
