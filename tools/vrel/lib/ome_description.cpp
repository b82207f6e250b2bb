#include "lib/ome_description.h"

#include <vrelio/foundation/error.h>
#include <vrelio/ome/channel.h>
#include <vrelio/ome/image.h>
#include <vrelio/ome/plane.h>
#include <vrelio/ome/types.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "lib/ome_tree.h"
#include "lib/ome_units.h"
#include "lib/printable_text.h"

namespace Vrel::tool {

namespace {

using Json::SignalingReference;

constexpr const char* micrometre = "\xC2\xB5m";

[[noreturn]] void raise_no_fit() {
  throw VrelError(VrelError()("The OME-XML does not fit the TIFF directories!")(-4));
}

// A count from the document; `absent` where there is none.
u64 count_attribute(const Json::Value& element, const std::string& name, u64 absent) {
  const double number = number_attribute(element, name, static_cast<double>(absent));
  if (number < 0 || number > std::numeric_limits<int>::max() || number != std::floor(number)) {
    raise_no_fit();
  }
  return static_cast<u64>(number);
}

bool is_dimension_order(const std::string& text) {
  for (int order = Ome::order_XYZCT; order <= Ome::order_XYTZC; ++order) {
    if (text == Ome::get_dimension_order_name(static_cast<Ome::DimensionOrder>(order))) return true;
  }
  return false;
}

// Sizes of the three axes that lead from plane to plane, in their order.
struct Planes {
  std::string letters;  // such as "CZT"
  std::array<u64, 3> sizes{};
  u64 count = 1;

  std::size_t axis_of(char letter) const { return letters.find(letter); }
};

Planes read_planes(const Json::Value& pixels, unsigned samples_per_pixel, u64 most) {
  const std::string order = text_attribute(pixels, "DimensionOrder");
  if (!is_dimension_order(order)) raise_no_fit();
  Planes planes;
  planes.letters = order.substr(2);
  for (std::size_t i = 0; i < planes.sizes.size(); ++i) {
    const char letter = planes.letters[i];
    u64 size = count_attribute(pixels, std::string("Size") + letter, 0);
    if (letter == 'C') {
      if (size % samples_per_pixel != 0) raise_no_fit();
      size /= samples_per_pixel;
    }
    if (size == 0 || size > most / planes.count) raise_no_fit();
    planes.sizes[i] = size;
    planes.count *= size;
  }
  return planes;
}

void check_is_here(const Json::Value& data, const std::string& own_uuid) {
  const Json::Value* const uuid = child(data, "ome:UUID");
  if (uuid == nullptr || own_uuid.empty() || text_of(uuid) == own_uuid) return;
  const std::string name = text_attribute(*uuid, "FileName");
  throw VrelError(VrelError()("Planes are in another file: %s", quote(name).c_str())(-4));
}

u64 first_plane(const Json::Value& data, const Planes& planes) {
  u64 plane = 0;
  u64 stride = 1;
  for (std::size_t i = 0; i < planes.sizes.size(); ++i) {
    const u64 first = count_attribute(data, std::string("First") + planes.letters[i], 0);
    if (first >= planes.sizes[i]) raise_no_fit();
    plane += first * stride;
    stride *= planes.sizes[i];
  }
  return plane;
}

void assign_directories(const Json::Value& data, const Planes& planes, u64 number_of_directories,
                        std::vector<std::size_t>& directories) {
  const bool has_directory = attribute(data, "IFD") != nullptr;
  const u64 first = first_plane(data, planes);
  const u64 directory = count_attribute(data, "IFD", 0);
  const u64 rest = planes.count - first;
  const u64 count = count_attribute(data, "PlaneCount", has_directory ? 1 : rest);
  const bool fits = directory <= number_of_directories &&
                    count <= number_of_directories - directory && count <= rest;
  if (!fits) raise_no_fit();
  for (u64 i = 0; i < count; ++i) directories[first + i] = directory + i;
}

std::vector<std::size_t> find_directories(const Json::Value& pixels, const Planes& planes,
                                          u64 number_of_directories, const std::string& own_uuid) {
  const std::size_t none = number_of_directories;
  std::vector<std::size_t> directories(planes.count, none);
  const Json::Value all;
  std::vector<const Json::Value*> entries = children(pixels, "ome:TiffData");
  if (entries.empty()) entries.push_back(&all);
  for (const Json::Value* const data : entries) {
    check_is_here(*data, own_uuid);
    assign_directories(*data, planes, number_of_directories, directories);
  }
  if (std::find(directories.begin(), directories.end(), none) != directories.end()) raise_no_fit();
  return directories;
}

std::string unit_of(const Json::Value& pixels, const std::string& key, const char* absent) {
  const std::string unit = text_attribute(pixels, key + "Unit");
  return unit.empty() ? absent : ome_spelling(unit);
}

// A step without a unit of length or time, such as "pixel", is none.
void take_step(const Json::Value& pixels, const std::string& key, const char* unit,
               ImportAxis& axis) {
  const double step = number_attribute(pixels, key, 0.0);
  const std::string name = unit_of(pixels, key, unit);
  const double length = step * axis.size;
  if (!std::isfinite(length) || step <= 0.0 || !ome_unit(name)) return;
  axis.length = length;
  axis.unit = name;
}

void take_steps(const Json::Value& pixels, std::vector<ImportAxis>& axes) {
  for (ImportAxis& axis : axes) {
    if (axis.label == "T") take_step(pixels, "TimeIncrement", "s", axis);
    if (axis.label == "X" || axis.label == "Y" || axis.label == "Z") {
      take_step(pixels, "PhysicalSize" + axis.label, micrometre, axis);
    }
  }
}

std::string channel_label(const Json::Value& channel) {
  std::string name = text_attribute(channel, "Name");
  const Json::Value* const length = attribute(channel, "EmissionWavelength");
  if (!name.empty() || length == nullptr) return name;
  const double number = number_attribute(channel, "EmissionWavelength", 0.0);
  char text[40];
  std::snprintf(text, sizeof text, "%.10g ", number);
  return text + unit_of(channel, "EmissionWavelength", "nm");
}

void take_channel_labels(const Json::Value& pixels, std::vector<ImportAxis>& axes) {
  std::vector<std::string> labels;
  for (const Json::Value* const channel : children(pixels, "ome:Channel")) {
    labels.push_back(channel_label(*channel));
  }
  const auto is_label = [](const std::string& label) { return !label.empty(); };
  if (std::none_of(labels.begin(), labels.end(), is_label)) return;
  for (ImportAxis& axis : axes) {
    if (axis.label == "C" && axis.size == labels.size()) axis.column_labels = labels;
  }
}

std::vector<ImportAxis> make_axes(const Json::Value& pixels, const TiffLayout& layout,
                                  const Planes& planes) {
  std::vector<ImportAxis> axes = plane_axes(layout);
  for (std::size_t i = 0; i < planes.sizes.size(); ++i) {
    if (planes.sizes[i] == 1) continue;
    axes.push_back({});
    axes.back().size = static_cast<unsigned>(planes.sizes[i]);
    axes.back().label = planes.letters[i];
  }
  take_steps(pixels, axes);
  take_channel_labels(pixels, axes);
  return axes;
}

template <class View>
bool can_be_viewed(Json::Value element) {
  try {
    const View view(&element);
    return true;
  } catch (const Json::BadCast&) {
    return false;
  }
}

// Those of the attributes that keep the rules of the view's fields. Child elements are left out: what
// they refer to does not come along.
template <class View>
Json::Value valid_attributes(const Json::Value& element) {
  Json::Object attributes;
  if (element.kind() != Json::kind_map) return attributes;
  for (const auto& [name, value] : element.map()) {
    Json::Object one;
    one[name] = value;
    if (!name.empty() && can_be_viewed<View>(one)) attributes[name] = value;
  }
  return attributes;
}

// The schema's own unit, which the view would not know of.
void name_unit(Json::Value& element, const std::string& key, const char* unit) {
  const bool is_set = attribute(element, key) != nullptr;
  if (is_set && attribute(element, key + "Unit") == nullptr) element[key + "Unit"] = unit;
}

Json::Value make_channel(const Json::Value& source) {
  Json::Value channel = valid_attributes<Ome::Channel<SignalingReference>>(source);
  name_unit(channel, "EmissionWavelength", "nm");
  name_unit(channel, "ExcitationWavelength", "nm");
  name_unit(channel, "PinholeSize", micrometre);
  return channel;
}

Json::Value make_plane(const Json::Value& source) {
  Json::Value plane = valid_attributes<Ome::Plane<SignalingReference>>(source);
  name_unit(plane, "DeltaT", "s");
  name_unit(plane, "ExposureTime", "s");
  for (const char* const key : {"PositionX", "PositionY", "PositionZ"}) {
    name_unit(plane, key, "reference frame");
  }
  return plane;
}

template <class Make>
Json::Value make_list(const Json::Value& pixels, const char* name, Make make) {
  Json::Value list;
  for (const Json::Value* const source : children(pixels, name)) {
    list.array().push_back(make(*source));
  }
  return list;
}

std::string trimmed(const std::string& text) {
  constexpr const char* blanks = " \t\r\n";
  const std::size_t begin = text.find_first_not_of(blanks);
  if (begin == std::string::npos) return "";
  return text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
}

// Those that are told of an axis with one entry, too.
void take_attribute(const Json::Value& pixels, const std::string& key, Json::Value& image) {
  const Json::Value* const value = attribute(pixels, key);
  if (value == nullptr) return;
  Json::Value one;
  const bool is_text = value->kind() == Json::kind_string;
  one[""]["ome:Pixels"][key] = is_text ? Json::Value(ome_spelling(text_of(value))) : *value;
  if (!can_be_viewed<Ome::Image<SignalingReference>>(one)) return;
  image[""]["ome:Pixels"][key] = one[""]["ome:Pixels"][key];
}

Json::Value make_image(const Json::Value& source, const Json::Value& pixels) {
  Json::Value image;
  const std::string date = trimmed(text_of(child(source, "ome:AcquisitionDate")));
  if (!date.empty()) image[""]["ome:AcquisitionDate"] = date;
  if (!can_be_viewed<Ome::Image<SignalingReference>>(image)) image = Json::Value();
  Json::Value content;
  content["ome:Channel"] = make_list(pixels, "ome:Channel", make_channel);
  content["ome:Plane"] = make_list(pixels, "ome:Plane", make_plane);
  Json::Value& target = image[""]["ome:Pixels"];
  target[""] = content;
  for (const char* const key : {"SignificantBits", "PhysicalSizeZ", "PhysicalSizeZUnit",
                                "TimeIncrement", "TimeIncrementUnit"}) {
    take_attribute(pixels, key, image);
  }
  name_unit(target, "PhysicalSizeZ", micrometre);
  name_unit(target, "TimeIncrement", "s");
  return image;
}

OmeSeries read_image(const Json::Value& source, const std::vector<TiffDirectory>& directories,
                     const std::string& own_uuid) {
  const Json::Value* const pixels = child(source, "ome:Pixels");
  if (pixels == nullptr) raise_no_fit();
  // The planes of one image are alike, so one tells how many samples the pixels of all have.
  const std::vector<const Json::Value*> data = children(*pixels, "ome:TiffData");
  const u64 first = data.empty() ? 0 : count_attribute(*data.front(), "IFD", 0);
  if (first >= directories.size()) raise_no_fit();
  const TiffLayout& layout = directories[first].layout;
  const Planes planes =
      read_planes(*pixels, std::max(layout.samples_per_pixel, 1U), directories.size());
  const bool fits = count_attribute(*pixels, "SizeX", 0) == layout.width &&
                    count_attribute(*pixels, "SizeY", 0) == layout.height;
  if (!fits) raise_no_fit();

  OmeSeries image;
  image.directories = find_directories(*pixels, planes, directories.size(), own_uuid);
  for (const std::size_t directory : image.directories) {
    if (directories[directory].layout != layout) raise_no_fit();
  }
  image.name = text_attribute(source, "Name");
  image.description = text_of(child(source, "ome:Description"));
  image.axes = make_axes(*pixels, layout, planes);
  image.image = make_image(source, *pixels);
  return image;
}

}  // namespace

bool is_ome_description(const std::string& text) {
  const std::size_t end = text.find_last_not_of(" \t\r\n");
  constexpr std::string_view closing = "OME>";
  return end != std::string::npos && end + 1 >= closing.size() && text[0] == '<' &&
         text.compare(end + 1 - closing.size(), closing.size(), closing) == 0;
}

std::vector<OmeSeries> read_ome_description(const std::string& text,
                                            const std::vector<TiffDirectory>& directories) {
  // Free annotations can hold XML of any kind, which describes no samples.
  const Json::Value tree = read_ome_tree(text, "StructuredAnnotations");
  const Json::Value& document = *tree.find("ome:OME");
  const std::string own_uuid = text_attribute(document, "UUID");
  std::vector<OmeSeries> images;
  for (const Json::Value* const source : children(document, "ome:Image")) {
    images.push_back(read_image(*source, directories, own_uuid));
  }
  if (images.empty()) raise_no_fit();
  return images;
}

std::vector<ImportAxis> plane_axes(const TiffLayout& layout) {
  std::vector<ImportAxis> axes(2);
  axes[0].size = layout.width;
  axes[0].label = "X";
  axes[1].size = layout.height;
  axes[1].label = "Y";
  if (layout.samples_per_pixel > 1) {
    const auto place = layout.is_separate ? axes.end() : axes.begin();
    const auto samples = axes.insert(place, ImportAxis());
    samples->size = layout.samples_per_pixel;
    samples->label = "C";
  }
  return axes;
}

}  // namespace Vrel::tool
