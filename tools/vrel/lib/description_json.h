// The description of a file for programs.
#pragma once

#include <string>

#include "lib/description.h"

namespace Vrel::tool {

/// One JSON object on one line, with a line end. A damaged file has the key "error" as well.
///
/// Numbers that JSON cannot hold are null; bytes that are no UTF-8 appear as in `repair_utf8`.
std::string to_json(const Description& description);

}  // namespace Vrel::tool
