// The units of lengths and times that OME documents name.
#pragma once

#include <vrelio/si/value.h>

#include <optional>
#include <string>

namespace Vrel::tool {

/// The OME name of a unit whose signs are spelled with other characters that look alike: the Greek letter
/// for micro, the letter for the sign of the angstrom.
std::string ome_spelling(const std::string& name);

/// The unit of this OME name, in UTF-8, such as "µm" or "min"; nothing for what is no length and no
/// time, as "pixel" and "reference frame".
std::optional<si::value> ome_unit(const std::string& name);

}  // namespace Vrel::tool
