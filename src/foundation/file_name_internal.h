// File names on their way to the system.
#pragma once

#include <vrelio/foundation/propstring.h>

#include <optional>
#include <string>

namespace Vrel::detail {

// UTF-8 of a wide text; nothing for a text with a surrogate unit that has no partner, or a unit
// beyond Unicode.
std::optional<std::string> to_utf8(const std::wstring& text);

// The text in a codeset by name; nothing where it has no such characters, or where there is no such
// codeset.
std::optional<std::string> to_codeset(const std::wstring& text, const std::string& codeset);

// The bytes by which the system knows a file name: the text in the narrow encoding of the process.
// Nothing for a name that this encoding cannot express without loss, or that holds a zero
// character.
std::optional<std::string> to_system_name(const VPropstring& name);

}  // namespace Vrel::detail
