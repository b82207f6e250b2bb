#include "stack/image_axes_internal.h"

#include <array>
#include <cstddef>
#include <stdexcept>
#include <string>

#include "stack/stack_errors_internal.h"

namespace Vrel::detail {
namespace {

using Reference = Json::SignalingReference;
using Plane = Ome::Plane<Reference>;

constexpr std::size_t image_rank = 5;

// The micro sign as UTF-8.
constexpr const char* micrometre = "\xC2\xB5m";

[[noreturn]] void raise_unsupported_dimension() {
  throw std::invalid_argument("Unsupported physical dimension");
}

// 0 for an axis without a letter.
char get_axis_letter(const OmeImage& image, unsigned int axis) {
  const Json::Value& order = image.DimensionOrder.value();
  if (order.is_null() || axis >= image_rank) return 0;
  // Assigning a whole element does not ask the rules of its fields.
  const std::string& letters = order.get<std::string>();
  return axis < letters.size() ? letters[axis] : '\0';
}

// What no int holds is no positive number either, and is refused as such.
Json::Value integer(unsigned int size) { return static_cast<int>(size); }

void set_size_by_letter(OmeImage& image, unsigned int axis, Json::Value size) {
  switch (get_axis_letter(image, axis)) {
    case 'Z':
      image.SizeZ = std::move(size);
      break;
    case 'C':
      image.SizeC = std::move(size);
      break;
    case 'T':
      image.SizeT = std::move(size);
      break;
    default:
      raise_unsupported_dimension();
  }
}

template <class Step, class Unit>
void set_step(Step& step, Unit& unit, unsigned int size, double length) {
  const bool is_unset = length == 0.0 || length == 1.0 || size == 0;
  step = Json::Value(is_unset ? 1.0 : length / size);
  unit = Json::Value(is_unset ? "pixel" : length > 0.01 ? micrometre : "m");
}

void set_time_step(OmeImage& image, unsigned int size, double length) {
  const bool is_unset = length == 0.0 || size <= 1;
  image.TimeIncrement = is_unset ? Json::Value() : Json::Value(length / size);
  image.TimeIncrementUnit = is_unset ? Json::Value() : Json::Value("s");
}

// Where a plane stands on an axis, counted in steps from the middle of the axis.
double steps_from_middle(const Json::Value& index, const Json::Value& size) {
  return index.get<int>() - (size.get<int>() - 1) * 0.5;
}

template <class Field>
double decimal_of(Field& field) {
  if (field.value().kind() == Json::kind_integer)
    field = Json::Value(static_cast<double>(field.value().template get<int>()));
  return field.value().template get<double>();
}

void set_position_x(OmeImage& image, Plane& plane, double offset) {
  plane.PositionX = Json::Value(offset);
  plane.PositionXUnit = image.PhysicalSizeXUnit.value();
}

void set_position_y(OmeImage& image, Plane& plane, double offset) {
  plane.PositionY = Json::Value(offset);
  plane.PositionYUnit = image.PhysicalSizeYUnit.value();
}

void set_position_z(OmeImage& image, Plane& plane, double offset) {
  const double steps = steps_from_middle(plane.TheZ.value(), image.SizeZ.value());
  plane.PositionZ = Json::Value(steps * decimal_of(image.PhysicalSizeZ) + offset);
  plane.PositionZUnit = image.PhysicalSizeZUnit.value();
}

void set_time(OmeImage& image, Plane& plane, double offset) {
  if (image.TimeIncrement.value().is_null()) {
    plane.DeltaT = Json::Value();
    plane.DeltaTUnit = Json::Value();
    return;
  }
  const double steps = steps_from_middle(plane.TheT.value(), image.SizeT.value());
  plane.DeltaT = Json::Value(steps * decimal_of(image.TimeIncrement) + offset);
  plane.DeltaTUnit = image.TimeIncrementUnit.value();
}

using offset_setter = void (*)(OmeImage& image, Plane& plane, double offset);

offset_setter choose_offset_setter(const OmeImage& image, unsigned int axis) {
  if (axis == 0) return set_position_x;
  if (axis == 1) return set_position_y;
  switch (get_axis_letter(image, axis)) {
    case 'Z':
      return set_position_z;
    case 'T':
      return set_time;
    default:
      raise_unsupported_dimension();
  }
}

}  // namespace

void set_image_sizes(OmeImage& image, const std::vector<unsigned int>& sizes) {
  for (const unsigned int size : sizes)
    if (size == 0) throw std::invalid_argument("Unsupported zero size");
  if (sizes.size() > image_rank) raise_unsupported_number_of_sizes();
  const auto size_of = [&](std::size_t axis) {
    return integer(axis < sizes.size() ? sizes[axis] : 1U);
  };
  image.SizeX = size_of(0);
  image.SizeY = size_of(1);
  for (unsigned int axis = 2; axis < image_rank; ++axis)
    set_size_by_letter(image, axis, size_of(axis));
}

void clear_image_sizes(OmeImage& image) {
  image.SizeX = Json::Value();
  image.SizeY = Json::Value();
  image.SizeZ = Json::Value();
  image.SizeC = Json::Value();
  image.SizeT = Json::Value();
}

void set_image_step(OmeImage& image, unsigned int axis, unsigned int size, double length) {
  switch (get_axis_letter(image, axis)) {
    case 'X':
      return set_step(image.PhysicalSizeX, image.PhysicalSizeXUnit, size, length);
    case 'Y':
      return set_step(image.PhysicalSizeY, image.PhysicalSizeYUnit, size, length);
    case 'Z':
      return set_step(image.PhysicalSizeZ, image.PhysicalSizeZUnit, size, length);
    case 'T':
      return set_time_step(image, size, length);
    default:
      raise_unsupported_dimension();
  }
}

void set_image_offset(OmeImage& image, unsigned int axis, double offset) {
  const offset_setter set_offset = choose_offset_setter(image, axis);
  for (const auto& plane : image.Plane) set_offset(image, *plane, offset);
}

}  // namespace Vrel::detail
