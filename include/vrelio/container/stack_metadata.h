// The XML text of a stack that holds its place in a system of global axes.
#pragma once

#include <vrelio/export.h>
#include <vrelio/stack/position.h>

#include <cstdint>
#include <optional>
#include <string>

namespace Vrel {

/// The position that a stack's metadata holds; none where there is no text.
///
/// \param text  of the metadata.
/// \param format_version  of the stack; below 3 there is no position either, and the text only has to be
///   readable.
/// \param rank  of the stack, which the position has to fit.
/// \throws VrelError as `vrel_import_xml`; "Type mismatch: found %s%s, expected %s%s" (-1) for a key that
///   is missing or of another kind; "Invalid global stack position!" (-1). Opening a file raises these as
///   "Invalid metadata found!\n%s".
VRELIO_EXPORT std::optional<VStackPosition> read_stack_metadata(const std::string& text,
                                                                std::uint32_t format_version,
                                                                unsigned rank);

}  // namespace Vrel
