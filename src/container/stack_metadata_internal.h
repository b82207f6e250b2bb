// The XML text of a stack that holds its place in a system of global axes.
#pragma once

#include <vrelio/stack/stack_info.h>

#include <cstdint>
#include <string>

namespace Vrel::detail {

// The text of a position. Raises "Invalid meta information! Could not export to xml.\n%s" (-1).
std::string export_metadata(const VStackPosition& position);

// Set the position of a description from the text of a stack of this format version; of those below 3 the
// text only has to be readable. Raises "Invalid metadata found!\n%s" (-1).
void import_metadata(const std::string& text, std::uint32_t format_version,
                     VStackInfoInterface& info);

}  // namespace Vrel::detail
