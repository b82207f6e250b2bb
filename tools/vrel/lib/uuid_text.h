// Random UUIDs.
#pragma once

#include <string>

namespace Vrel::tool {

/// A new random UUID as 36 characters in lower case.
std::string make_uuid();

}  // namespace Vrel::tool
