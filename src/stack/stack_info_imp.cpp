#include <vrelio/foundation/data_type.h>
#include <vrelio/stack/stack_info_imp.h>

#include <algorithm>
#include <cstddef>
#include <stdexcept>

#include "foundation/raise_internal.h"
#include "ome/qt_text_internal.h"
#include "stack/element_count_internal.h"
#include "stack/image_axes_internal.h"
#include "stack/stack_errors_internal.h"

using namespace Vrel::detail;

namespace {

// A text of the OME image; empty where it has none.
std::string text_of(const Json::Value& field) {
  return field.is_null() ? std::string() : field.get<std::string>();
}

// A name of an enumeration; no name is refused like any that the field does not know.
Json::Value name_of(const char* name) { return std::string(name == nullptr ? "" : name); }

// The image knows already what is copied here, in units of its own.
void take_extents(const std::vector<double>& from, std::vector<double>& to) {
  std::copy_n(from.begin(), std::min(from.size(), to.size()), to.begin());
}

// The image takes what it can hold; what it refuses stays as it is.
template <class Work>
bool is_accepted(Work work) {
  try {
    work();
    return true;
  } catch (const Json::BadCast&) {
    return false;
  } catch (const std::invalid_argument&) {
    return false;
  }
}

}  // namespace

VStackInfoImp::VStackInfoImp(unsigned int rank) {
  meta_data_.DimensionOrder = name_of(Ome::get_dimension_order_name(Ome::order_XYZTC));
  set_sizes(std::vector<unsigned int>(rank));
}

VStackInfoImp::VStackInfoImp(Ome::Type type, const std::vector<unsigned int>& sizes,
                             Ome::DimensionOrder order)
    : type_(Ome::get_data_type(type)) {
  meta_data_.Type = name_of(Ome::get_type_name(type));
  meta_data_.DimensionOrder = name_of(Ome::get_dimension_order_name(order));
  set_sizes(sizes);
}

// Reading a remote stack is not const, since its answers may have to come from another process.
VStackInfoImp::VStackInfoImp(const Remote::Stack& stack)
    : image_tree_(const_cast<Remote::Stack&>(stack).meta_data()) {
  auto& remote = const_cast<Remote::Stack&>(stack);
  type_ = remote.type();
  if (meta_data_.DimensionOrder.value().is_null())
    meta_data_.DimensionOrder = name_of(Ome::get_dimension_order_name(Ome::order_XYZTC));
  set_sizes(remote.sizes());
  VStackInfoImp::set_labels(remote.labels());
  take_extents(remote.lengths(), lengths_);
  take_extents(remote.offsets(), offsets_);
}

VStackInfoImp::VStackInfoImp(const VStackInfoImp& other)
    : VStackInfoInterface(other),
      col_positions_(other.col_positions_),
      lengths_(other.lengths_),
      offsets_(other.offsets_),
      col_labels_(other.col_labels_),
      equidistant_(other.equidistant_),
      labels_(other.labels_),
      units_(other.units_),
      data_units_(other.data_units_),
      stack_position_(other.stack_position_),
      meta_data_string_(other.meta_data_string_),
      locked_(other.locked_),
      type_(other.type_),
      sizes_(other.sizes_),
      number_of_elements_(other.number_of_elements_),
      image_tree_(other.image_tree_) {}

VStackInfoImp::~VStackInfoImp() = default;

void VStackInfoImp::check_unlocked() const {
  if (locked_) raise(id_plain, "Cannot set values. Object locked!");
}

void VStackInfoImp::check_axis(unsigned int axis) const {
  if (axis >= sizes_.size()) raise(id_mode, "Invalid axis specified!");
}

void VStackInfoImp::create(const std::vector<unsigned int>& sizes, int type) {
  check_unlocked();
  set_sizes(sizes);
  set_type(type);
}

void VStackInfoImp::create(const VStackInfoInterface* info, int type) {
  create(info->get_sizes(), type == 0 ? info->get_dt() : type);
  set_info(info);
}

void VStackInfoImp::set_info(const VStackInfoInterface* info) {
  check_unlocked();
  const unsigned int rank = std::min(get_rank(), info->get_rank());
  for (unsigned int axis = 0; axis < rank; ++axis) take_length(axis, info->get_length(axis));
  for (unsigned int axis = 0; axis < rank; ++axis) take_offset(axis, info->get_offset(axis));
  set_labels(info->get_labels());
  set_description(info->get_description());
  set_name(info->get_name());
  for (unsigned int axis = 0; axis < rank; ++axis) {
    set_col_labels(axis, info->get_col_labels(axis));
    set_col_positions(
        axis, info->is_equidistant(axis) ? std::vector<double>() : info->get_col_positions(axis));
  }
  set_stack_position(info->get_stack_position());
}

void VStackInfoImp::set_sizes(const std::vector<unsigned int>& sizes) {
  check_unlocked();
  store_sizes(sizes);
  if (number_of_elements_ != 0) set_image_sizes(meta_data_, sizes_);
}

void VStackInfoImp::store_sizes(const std::vector<unsigned int>& sizes) {
  number_of_elements_ = count_elements(sizes.data(), static_cast<std::uint32_t>(sizes.size()));
  sizes_ = sizes;
  resize_axes(sizes.size());
  keep_position_valid();
}

void VStackInfoImp::take_sizes(const std::vector<unsigned int>& sizes) {
  store_sizes(sizes);
  if (number_of_elements_ == 0) return;
  if (!is_accepted([&] { set_image_sizes(meta_data_, sizes_); })) clear_image_sizes(meta_data_);
}

void VStackInfoImp::resize_axes(std::size_t rank) {
  lengths_.resize(rank, 1.0);
  offsets_.resize(rank, 0.0);
  equidistant_.resize(rank, true);
  labels_.resize(rank);
  col_labels_.resize(rank);
  col_positions_.resize(rank);
  units_.resize(rank);
}

// What is committed to a file can be read again only with a position that fits.
void VStackInfoImp::keep_position_valid() {
  if (!stack_position_.is_valid_for(this)) stack_position_.create(this, 0);
}

void VStackInfoImp::set_type(int type) {
  check_unlocked();
  type_ = type;
  if (type != 0) meta_data_.Type = name_of(Ome::get_type_name(Ome::get_type(type)));
}

void VStackInfoImp::take_type(int type) {
  type_ = type;
  const bool is_held =
      is_accepted([&] { meta_data_.Type = name_of(Ome::get_type_name(Ome::get_type(type))); });
  if (!is_held) meta_data_.Type = Json::Value();
}

void VStackInfoImp::set_variable_size(unsigned int size) {
  if (sizes_.empty()) return;
  std::vector<unsigned int> sizes = sizes_;
  sizes.back() = size;
  take_sizes(sizes);
}

void VStackInfoImp::set_variable_type(int type) {
  if (type_ != 0) raise(id_plain, "The type is already set to %d.", type_);
  take_type(type);
}

void VStackInfoImp::set_name(const std::string& name) {
  check_unlocked();
  meta_data_.Name = Json::Value(name);
}

void VStackInfoImp::set_description(const std::string& description) {
  check_unlocked();
  meta_data_.Description = Json::Value(description);
}

void VStackInfoImp::set_acquisition_date() {
  check_unlocked();
  meta_data_.AcquisitionDate = Json::Value(Ome::current_date_time());
}

void VStackInfoImp::set_len(unsigned int axis, double length) {
  check_unlocked();
  check_axis(axis);
  store_length(axis, length);
  set_image_step(meta_data_, axis, sizes_[axis], length);
}

void VStackInfoImp::set_len(const std::vector<double>& lengths) {
  check_unlocked();
  const std::size_t count = std::min(lengths.size(), lengths_.size());
  for (unsigned int axis = 0; axis < count; ++axis) set_len(axis, lengths[axis]);
}

void VStackInfoImp::set_off(unsigned int axis, double offset) {
  check_unlocked();
  check_axis(axis);
  store_offset(axis, offset);
  set_image_offset(meta_data_, axis, offset);
}

void VStackInfoImp::set_off(const std::vector<double>& offsets) {
  check_unlocked();
  const std::size_t count = std::min(offsets.size(), offsets_.size());
  for (unsigned int axis = 0; axis < count; ++axis) set_off(axis, offsets[axis]);
}

// The positions of an equidistant axis follow from length and offset.
void VStackInfoImp::forget_col_positions(unsigned int axis) {
  if (equidistant_[axis]) col_positions_[axis].clear();
}

void VStackInfoImp::store_length(unsigned int axis, double length) {
  lengths_[axis] = length;
  forget_col_positions(axis);
}

void VStackInfoImp::store_offset(unsigned int axis, double offset) {
  offsets_[axis] = offset;
  forget_col_positions(axis);
}

void VStackInfoImp::take_length(unsigned int axis, double length) {
  store_length(axis, length);
  is_accepted([&] { set_image_step(meta_data_, axis, sizes_[axis], length); });
}

void VStackInfoImp::take_offset(unsigned int axis, double offset) {
  store_offset(axis, offset);
  is_accepted([&] { set_image_offset(meta_data_, axis, offset); });
}

void VStackInfoImp::set_labels(const std::vector<std::string>& labels) {
  check_unlocked();
  const std::size_t count = std::min(labels.size(), labels_.size());
  std::copy_n(labels.begin(), count, labels_.begin());
}

void VStackInfoImp::set_label(unsigned int axis, const std::string& label) {
  check_unlocked();
  check_axis(axis);
  labels_[axis] = label;
}

void VStackInfoImp::set_stack_position(const VStackPosition& position) {
  if (!position.is_valid_for(this)) raise_invalid_stack_position();
  stack_position_ = position;
}

void VStackInfoImp::set_col_labels(unsigned int axis, const std::vector<std::string>& labels) {
  check_unlocked();
  check_axis(axis);
  if (!labels.empty() && labels.size() != sizes_[axis]) raise(id_mode, "Wrong number of labels!");
  col_labels_[axis] = labels;
}

void VStackInfoImp::set_col_positions(unsigned int axis, const std::vector<double>& positions) {
  check_unlocked();
  check_axis(axis);
  if (!positions.empty() && positions.size() != sizes_[axis])
    raise(id_mode, "Wrong number of positions!");
  col_positions_[axis] = positions;
  equidistant_[axis] = positions.empty();
}

void VStackInfoImp::set_units(unsigned int axis, const si::value& units) {
  check_unlocked();
  check_axis(axis);
  units_[axis] = units;
}

void VStackInfoImp::set_data_units(const si::value& units) {
  check_unlocked();
  data_units_ = units;
}

u64 VStackInfoImp::get_size(int type) const {
  const int size = vrel_dt_get_size(type == 0 ? type_ : type);
  return static_cast<u64>(size) * number_of_elements_;
}

unsigned int VStackInfoImp::get_rank() const { return static_cast<unsigned int>(sizes_.size()); }

std::string VStackInfoImp::get_description() const {
  return text_of(meta_data_.Description.value());
}

std::string VStackInfoImp::get_name() const { return text_of(meta_data_.Name.value()); }

std::vector<std::string> VStackInfoImp::get_col_labels(unsigned int axis) const {
  check_axis(axis);
  return col_labels_[axis];
}

std::vector<double> VStackInfoImp::get_col_positions(unsigned int axis) const {
  check_axis(axis);
  return current_col_positions(axis);
}

double VStackInfoImp::get_col_position(unsigned int axis, unsigned int pixel) const {
  check_axis(axis);
  const std::vector<double>& positions = current_col_positions(axis);
  if (pixel >= positions.size()) raise(id_mode, "Invalid pixel position!");
  return positions[pixel];
}

const std::vector<double>& VStackInfoImp::current_col_positions(unsigned int axis) const {
  std::vector<double>& positions = col_positions_[axis];
  const unsigned int size = sizes_[axis];
  if (positions.size() == size) return positions;
  positions.clear();
  if (!equidistant_[axis]) return positions;
  const double step = lengths_[axis] / size;
  double position = offsets_[axis] - lengths_[axis] / 2 + step / 2;
  positions.resize(size);
  for (double& each : positions) {
    each = position;
    position += step;
  }
  return positions;
}

bool VStackInfoImp::is_equidistant(unsigned int axis) const {
  check_axis(axis);
  return equidistant_[axis];
}

unsigned int VStackInfoImp::get_dimension_size(unsigned int axis) const {
  check_axis(axis);
  return sizes_[axis];
}

double VStackInfoImp::get_length(unsigned int axis) const {
  check_axis(axis);
  return lengths_[axis];
}

double VStackInfoImp::get_offset(unsigned int axis) const {
  check_axis(axis);
  return offsets_[axis];
}

std::string VStackInfoImp::get_label(unsigned int axis) const {
  check_axis(axis);
  return labels_[axis];
}

si::value VStackInfoImp::get_stored_units(const VStackInfoInterface& info, unsigned int axis) {
  const auto* const held = dynamic_cast<const VStackInfoImp*>(&info);
  if (held == nullptr) return info.get_units(axis);
  held->check_axis(axis);
  return held->units_[axis];
}

si::value VStackInfoImp::get_units(unsigned int axis) const {
  check_axis(axis);
  si::value units = units_[axis];
  if (!units.is_valid()) units.clear();
  const std::string& label = labels_[axis];
  const bool is_spatial =
      !label.empty() && std::string("XYZ").find(label.back()) != std::string::npos;
  if (!units.is_dimensionless() || !is_spatial) return units;
  units.set_value("m", lengths_[axis] > 0.01 ? 1e-06 : 1.0);
  return units;
}
