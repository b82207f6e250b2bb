// How the program calls itself.
#pragma once

#include <vrelio/version.h>

#include <string>

namespace Vrel::tool {

/// Name and version, such as "vrel 1.2.3".
inline std::string program_name() {
  return "vrel " + std::to_string(VRELIO_VERSION_MAJOR) + '.' +
         std::to_string(VRELIO_VERSION_MINOR) + '.' + std::to_string(VRELIO_VERSION_PATCH);
}

}  // namespace Vrel::tool
