#include "lib/ome_tiff_text.h"

#include <charconv>
#include <cmath>

#include "lib/utf8.h"

namespace Vrel::tool {

namespace {

constexpr const char* prolog = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>";
constexpr const char* schema = "http://www.openmicroscopy.org/Schemas/OME/2016-06";
constexpr const char* instance = "http://www.w3.org/2001/XMLSchema-instance";

// Also what a reader would make a blank of stands as a reference: line ends and tabulators in
// attributes.
bool is_plain(char32_t code) {
  return code >= 0x20 && code < 0x7F && code != '<' && code != '>' && code != '&' && code != '"';
}

bool is_xml_character(char32_t code) {
  if (code < 0x20) return code == '\t' || code == '\n' || code == '\r';
  return code != 0xFFFE && code != 0xFFFF;
}

void add_character(std::string& text, char32_t code) {
  constexpr char32_t replacement = 0xFFFD;
  if (is_plain(code)) {
    text += static_cast<char>(code);
    return;
  }
  const char32_t shown = is_xml_character(code) ? code : replacement;
  text += "&#" + std::to_string(static_cast<unsigned long>(shown)) + ';';
}

std::string escape(const std::string& bytes) {
  const std::string repaired = repair_utf8(bytes);
  std::string text;
  for (std::string_view rest = repaired; !rest.empty();) {
    const std::size_t length = utf8_sequence_length(rest);
    add_character(text, decode_utf8(rest.substr(0, length)));
    rest.remove_prefix(length);
  }
  return text;
}

std::string attribute(const std::string& name, const std::string& value) {
  return ' ' + name + "=\"" + escape(value) + '"';
}

std::string attribute(const std::string& name, u64 value) {
  return attribute(name, std::to_string(value));
}

// The shortest text that reads back as the same number, whatever the locale. One that XML readers may
// not take is left out.
std::string number_attribute(const std::string& name, double value, const std::string& unit) {
  if (!std::isfinite(value)) return "";
  char text[32];
  const std::string number(text, std::to_chars(text, text + sizeof text, value).ptr);
  return attribute(name, number) + attribute(name + "Unit", unit);
}

std::string step_attribute(const std::string& name, const OmeAxis& axis) {
  const bool is_positive = axis.step && *axis.step > 0;
  return is_positive ? number_attribute(name, *axis.step, axis.unit) : "";
}

std::string position_attribute(const std::string& name, const OmeAxis& axis, u64 index) {
  const bool is_known = index < axis.positions.size();
  return is_known ? number_attribute(name, axis.positions[index], axis.unit) : "";
}

std::string pixels_attributes(const OmeImage& image) {
  std::string text = attribute("ID", "Pixels:0") + attribute("DimensionOrder", image.order) +
                     attribute("Type", image.type);
  for (std::size_t i = 0; i < image.axes.size(); ++i) {
    text += attribute(std::string("Size") + ome_letters[i], image.axes[i].size);
  }
  for (const std::size_t i : {ome_x, ome_y, ome_z}) {
    text += step_attribute(std::string("PhysicalSize") + ome_letters[i], image.axes[i]);
  }
  return text + step_attribute("TimeIncrement", image.axes[ome_t]);
}

std::string channel(const OmeImage& image, u64 index) {
  std::string text = "<Channel" + attribute("ID", "Channel:0:" + std::to_string(index));
  if (index < image.channels.size() && !image.channels[index].empty()) {
    text += attribute("Name", image.channels[index]);
  }
  return text + attribute("SamplesPerPixel", 1) + "/>";
}

std::string channels(const OmeImage& image) {
  std::string text;
  for (u64 i = 0; i < image.axes[ome_c].size; ++i) text += channel(image, i);
  return text;
}

// Index of plane number `plane` on Z, C and T.
using PlaneIndex = std::array<u64, 5>;

PlaneIndex plane_index(const OmeImage& image, u64 plane) {
  PlaneIndex index{};
  for (const char letter : image.order.substr(2)) {
    const std::size_t i = std::string_view(ome_letters).find(letter);
    index[i] = plane % image.axes[i].size;
    plane /= image.axes[i].size;
  }
  return index;
}

std::string plane(const OmeImage& image, const PlaneIndex& index) {
  const auto& axes = image.axes;
  return "<Plane" + attribute("TheZ", index[ome_z]) + attribute("TheT", index[ome_t]) +
         attribute("TheC", index[ome_c]) + position_attribute("DeltaT", axes[ome_t], index[ome_t]) +
         position_attribute("PositionX", axes[ome_x], 0) +
         position_attribute("PositionY", axes[ome_y], 0) +
         position_attribute("PositionZ", axes[ome_z], index[ome_z]) + "/>";
}

std::string planes(const OmeImage& image) {
  std::string text;
  if (!image.has_positions) return text;
  for (u64 i = 0; i < image.number_of_planes(); ++i) text += plane(image, plane_index(image, i));
  return text;
}

std::string pixels(const OmeImage& image) {
  const std::string data =
      "<TiffData" + attribute("IFD", 0) + attribute("PlaneCount", image.number_of_planes()) + "/>";
  return "<Pixels" + pixels_attributes(image) + '>' + channels(image) + data + planes(image) +
         "</Pixels>";
}

std::string image_element(const OmeImage& image) {
  std::string text = "<Image" + attribute("ID", "Image:0");
  if (!image.name.empty()) text += attribute("Name", image.name);
  text += '>';
  if (!image.date.empty()) {
    text += "<AcquisitionDate>" + escape(image.date) + "</AcquisitionDate>";
  }
  if (!image.description.empty()) {
    text += "<Description>" + escape(image.description) + "</Description>";
  }
  return text + pixels(image) + "</Image>";
}

}  // namespace

std::string to_ome_xml(const OmeImage& image, const std::string& creator, const std::string& uuid) {
  return std::string(prolog) + "<OME" + attribute("xmlns", schema) +
         attribute("xmlns:xsi", instance) + attribute("UUID", "urn:uuid:" + uuid) +
         attribute("Creator", creator) +
         attribute("xsi:schemaLocation", std::string(schema) + ' ' + schema + "/ome.xsd") + '>' +
         image_element(image) + "</OME>";
}

}  // namespace Vrel::tool
