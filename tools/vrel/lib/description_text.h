// The description of a file for people.
#pragma once

#include <string>

#include "lib/description.h"

namespace Vrel::tool {

/// Several lines, of which the first is the path. Nothing in the file can harm a terminal.
std::string to_text(const std::string& path, const FileRecord& file);

}  // namespace Vrel::tool
