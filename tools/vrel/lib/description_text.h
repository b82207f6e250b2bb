// The description of a file for people.
#pragma once

#include <vrelio/container/records.h>

#include <string>

#include "lib/description.h"

namespace Vrel::tool {

/// Several lines, of which the first is the path. Nothing in the file can harm a terminal.
std::string to_text(const std::string& path, const FileRecord& file);

/// A unit as its factor and the base units with their exponents as stored, for instance
/// "1e-06 m" or "m^2 s^-1"; "1" for the neutral unit.
std::string to_text(const UnitRecord& unit);

}  // namespace Vrel::tool
