#include "lib/shaped_description.h"

#include <nlohmann/json.hpp>
#include <string_view>

namespace Vrel::tool {

namespace {

using nlohmann::json;

std::string label_of(char letter) {
  constexpr std::string_view letters = "XYZCT";
  // The samples of a pixel are channels as well.
  if (letter == 'S') return "C";
  return letters.find(letter) == std::string_view::npos ? "" : std::string(1, letter);
}

std::optional<std::vector<ShapedAxis>> read_shape(const json& shape) {
  std::vector<ShapedAxis> axes;
  for (auto size = shape.rbegin(); size != shape.rend(); ++size) {
    if (!size->is_number_unsigned()) return std::nullopt;
    axes.push_back({size->get<u64>(), ""});
  }
  return axes;
}

void take_labels(const json& letters, std::vector<ShapedAxis>& axes) {
  if (!letters.is_string()) return;
  const auto text = letters.get<std::string>();
  if (text.size() != axes.size()) return;
  for (std::size_t i = 0; i < axes.size(); ++i) {
    axes[i].label = label_of(text[text.size() - 1 - i]);
  }
}

}  // namespace

std::optional<std::vector<ShapedAxis>> read_shaped_description(const std::string& text) {
  constexpr std::size_t longest = 1u << 20;
  if (text.empty() || text[0] != '{' || text.size() > longest) return std::nullopt;
  const json object = json::parse(text, nullptr, false);
  if (!object.is_object() || !object.contains("shape")) return std::nullopt;
  const json& shape = object["shape"];
  if (!shape.is_array()) return std::nullopt;
  auto axes = read_shape(shape);
  if (axes && object.contains("axes")) take_labels(object["axes"], *axes);
  return axes;
}

}  // namespace Vrel::tool
