#include "lib/ome_tree.h"

#include <vrelio/foundation/error.h>
#include <vrelio/json/xml_reader.h>

#include <algorithm>
#include <charconv>
#include <system_error>

#include "lib/plain_xml.h"

namespace Vrel::tool {

namespace {

constexpr const char* prefix = "ome:";

[[noreturn]] void raise_invalid() { throw VrelError(VrelError()("Invalid OME-XML!")(-4)); }

// The attributes of the views that are no texts. In ascending order.
constexpr std::string_view typed_attributes[] = {"Attenuation",
                                                 "BigEndian",
                                                 "Color",
                                                 "DeltaT",
                                                 "EmissionWavelength",
                                                 "ExcitationWavelength",
                                                 "ExposureTime",
                                                 "FirstC",
                                                 "FirstT",
                                                 "FirstZ",
                                                 "IFD",
                                                 "Interleaved",
                                                 "NDFilter",
                                                 "PhysicalSizeX",
                                                 "PhysicalSizeY",
                                                 "PhysicalSizeZ",
                                                 "PinholeSize",
                                                 "PlaneCount",
                                                 "PockelCellSetting",
                                                 "PositionX",
                                                 "PositionY",
                                                 "PositionZ",
                                                 "Power",
                                                 "SamplesPerPixel",
                                                 "SignificantBits",
                                                 "SizeC",
                                                 "SizeT",
                                                 "SizeX",
                                                 "SizeY",
                                                 "SizeZ",
                                                 "TheC",
                                                 "TheT",
                                                 "TheZ",
                                                 "TimeIncrement",
                                                 "Wavelength"};

bool is_typed(const std::string& name) {
  return std::binary_search(std::begin(typed_attributes), std::end(typed_attributes),
                            std::string_view(name));
}

template <class Number>
bool read_number(const std::string& text, Json::Value& value) {
  Number number{};
  const char* const end = text.data() + text.size();
  const std::from_chars_result result = std::from_chars(text.data(), end, number);
  if (result.ec != std::errc() || result.ptr != end) return false;
  value = number;
  return true;
}

Json::Value typed_value(const std::string& text) {
  if (text == "true" || text == "false") return text == "true";
  Json::Value value(text);
  if (!read_number<int>(text, value)) read_number<double>(text, value);
  return value;
}

// A text without its mark.
std::string unmarked(const Json::Value& value) {
  const std::string& text = value.get<std::string>();
  if (text.empty() || text[0] != xml_text_mark) raise_invalid();
  return text.substr(1);
}

std::string prefixed(const std::string& name) {
  const std::size_t colon = name.find(':');
  return prefix + (colon == std::string::npos ? name : name.substr(colon + 1));
}

Json::Value make_element(const Json::Value& read);

// The nesting was limited before.
Json::Value make_children(const Json::Value& read) {
  if (read.is_null()) return {};
  if (read.kind() == Json::kind_string) return unmarked(read);
  Json::Object elements;
  for (const auto& [name, child] : read.map()) {
    Json::Value& element = elements[prefixed(name)];
    if (child.kind() != Json::kind_array) {
      element = make_element(child);
      continue;
    }
    for (const Json::Value& item : child.array()) element.array().push_back(make_element(item));
  }
  return elements;
}

Json::Value make_element(const Json::Value& read) {
  if (read.kind() != Json::kind_map) return make_children(read);
  Json::Object element;
  for (const auto& [name, value] : read.map()) {
    if (name.empty()) {
      element[name] = make_children(value);
    } else {
      const std::string text = unmarked(value);
      element[name] = is_typed(name) ? typed_value(text) : Json::Value(text);
    }
  }
  return element;
}

Json::Value read_document(const std::string& text) {
  Json::Value root;
  Json::XmlReader reader(root);
  const char* begin = text.data();
  const char* const end = begin + text.size();
  const bool is_complete = reader.read(begin, end) || reader.may_end();
  if (!is_complete || begin != end) raise_invalid();
  return root;
}

}  // namespace

Json::Value read_ome_tree(std::string_view text, std::string_view skipped) {
  try {
    Json::Value tree = make_children(read_document(plain_xml(text, skipped)));
    const Json::Value* const top = tree.kind() == Json::kind_map ? tree.find("ome:OME") : nullptr;
    if (top == nullptr || top->kind() != Json::kind_map) raise_invalid();
    return tree;
  } catch (const Json::XmlReader::Unexpected&) {
    raise_invalid();
  } catch (const Json::BadCast&) {
    raise_invalid();
  }
}

std::vector<const Json::Value*> children(const Json::Value& element, const std::string& name) {
  std::vector<const Json::Value*> found;
  if (element.kind() != Json::kind_map) return found;
  const Json::Value* const content = element.find("");
  const bool has_elements = content != nullptr && content->kind() == Json::kind_map;
  const Json::Value* const node = has_elements ? content->find(name) : nullptr;
  if (node == nullptr) return found;
  if (node->kind() != Json::kind_array) return {node};
  for (const Json::Value& item : node->array()) found.push_back(&item);
  return found;
}

const Json::Value* child(const Json::Value& element, const std::string& name) {
  const std::vector<const Json::Value*> found = children(element, name);
  return found.empty() ? nullptr : found.front();
}

const Json::Value* attribute(const Json::Value& element, const std::string& name) {
  return element.kind() == Json::kind_map ? element.find(name) : nullptr;
}

std::string text_attribute(const Json::Value& element, const std::string& name) {
  const Json::Value* const value = attribute(element, name);
  return value != nullptr && value->kind() == Json::kind_string ? value->get<std::string>() : "";
}

double number_attribute(const Json::Value& element, const std::string& name, double absent) {
  const Json::Value* const value = attribute(element, name);
  if (value == nullptr) return absent;
  if (value->kind() == Json::kind_integer) return value->get<int>();
  return value->kind() == Json::kind_decimal ? value->get<double>() : absent;
}

std::string text_of(const Json::Value* element) {
  if (element == nullptr) return "";
  if (element->kind() == Json::kind_string) return element->get<std::string>();
  const Json::Value* const content = attribute(*element, "");
  return content != nullptr && content->kind() == Json::kind_string ? content->get<std::string>()
                                                                    : "";
}

}  // namespace Vrel::tool
