#include "lib/acquisition_date.h"

#include <vrelio/json/xml_reader.h>

#include <optional>
#include <string_view>
#include <vector>

#include "lib/ome_tree.h"

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

// There is one image for each stack.
const Json::Value* find_image(const Json::Value& root, std::size_t index, std::size_t count) {
  const Json::Value* const document = attribute(root, "ome:OME");
  if (document == nullptr) return nullptr;
  const std::vector<const Json::Value*> images = children(*document, "ome:Image");
  return images.size() == count && index < count ? images[index] : nullptr;
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
  const Json::Value* const image = find_image(*root, index, file.stacks.size());
  const std::string shown = image == nullptr ? "" : text_of(child(*image, "ome:AcquisitionDate"));
  return is_date_time(shown) ? shown : "";
}

}  // namespace Vrel::tool
