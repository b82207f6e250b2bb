#include <vrelio/foundation/propstring.h>
#include <vrelio/prop/prop_cast.h>

#include <nlohmann/json.hpp>

#include "lib/property_kind.h"
#include "lib/property_tree.h"

namespace Vrel::tool {

namespace {

using nlohmann::ordered_json;

ordered_json json_of(const VProp& value);

ordered_json json_of(const VPropstring& text) { return text.to(VPropstring::encoding_utf8); }

ordered_json json_of(const VPropstruct& fields) {
  ordered_json object = ordered_json::object();
  for (const auto& [name, value] : fields) object.emplace(name, json_of(value));
  return object;
}

template <class T>
ordered_json json_of(const VProparray<T>& array) {
  ordered_json list = ordered_json::array();
  for (const T& element : array) list.push_back(json_of(element));
  return list;
}

// "Inf" and "NaN" are no numbers in JSON.
ordered_json json_of_real(const std::string& number) {
  return ordered_json::accept(number) ? ordered_json::parse(number) : ordered_json();
}

ordered_json json_of_number(const std::string& number, int element) {
  if (element == prop_id<bool>) return number == "1";
  if ((element & prop_complex_flag) == 0) return json_of_real(number);
  const std::size_t comma = number.find(',');
  return {json_of_real(number.substr(1, comma - 1)),
          json_of_real(number.substr(comma + 1, number.size() - comma - 2))};
}

ordered_json json_of_numbers(const VProp& value) {
  const int element = element_id(value.get_id());
  const std::vector<std::string> numbers = number_texts(value);
  if (!is_array(value.get_id())) return json_of_number(numbers.front(), element);
  ordered_json list = ordered_json::array();
  for (const std::string& number : numbers) list.push_back(json_of_number(number, element));
  return list;
}

ordered_json json_of_content(const VProp& value) {
  const int id = value.get_id();
  if (id == prop_id<VPropstring>) return json_of(value.get<VPropstring>());
  if (id == prop_id<VPropstruct>) return json_of(value.get<VPropstruct>());
  if (id == prop_id<PropertyTexts>) return json_of(value.get<PropertyTexts>());
  if (id == prop_id<PropertyCells>) return json_of(value.get<PropertyCells>());
  if (id == prop_id<PropertyStructs>) return json_of(value.get<PropertyStructs>());
  return is_numeric(id) ? json_of_numbers(value) : ordered_json();
}

ordered_json json_of(const VProp& value) {
  ordered_json content = json_of_content(value);
  const std::vector<unsigned int> shape = shape_of(value);
  if (shape.empty()) return content;
  return {{"size", shape}, {"values", std::move(content)}};
}

}  // namespace

std::string to_json(const VProp& value) {
  return json_of(value).dump(-1, ' ', false, ordered_json::error_handler_t::replace) + '\n';
}

}  // namespace Vrel::tool
