// Which kinds are numbers or bools, alone or in arrays: those that convert, and those that are written as
// numbers.
#pragma once

#include <vrelio/prop/kind.h>

#include "foundation/data_type_list_internal.h"

namespace Vrel::detail {

constexpr bool is_array(int id) { return (id & array_flag) != 0; }
constexpr int element_id(int id) { return id & ~array_flag; }

constexpr bool is_complex(int element) { return complex_row(element) != -1; }
constexpr bool is_numeric(int element) {
  return real_row(element) != -1 || is_complex(element) || element == id_logical;
}

/// Whether T is a number or bool, or an array of them.
template <class T>
inline constexpr bool is_numeric_kind = is_numeric(element_id(prop_id<T>));

}  // namespace Vrel::detail
