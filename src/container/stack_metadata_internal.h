// The XML text of a stack that holds its place in a system of global axes.
#pragma once

#include <vrelio/stack/position.h>

#include <cstdint>
#include <optional>
#include <string>

namespace Vrel::detail {

// The text of a position. Raises "Invalid meta information! Could not export to xml.\n%s" (-1).
std::string export_metadata(const VStackPosition& position);

// As `read_stack_metadata`, for opening a file.
// Raises "Invalid metadata found!\n%s" (-1).
std::optional<VStackPosition> import_metadata(const std::string& text, std::uint32_t format_version,
                                              unsigned rank);

}  // namespace Vrel::detail
