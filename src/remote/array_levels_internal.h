// How the elements of a property array lie in lists of values: the last dimension outermost, without
// dimensions of one element.
#pragma once

#include <vrelio/json/value.h>
#include <vrelio/prop/prop_array.h>

#include <vector>

namespace Vrel::detail {

/// The lengths of the lists in each other, the outermost first; none for an array without elements. There
/// are at most 31, since each is above 1 and their product has 32 bits.
/// \throws VrelError "Invalid size vector in property array!" (-1).
std::vector<unsigned int> array_levels(const VProparrayBase& array);

/// Make a null value lists in lists.
/// \return the items of the innermost lists, in the order of the elements.
std::vector<Json::Value*> make_items(const std::vector<unsigned int>& levels, Json::Value& value);

/// The items of the innermost lists, in the order of the elements.
/// \throws Json::BadCast "bad cast" if a list has another length, or if an item that should be a list is
///   none.
std::vector<const Json::Value*> find_items(const std::vector<unsigned int>& levels,
                                           const Json::Value& value);

}  // namespace Vrel::detail
