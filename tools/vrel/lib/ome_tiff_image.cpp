#include "lib/ome_tiff_image.h"

#include <vrelio/foundation/data_type.h>
#include <vrelio/foundation/error.h>

#include <algorithm>
#include <cmath>
#include <cstring>

#include "lib/axis_letters.h"
#include "lib/complex_type.h"
#include "lib/ome_units.h"

namespace Vrel::tool {

namespace {

struct TypeRow {
  int data_type;
  const char* name;
};

constexpr TypeRow types[] = {{0x1, "uint8"},
                             {0x2, "int8"},
                             {0x4, "uint16"},
                             {0x8, "int16"},
                             {0x10, "uint32"},
                             {0x20, "int32"},
                             {0x40, "float"},
                             {0x80, "double"},
                             {0x800, "uint32"},
                             {complex_flag | 0x40, "complex"},
                             {complex_flag | 0x80, "double-complex"}};

[[noreturn]] void raise_no_place(std::size_t axis) {
  throw VrelError(VrelError()("OME-TIFF has no place for axis %u, --region picks a part of it!",
                              static_cast<unsigned>(axis)));
}

[[noreturn]] void raise_not_in_front(char letter) {
  throw VrelError(VrelError()(
      "OME-TIFF needs axis %c in front, --region picks a part of the axes before it!", letter));
}

// The letters of the axes that have more than one index.
std::string letters_in_use(const std::vector<char>& letters, const Region& region) {
  std::string used;
  for (std::size_t axis = 0; axis < region.size(); ++axis) {
    if (region[axis].size() == 1) continue;
    if (letters[axis] == no_letter) raise_no_place(axis);
    used += letters[axis];
  }
  return used;
}

// X and Y make up the pages, in which they come first.
void check_in_front(const std::string& used, char letter, std::size_t& place) {
  const std::size_t found = used.find(letter);
  if (found == std::string::npos) return;
  if (found != place) raise_not_in_front(letter);
  ++place;
}

std::string dimension_order(const std::string& used) {
  std::size_t place = 0;
  check_in_front(used, 'X', place);
  check_in_front(used, 'Y', place);
  std::string order = "XY" + used.substr(place);
  for (const char letter : {'Z', 'T', 'C'}) {
    if (order.find(letter) == std::string::npos) order += letter;
  }
  return order;
}

std::size_t ome_index(char letter) {
  return static_cast<std::size_t>(std::strchr(ome_letters, letter) - ome_letters);
}

// An axis of the stack by the fields that place it in space or time.
struct PlacedAxis {
  const StackRecord& stack;
  std::size_t axis;
  AxisRange range;

  double length() const { return stack.header.lengths[axis]; }
  double offset() const { return stack.header.offsets[axis]; }
  double size() const { return stack.header.sizes[axis]; }
  const std::vector<double>& columns() const { return stack.column_positions[axis]; }
  bool is_part() const { return range.size() != stack.header.sizes[axis]; }

  bool has_length() const { return std::isfinite(length()) && length() > 0; }
  double step() const { return length() / size(); }

  // Measured from the middle of the axis, so that a whole axis has its centre at the very offset.
  double position(double index) const { return offset() + (index - size() / 2) * step(); }

  double position_of(u64 index) const {
    if (!columns().empty()) return columns()[index];
    return position(static_cast<double>(index) + 0.5);
  }

  double centre() const {
    if (!columns().empty()) return (columns()[range.first] + columns()[range.end - 1]) / 2;
    return position((static_cast<double>(range.first) + static_cast<double>(range.end)) / 2);
  }
};

bool has_positions(const PlacedAxis& placed) {
  return !placed.columns().empty() || placed.offset() != 0 || placed.is_part();
}

std::optional<OmeUnit> find_unit(const StackRecord& stack, std::size_t axis, std::size_t index) {
  const UnitRecord& unit = stack.footer.units[axis];
  if (index == ome_c) return std::nullopt;
  return index == ome_t ? to_ome_time(unit) : to_ome_length(unit);
}

void add_positions(OmeAxis& axis, const PlacedAxis& placed, double factor, bool is_centre) {
  if (is_centre) {
    axis.positions = {placed.centre() * factor};
    return;
  }
  axis.positions.reserve(placed.range.size());
  for (u64 i = placed.range.first; i < placed.range.end; ++i) {
    axis.positions.push_back(placed.position_of(i) * factor);
  }
}

void place(OmeImage& image, const PlacedAxis& placed, std::size_t index) {
  OmeAxis& axis = image.axes[index];
  const std::optional<OmeUnit> unit = find_unit(placed.stack, placed.axis, index);
  if (!unit || (placed.columns().empty() && !placed.has_length())) return;
  axis.unit = unit->name;
  if (placed.columns().empty()) axis.step = placed.step() * unit->factor;
  add_positions(axis, placed, unit->factor, index == ome_x || index == ome_y);
  image.has_positions = image.has_positions || has_positions(placed);
}

std::vector<std::string> cut(const std::vector<std::string>& labels, const AxisRange& range) {
  if (labels.size() < range.end) return {};
  const auto begin = labels.begin();
  return {begin + static_cast<std::ptrdiff_t>(range.first),
          begin + static_cast<std::ptrdiff_t>(range.end)};
}

void add_axis(OmeImage& image, const PlacedAxis& placed, char letter) {
  const std::size_t index = ome_index(letter);
  image.axes[index].size = placed.range.size();
  place(image, placed, index);
  if (index == ome_c) {
    image.channels = cut(placed.stack.column_labels[placed.axis], placed.range);
  }
}

}  // namespace

u64 OmeImage::number_of_planes() const {
  return axes[ome_z].size * axes[ome_c].size * axes[ome_t].size;
}

const char* to_ome_type(int data_type) {
  for (const TypeRow& row : types) {
    if (row.data_type == data_type) return row.name;
  }
  return nullptr;
}

OmeImage describe_image(const StackRecord& stack, const Region& region, int data_type) {
  const char* const type = to_ome_type(data_type);
  if (type == nullptr) {
    throw VrelError(
        VrelError()("No OME-TIFF type for samples of the type '%s', --type converts them!",
                    vrel_dt_get_name(data_type))(-5));
  }
  if (number_of_samples(region) == 0) throw VrelError(VrelError()("No samples to be written!"));
  const std::vector<char> letters = axis_letters(stack.labels);
  OmeImage image;
  image.name = stack.name;
  image.description = stack.description;
  image.type = type;
  image.order = dimension_order(letters_in_use(letters, region));
  for (std::size_t axis = 0; axis < region.size(); ++axis) {
    if (letters[axis] != no_letter) add_axis(image, {stack, axis, region[axis]}, letters[axis]);
  }
  return image;
}

}  // namespace Vrel::tool
