// Which kinds of properties have a counterpart among values.
#pragma once

#include <type_traits>

#include "prop/kind_list_internal.h"

namespace Vrel::detail {

/// A number, a boolean or a text.
template <class T>
inline constexpr bool is_plain_kind =
    real_row(prop_id<T>) != -1 || std::is_same_v<T, bool> || std::is_same_v<T, VPropstring>;

/// An array of plain elements.
template <class T>
inline constexpr bool is_plain_array = false;
template <class T>
inline constexpr bool is_plain_array<VProparray<T>> = is_plain_kind<T>;

/// An array of elements that hold further ones: cells and structs.
template <class T>
inline constexpr bool is_tree_array =
    std::is_same_v<T, VProparray<VProp>> || std::is_same_v<T, VProparray<VPropstruct>>;

}  // namespace Vrel::detail
