// The units of lengths and times that OME documents name.
#pragma once

#include <vrelio/container/records.h>
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

/// A unit under its OME name, and how many of it one of the unit is that it stands for.
struct OmeUnit {
  std::string name;     ///< in UTF-8
  double factor = 1.0;  ///< values in the original unit times this are values in the OME unit
};

/// A unit of length: under its own name if OME has it, else as micrometres. Nothing for what is no length.
std::optional<OmeUnit> to_ome_length(const UnitRecord& unit);

/// A unit of time: under its own name if OME has it, else as seconds. Nothing for what is no time.
std::optional<OmeUnit> to_ome_time(const UnitRecord& unit);

}  // namespace Vrel::tool
