// Reads property values from elements.
#pragma once

#include <vrelio/prop/prop.h>

#include <cstdint>
#include <optional>

#include "prop/field_index_internal.h"
#include "prop/xml_dom_internal.h"

namespace Vrel::detail {

/// Recurses for each level of elements; `Xml_document` bounds those.
class Xml_value_reader {
 public:
  /// Read an element into a value, in which what is of the same kind stays.
  /// \throws VrelError as `vrel_import_xml`, but for the location; Xml_error if a text is missing or an
  ///   attribute is no number.
  void read(Xml_view element, VProp& value);

  /// After an error: the element that was read.
  Xml_view current() const { return current_; }

 private:
  void read_current(VProp& value);
  void read_cell(std::optional<std::uint64_t> bits, VProp& value);
  void read_texts(VProp& value);
  void read_cells(VProp& value);
  void read_struct(VProp& value);
  void read_structs(VProp& value);
  void read_field(Xml_view child, std::uint64_t place, Field_index& index);
  void read_complex(VProp& value);

  Xml_view current_;
  Field_search_budget budget_;
};

}  // namespace Vrel::detail
