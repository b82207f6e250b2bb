#include "lib/ome_image.h"

#include <vrelio/ome/types.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>

namespace Vrel::tool {

namespace {

constexpr std::size_t most_axes = 5;

// The letter of each axis; empty if there is none for one of them.
std::string axis_letters(const std::vector<ImportAxis>& axes) {
  std::string free = "XYZTC";
  std::string letters(axes.size(), ' ');
  if (axes.size() > most_axes) return "";
  const auto take = [&free](std::size_t position) {
    const char letter = free[position];
    free.erase(position, 1);
    return letter;
  };
  for (std::size_t axis = 0; axis < axes.size(); ++axis) {
    const std::string& label = axes[axis].label;
    const std::size_t position = label.size() == 1 ? free.find(label) : std::string::npos;
    if (position != std::string::npos) letters[axis] = take(position);
  }
  for (char& letter : letters) {
    if (letter == ' ') letter = take(0);
  }
  return letters;
}

bool have_sizes(const std::vector<ImportAxis>& axes) {
  return std::all_of(axes.begin(), axes.end(), [](const ImportAxis& axis) {
    return axis.size > 0 && axis.size <= static_cast<unsigned>(std::numeric_limits<int>::max());
  });
}

std::string dimension_order(const std::string& letters) {
  std::string order = "XY";
  for (const char letter : letters + "ZTC") {
    if (order.find(letter) == std::string::npos) order += letter;
  }
  return order;
}

void set_step(Json::Value& pixels, const std::string& key, const ImportAxis& axis) {
  const double step = axis.length / axis.size;
  if (!std::isfinite(step) || step <= 0.0) return;
  pixels[key] = step;
  pixels[key + "Unit"] = axis.unit;
}

void set_axes(Json::Value& pixels, const std::vector<ImportAxis>& axes) {
  const std::string letters = axis_letters(axes);
  if ((letters.empty() && !axes.empty()) || !have_sizes(axes)) return;
  pixels["DimensionOrder"] = dimension_order(letters);
  for (const char letter : {'X', 'Y', 'Z', 'C', 'T'}) pixels[std::string("Size") + letter] = 1;
  for (std::size_t i = 0; i < axes.size(); ++i) {
    const std::string letter(1, letters[i]);
    pixels["Size" + letter] = static_cast<int>(axes[i].size);
    if (letter == "T") set_step(pixels, "TimeIncrement", axes[i]);
    if (letter != "T" && letter != "C") set_step(pixels, "PhysicalSize" + letter, axes[i]);
  }
  if (letters.find('C') == 0) pixels["Interleaved"] = true;
}

void set_type(Json::Value& pixels, int data_type) {
  try {
    pixels["Type"] = Ome::get_type_name(Ome::get_type(data_type));
  } catch (const std::invalid_argument&) {
    // The schema has no name for it.
  }
}

void number_channels(Json::Value& pixels, const std::string& number) {
  Json::Value& channels = pixels[""]["ome:Channel"];
  if (channels.is_null()) return;
  int channel = 0;
  for (Json::Value& element : channels.array()) {
    element["ID"] = "Channel:" + number + ':' + std::to_string(++channel);
  }
}

}  // namespace

Json::Value make_ome_image(const ImportStack& stack, const std::string& name, std::size_t number) {
  Json::Value image = stack.image;
  const std::string id = std::to_string(number);
  image["ID"] = "Image:" + id;
  if (!name.empty()) image["Name"] = name;
  if (!stack.description.empty()) image[""]["ome:Description"] = stack.description;
  Json::Value& pixels = image[""]["ome:Pixels"];
  pixels["ID"] = "Pixels:" + id;
  set_type(pixels, stack.data_type);
  set_axes(pixels, stack.axes);
  number_channels(pixels, id);
  return image;
}

}  // namespace Vrel::tool
