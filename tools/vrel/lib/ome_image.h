// What the OME document of a VBF file says of an imported stack.
#pragma once

#include <vrelio/json/value.h>

#include <cstddef>
#include <string>

#include "lib/import_stack.h"

namespace Vrel::tool {

/// The element "ome:Image" of a stack. Axes without a label take the letters that are left, in the order
/// XYZTC. What the schema has no place for stays unset: sizes of more than five axes, the 64-bit
/// integers and the integer complex types.
///
/// \param number  of the image in the document, from 1.
Json::Value make_ome_image(const ImportStack& stack, const std::string& name, std::size_t number);

}  // namespace Vrel::tool
