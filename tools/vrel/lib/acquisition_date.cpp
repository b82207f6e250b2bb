#include "lib/acquisition_date.h"

#include <vrelio/json/xml_reader.h>

#include <iterator>
#include <optional>
#include <string_view>

namespace Vrel::tool {

namespace {

std::optional<Json::Value> read_xml(const std::string& text) {
  Json::Value root;
  Json::XmlReader reader(root);
  const char* begin = text.data();
  try {
    if (reader.read(begin, text.data() + text.size())) return root;
  } catch (const Json::XmlReader::Unexpected&) {
    // Any text may stand there; what is no document has no date.
  }
  return std::nullopt;
}

const Json::Value* child(const Json::Value* element, const char* key) {
  if (element == nullptr || element->kind() != Json::kind_map) return nullptr;
  return element->find(key);
}

// The content of an element has its place under the empty key.
const Json::Value* in_content(const Json::Value* element, const char* key) {
  return child(child(element, ""), key);
}

// One image stands alone, several are an array.
const Json::Value* find_image(const Json::Value* images, std::size_t index, std::size_t count) {
  if (images == nullptr) return nullptr;
  if (images->kind() != Json::kind_array) return count == 1 ? images : nullptr;
  const Json::Array& array = images->array();
  if (array.size() != count || index >= count) return nullptr;
  return &*std::next(array.begin(), static_cast<std::ptrdiff_t>(index));
}

// Digits in place of the zeros; behind the seconds their fraction and the zone.
bool is_date_time(const std::string& text) {
  constexpr std::string_view form = "0000-00-00T00:00:00";
  constexpr const char* digits = "0123456789";
  if (text.size() < form.size()) return false;
  for (std::size_t i = 0; i < form.size(); ++i) {
    const bool is_digit = text[i] >= '0' && text[i] <= '9';
    if (form[i] == '0' ? !is_digit : text[i] != form[i]) return false;
  }
  std::size_t place = form.size();
  if (place < text.size() && text[place] == '.') place = text.find_first_not_of(digits, place + 1);
  if (place >= text.size()) return text.back() != '.';
  const std::string zone = text.substr(place);
  if (zone == "Z") return true;
  return zone.size() == 6 && (zone[0] == '+' || zone[0] == '-') && zone[3] == ':' &&
         zone.find_first_not_of(digits, 1) == 3 && zone.find_first_not_of(digits, 4) == zone.npos;
}

}  // namespace

std::string acquisition_date(const FileRecord& file, std::size_t index) {
  const auto text = file.dictionary.find("ome_xml");
  if (text == file.dictionary.end()) return "";
  const std::optional<Json::Value> root = read_xml(text->second);
  if (!root) return "";
  const Json::Value* const images = in_content(child(&*root, "ome:OME"), "ome:Image");
  const Json::Value* const date =
      in_content(find_image(images, index, file.stacks.size()), "ome:AcquisitionDate");
  if (date == nullptr || date->kind() != Json::kind_string) return "";
  const std::string& shown = date->get<std::string>();
  return is_date_time(shown) ? shown : "";
}

}  // namespace Vrel::tool
