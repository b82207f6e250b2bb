#include "lib/tiff_input.h"

#include <vrelio/foundation/error.h>

#include <memory>
#include <string_view>

#include "lib/imagej_description.h"
#include "lib/ome_description.h"
#include "lib/shaped_description.h"
#include "lib/tiff_reader.h"

namespace Vrel::tool {

namespace {

using Reader = std::shared_ptr<TiffReader>;

void check_has_type(const TiffLayout& layout) {
  if (layout.data_type != 0) return;
  throw VrelError(VrelError()("Cannot read TIFF: there is no data type for its samples")(-4));
}

ImportStack make_stack(const Reader& reader, std::vector<std::size_t> directories) {
  const TiffLayout& layout = reader->directories()[directories.front()].layout;
  check_has_type(layout);
  ImportStack stack;
  stack.data_type = layout.data_type;
  stack.read = [reader, directories = std::move(directories)](const SampleSink& sink) {
    for (const std::size_t directory : directories) {
      reader->read_plane(reader->directories()[directory], sink);
    }
  };
  return stack;
}

ImportInput open_ome(const Reader& reader) {
  ImportInput input;
  for (OmeSeries& image : read_ome_description(reader->description(), reader->directories())) {
    ImportStack stack = make_stack(reader, std::move(image.directories));
    stack.name = std::move(image.name);
    stack.description = std::move(image.description);
    stack.axes = std::move(image.axes);
    stack.image = std::move(image.image);
    input.stacks.push_back(std::move(stack));
  }
  return input;
}

void add_axis(ImportStack& stack, u64 size, const char* label) {
  if (size == 1) return;
  stack.axes.push_back({});
  stack.axes.back().size = static_cast<unsigned>(size);
  stack.axes.back().label = label;
}

void set_length(ImportAxis& axis, double step, const std::string& unit) {
  if (step <= 0.0 || unit.empty()) return;
  axis.length = step * axis.size;
  axis.unit = unit;
}

double step_of(double resolution) { return resolution > 0.0 ? 1.0 / resolution : 0.0; }

void set_lengths(ImportStack& stack, const ImageJDescription& description,
                 const TiffReader& reader) {
  for (ImportAxis& axis : stack.axes) {
    if (axis.label == "X") set_length(axis, step_of(reader.x_resolution()), description.unit);
    if (axis.label == "Y") set_length(axis, step_of(reader.y_resolution()), description.unit);
    if (axis.label == "Z") set_length(axis, description.spacing, description.z_unit);
    if (axis.label == "T") set_length(axis, description.interval, description.time_unit);
  }
}

// The axes from plane to plane; one without a name where ImageJ does not tell them.
void add_imagej_axes(ImportStack& stack, u64 planes, const ImageJDescription& description) {
  if (description.channels * description.slices * description.frames != planes) {
    return add_axis(stack, planes, "");
  }
  add_axis(stack, description.channels, "C");
  add_axis(stack, description.slices, "Z");
  add_axis(stack, description.frames, "T");
}

// Whether the first axes are those of a directory, and the others lead to all its fellows.
bool fits(const std::vector<ShapedAxis>& shape, const std::vector<ImportAxis>& plane, u64 planes) {
  if (shape.size() < plane.size()) return false;
  for (std::size_t i = 0; i < plane.size(); ++i) {
    if (shape[i].size != plane[i].size) return false;
  }
  for (std::size_t i = plane.size(); i < shape.size(); ++i) {
    if (shape[i].size == 0 || planes % shape[i].size != 0) return false;
    planes /= shape[i].size;
  }
  return planes == 1;
}

// The axes from plane to plane as the array had them; one axis where nobody tells.
void add_shaped_axes(ImportStack& stack, u64 planes, const std::string& text) {
  const auto shape = read_shaped_description(text);
  const std::size_t rank = stack.axes.size();
  if (!shape || !fits(*shape, stack.axes, planes)) return add_axis(stack, planes, "");
  for (std::size_t i = rank; i < shape->size(); ++i) {
    stack.axes.push_back({});
    stack.axes.back().size = static_cast<unsigned>((*shape)[i].size);
    stack.axes.back().label = (*shape)[i].label;
  }
}

// All planes behind one directory.
ImportStack make_plain_stack(const Reader& reader, const ImageJDescription& description) {
  const u64 planes = description.images;
  ImportStack stack = make_stack(reader, {0});
  stack.axes = plane_axes(reader->directories().front().layout);
  stack.read = [reader, planes](const SampleSink& sink) {
    reader->read_plain_planes(planes, sink);
  };
  add_imagej_axes(stack, planes, description);
  set_lengths(stack, description, *reader);
  return stack;
}

ImportStack make_run(const Reader& reader, std::size_t begin, std::size_t end) {
  std::vector<std::size_t> directories;
  for (std::size_t i = begin; i < end; ++i) directories.push_back(i);
  ImportStack stack = make_stack(reader, std::move(directories));
  stack.axes = plane_axes(reader->directories()[begin].layout);
  const auto description = read_imagej_description(reader->description());
  if (description) {
    add_imagej_axes(stack, end - begin, *description);
    set_lengths(stack, *description, *reader);
  } else {
    add_shaped_axes(stack, end - begin, reader->description());
  }
  return stack;
}

ImportInput open_plain(const Reader& reader) {
  ImportInput input;
  const auto description = read_imagej_description(reader->description());
  if (description && reader->has_plain_planes(description->images)) {
    input.stacks.push_back(make_plain_stack(reader, *description));
    return input;
  }
  const std::vector<TiffDirectory>& directories = reader->directories();
  for (std::size_t begin = 0; begin < directories.size();) {
    std::size_t end = begin + 1;
    while (end < directories.size() && directories[end].layout == directories[begin].layout) ++end;
    input.stacks.push_back(make_run(reader, begin, end));
    begin = end;
  }
  return input;
}

// A file whose document cannot be used still has its samples.
ImportInput open_any(const Reader& reader) {
  if (!is_ome_description(reader->description())) return open_plain(reader);
  std::string reason;
  try {
    return open_ome(reader);
  } catch (const VrelError& error) {
    reason = error.get_msg();
  }
  ImportInput input = open_plain(reader);
  input.warnings.push_back("OME-XML is left aside: " + reason);
  return input;
}

}  // namespace

bool is_tiff(const std::string& start) {
  const std::string_view four = std::string_view(start).substr(0, 4);
  using namespace std::string_view_literals;
  return four == "II*\0"sv || four == "MM\0*"sv || four == "II+\0"sv || four == "MM\0+"sv;
}

ImportInput open_tiff(const std::string& path) {
  ImportInput input = open_any(std::make_shared<TiffReader>(path));
  for (const ImportStack& stack : input.stacks) count_bytes(stack);
  return input;
}

}  // namespace Vrel::tool
