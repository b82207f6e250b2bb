// What can be told of a property value from its id.
#pragma once

#include <vrelio/prop/prop.h>
#include <vrelio/prop/prop_array.h>
#include <vrelio/prop/prop_struct.h>

#include <string>
#include <string_view>
#include <vector>

namespace Vrel::tool {

using PropertyCells = VProparray<VProp>;
using PropertyStructs = VProparray<VPropstruct>;
using PropertyTexts = VProparray<VPropstring>;

/// Whether an id stands for an array.
bool is_array(int id);
/// Whether an id stands for numbers or bools.
bool is_numeric(int id);
/// The id of one element.
int element_id(int id);

/// The texts of the numbers or bools that a value holds, as `vrel_val2string` writes them, but with no more
/// digits than tell a number from its neighbours of the same type.
std::vector<std::string> number_texts(const VProp& value);

/// The shape of an array; empty for a row and for no array.
std::vector<unsigned int> shape_of(const VProp& value);

}  // namespace Vrel::tool
