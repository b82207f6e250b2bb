// Manual pages in the macros of `man`.
#pragma once

#include <string>

#include "pages/command_tree.h"

namespace Vrel::tool {

/// The page of a verb, "vrel-VERB".
/// \param text  a page by hand, from its description on. A line `@OPTIONS@` in it stands for the options,
///   `@NOTES@` for the notes, `@VERBS@` for the list of all verbs and `@EXIT@` for the exit codes.
/// \throws std::runtime_error if it lacks `@OPTIONS@`.
std::string man_page(const ProgramRecord& program, const CommandRecord& verb,
                     const std::string& text);

/// The page of the program, "vrel"; `text` as above, with `@VERBS@` and `@EXIT@` as well.
std::string man_page(const ProgramRecord& program, const std::string& text);

}  // namespace Vrel::tool
