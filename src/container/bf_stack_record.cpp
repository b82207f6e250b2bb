// The description of a stack from the records of a file, and back.
#include <algorithm>
#include <cstddef>

#include "container/bf_stack_imp_internal.h"
#include "container/format_internal.h"
#include "container/stack_metadata_internal.h"

namespace Vrel::detail {

namespace {

si::value make_unit(const UnitRecord& record) {
  si::exponent_list exponents;
  for (std::size_t i = 0; i < exponents.size(); ++i) {
    exponents[i].num = record.exponents[i].numerator;
    exponents[i].den = record.exponents[i].denominator;
  }
  return {record.factor, exponents};
}

UnitRecord make_unit_record(const si::value& unit) {
  UnitRecord record;
  record.factor = unit.value_in_baseunits();
  for (std::size_t i = 0; i < record.exponents.size(); ++i) {
    record.exponents[i].numerator = unit.exponents()[i].num;
    record.exponents[i].denominator = unit.exponents()[i].den;
  }
  return record;
}

// What lists of columns a record can hold: none, or one entry for each pixel.
template <class Column>
std::vector<Column> if_complete(std::vector<Column> columns, unsigned size) {
  if (columns.size() != size) columns.clear();
  return columns;
}

}  // namespace

// A file may say what no setter would accept, so nothing here is refused.
void VBFStackImp::take_description(StackRecord& record) {
  const StackHeader& header = record.header;
  take_sizes({header.sizes.begin(), header.sizes.begin() + header.rank});
  take_type(header.data_type);
  for (unsigned axis = 0; axis < header.rank; ++axis) {
    take_length(axis, header.lengths[axis]);
    take_offset(axis, header.offsets[axis]);
    set_units(axis, make_unit(record.footer.units[axis]));
    set_col_positions(axis, record.column_positions[axis]);
    set_col_labels(axis, record.column_labels[axis]);
  }
  set_data_units(make_unit(record.footer.data_unit));
  set_labels(record.labels);
  if (!record.name.empty()) set_name(record.name);
  if (!record.description.empty()) set_description(record.description);
  set_meta_data_string(record.metadata);
  const auto position = import_metadata(record.metadata, header.format_version, header.rank);
  if (position) set_stack_position(*position);
  record.labels = {};
  record.column_positions = {};
  record.column_labels = {};
  record.metadata = {};
}

void VBFStackImp::take_description(const DblHeader& header) {
  const auto end = std::find_if(header.dims.begin(), header.dims.end(),
                                [](std::uint16_t size) { return size < 2; });
  VStackInfoImp::create({header.dims.begin(), end}, dbl_data_type(header));
  for (unsigned axis = 0; axis < get_rank(); ++axis) take_length(axis, header.lengths[axis]);
  record_.header.data_type = get_dt();
  record_.number_of_samples = get_number_of_elements();
  record_.data_position = dbl_header_size;
  record_.header.data_length = u64{record_.number_of_samples} * dbl_sample_size(header);
  record_.stack_end = record_.data_position + record_.header.data_length;
}

StackHeader VBFStackImp::make_header() const {
  StackHeader header;
  header.rank = get_rank();
  const std::vector<unsigned> sizes = get_sizes();
  std::copy(sizes.begin(), sizes.end(), header.sizes.begin());
  for (unsigned axis = 0; axis < header.rank; ++axis) {
    header.lengths[axis] = get_length(axis);
    header.offsets[axis] = get_offset(axis);
  }
  header.data_type = get_dt();
  header.compression_type = record_.header.compression_type;
  header.compression_level = record_.header.compression_level;
  header.name_length = length_field(get_name().size());
  header.description_length = length_field(get_description().size());
  header.has_data = empty_ ? 0 : 1;
  return header;
}

StackRecord VBFStackImp::make_record() const {
  StackRecord record = record_;
  record.labels = get_labels();
  record.column_positions.resize(record.header.rank);
  record.column_labels.resize(record.header.rank);
  for (unsigned axis = 0; axis < record.header.rank; ++axis) {
    const unsigned size = get_dimension_size(axis);
    record.footer.units[axis] = make_unit_record(get_stored_units(*this, axis));
    record.column_labels[axis] = if_complete(get_col_labels(axis), size);
    if (is_equidistant(axis)) continue;
    record.column_positions[axis] = if_complete(get_col_positions(axis), size);
  }
  record.footer.data_unit = make_unit_record(get_data_units());
  record.metadata = export_metadata(get_stack_position());
  return record;
}

}  // namespace Vrel::detail
