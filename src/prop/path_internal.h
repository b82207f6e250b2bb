// The segments of a path: names of fields, and positions in cell arrays and struct arrays.
#pragma once

#include <vrelio/prop/prop_array.h>

#include <string>
#include <string_view>

namespace Vrel::detail {

enum class Segment_kind { field, cell, struct_element };

/// The first segment of a path.
struct Segment {
  Segment_kind kind;
  std::string head;                // the name, or the position with its brackets
  VProparrayBase::index_list pos;  // of an element
  std::string_view tail;           // the rest of the path
};

/// Cut the first segment off a path.
/// \throws VrelError (-1) if there is none; docs/errors.md has the messages.
Segment split_path(std::string_view path);

}  // namespace Vrel::detail
