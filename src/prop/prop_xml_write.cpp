// Writes property values as XML.
#include <vrelio/prop/prop_cast.h>
#include <vrelio/prop/prop_xml.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "foundation/raise_internal.h"
#include "foundation/unicode_internal.h"
#include "prop/kind_list_internal.h"
#include "prop/tree_depth_internal.h"
#include "prop/xml_characters_internal.h"
#include "prop/xml_dom_internal.h"
#include "prop/xml_form_internal.h"

using namespace Vrel::detail;

namespace {

std::string utf8_for_xml(std::wstring_view text) {
  std::string utf8;
  utf8.reserve(text.size());
  while (!text.empty()) {
    const std::optional<char32_t> code = take_code_point(text);
    if (!code || !is_xml_character(*code)) raise(id_plain, "Text cannot be written as XML!");
    append_utf8(utf8, *code);
  }
  return utf8;
}

std::string size_text(const VProparrayBase::index_list& size, const std::string& separator) {
  std::string text;
  for (const unsigned int length : size) {
    if (!text.empty()) text += separator;
    text += std::to_string(length);
  }
  return text;
}

// In UTF-16, of which a caller's 32-bit units above U+FFFF become two each.
std::size_t utf16_length(std::wstring_view text) {
  const auto pairs = std::count_if(
      text.begin(), text.end(), [](wchar_t unit) { return static_cast<char32_t>(unit) > 0xFFFF; });
  return text.size() + static_cast<std::size_t>(pairs);
}

// What is to be said of a value beside its place.
struct Description {
  int type;
  std::string size;
  std::optional<std::string> text;
};

Description describe_text(const VPropstring& text, const std::string& separator) {
  const auto length = static_cast<unsigned int>(utf16_length(text));
  return {id_text, size_text({1, length}, separator), utf8_for_xml(text)};
}

bool has_number_text(int id) {
  const int element = id & ~array_flag;
  return element == id_logical || real_row(element) >= 0 || complex_row(element) >= 0;
}

Description describe(const VProp& value, const std::string& separator) {
  const int id = value.get_id();
  if (id == id_text) return describe_text(value.get<VPropstring>(), separator);
  if (id == id_none) return {id_cell, size_text({0, 0}, separator), std::nullopt};
  const VProparrayBase* const array = value.get_arr(false);
  Description description = {id & ~array_flag, "", std::nullopt};
  description.size = size_text(
      array == nullptr ? VProparrayBase::index_list{1, 1} : array->get_size(true), separator);
  if (id == id_text_array) description.type = id_cell;
  if (has_number_text(id)) {
    description.text = vrel_val2string(value);
  } else if (description.type != id_cell && description.type != id_struct) {
    raise(id_plain, "Type unknown or incompatible with xml export!");
  }
  return description;
}

// Intended: the bit of a cell array of values is free in memory and not in a document, in which the values
// would become texts; PropXmlTest.WritingLeavesOutTheMarkOfTextsFromAnArrayOfValues.
std::uint64_t bits_of(const VProparrayBase& array, int id) {
  return id == id_cell_array ? array.userbits & ~std::uint64_t{xml_texts_bit} : array.userbits;
}

void mark_array(Xml_element& element, const VProp& value) {
  VProparrayBase* const array = value.get_arr(true);
  if (value.get_id() == id_text_array) array->userbits |= xml_texts_bit;
  if (array->count() == 1) element.set_attribute("isarr", "1");
  element.set_attribute("userbits", std::to_string(bits_of(*array, value.get_id())));
}

void write_description(Xml_element& element, const Description& description) {
  element.set_attribute("type", vrel_dt_get_name(description.type));
  element.set_attribute("size", description.size);
  if (description.text) element.append_text(*description.text);
}

[[noreturn]] void raise_out_of_order() { raise(id_plain, "Internal error!"); }

std::string print_with_root(Xml_element element) {
  element.set_name(xml_root_name);
  element.set_attribute(xml_version_attribute, std::to_string(xml_version));
  return element.print(false);
}

std::string print_with_data(Xml_element element) {
  Xml_element version(xml_data_version_name);
  version.append_text(xml_data_version);
  Xml_element data(xml_data_name);
  data.append(std::move(version));
  data.append(std::move(element));
  return data.print(true);
}

std::string print(Xml_element element, int format) {
  switch (format) {
    case vrel_xml_data:
      return print_with_data(std::move(element));
    case vrel_xml_root:
      return print_with_root(std::move(element));
    case vrel_xml_text:
      return element.text();
    default:
      return "";
  }
}

}  // namespace

VPropXmlExport::VPropXmlExport(int format_wanted) : format_(format_wanted) {}
VPropXmlExport::~VPropXmlExport() = default;

Xml_element VPropXmlExport::make_element(unsigned int place) const {
  const std::string& key = keys.empty() ? std::string() : keys.back();
  if (!key.empty() && !is_xml_name(key)) {
    raise(id_plain, "Field name '%s' cannot be written as XML!", key.c_str());
  }
  Xml_element element =
      elements_.empty() ? Xml_element() : Xml_element(key.empty() ? xml_item_name : key);
  element.set_attribute("idx", std::to_string(place));
  return element;
}

void VPropXmlExport::check_open() const {
  if (elements_.empty()) raise_out_of_order();
}

void VPropXmlExport::check_depth_of_elements() const {
  check_depth(elements_.size() + (format_ == vrel_xml_data ? 2 : 1));
}

// Intended: the texts of an array are counted from 0, all else from 1;
// PropXmlTest.TheTextsOfAnArrayAreCountedFromZero.
bool VPropXmlExport::visit(const VPropstring& text) {
  check_open();
  check_depth_of_elements();
  Xml_element element(xml_item_name);
  element.set_attribute("idx", std::to_string(cur_item));
  write_description(element, describe_text(text, separator_));
  elements_.back().append(std::move(element));
  return true;
}

int VPropXmlExport::visit(const VProp& value) {
  check_depth_of_elements();
  const unsigned int idx = get_cur_idx();
  Xml_element element = make_element(idx == no_index ? 1 : idx + 1);
  const Description description = describe(value, separator_);
  if (value.empty()) element.set_attribute("isempty", "1");
  if (value.get_arr(false) != nullptr) mark_array(element, value);
  write_description(element, description);
  elements_.push_back(std::move(element));
  return visit_go;
}

bool VPropXmlExport::visit_exit(const VProp&) {
  check_open();
  if (elements_.size() == 1) return true;
  Xml_element element = std::move(elements_.back());
  elements_.pop_back();
  elements_.back().append(std::move(element));
  return true;
}

Xml_element VPropXmlExport::take_element() {
  if (elements_.size() != 1) raise_out_of_order();
  Xml_element element = std::move(elements_.back());
  elements_.clear();
  return element;
}

void vrel_export_xml(std::string& out, const VProp& value, int flags) {
  const int format = flags & xml_format_mask;
  try {
    VPropXmlExport visitor(format);
    visitor.process(value);
    out = print(visitor.take_element(), format);
  } catch (const Xml_error& error) {
    raise(id_plain, "Error writing XML properties to string:\n%s", error.what());
  }
}
