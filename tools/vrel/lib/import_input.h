// Files of any kind that can be imported.
#pragma once

#include <optional>
#include <string>

#include "lib/import_stack.h"
#include "lib/raw_input.h"

namespace Vrel::tool {

/// Whether the samples of this file are raw and nothing in it tells what they are: one whose name ends
/// in ".raw", and standard input if a layout is given.
bool is_raw_input(const std::string& path, bool has_layout);

/// The stacks of a file: .npy and TIFF by its first bytes, raw samples by its name. "-" is standard
/// input, with raw samples if there is a layout for them, else with an array as in a .npy file.
/// \throws VrelError "Could not open file!" (-1) with the system error; "Neither .npy nor TIFF, and no
/// .raw file!" (-4); what the kinds of files raise.
ImportInput open_import(const std::string& path, const std::optional<RawLayout>& layout);

}  // namespace Vrel::tool
