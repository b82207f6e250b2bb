// The XML text of a stack that holds its place in a system of global axes.
#pragma once

#include <vrelio/stack/position.h>

#include <cstdint>
#include <optional>
#include <string>

namespace Vrel::detail {

// The text of a position. Raises "Invalid meta information! Could not export to xml.\n%s" (-1).
std::string export_metadata(const VStackPosition& position);

// The position that the text of a stack of this format version and rank holds; none where there is no text.
// Below version 3 there is none either, and the text only has to be readable.
// Raises "Invalid metadata found!\n%s" (-1).
std::optional<VStackPosition> import_metadata(const std::string& text, std::uint32_t format_version,
                                              unsigned rank);

}  // namespace Vrel::detail
