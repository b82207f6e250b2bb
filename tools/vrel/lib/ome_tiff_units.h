// Units under the names that OME-XML has for them.
#pragma once

#include <vrelio/container/records.h>

#include <optional>

namespace Vrel::tool {

/// A unit of OME-XML, and how many of it one of the unit is that it stands for.
struct OmeUnit {
  const char* name;     ///< in UTF-8; literal
  double factor = 1.0;  ///< values in the original unit times this are values in the OME unit
};

/// A unit of length: under its own name if OME-XML has it, else as micrometres. Nothing for what is no
/// length.
std::optional<OmeUnit> to_ome_length(const UnitRecord& unit);

/// A unit of time: under its own name if OME-XML has it, else as seconds. Nothing for what is no time.
std::optional<OmeUnit> to_ome_time(const UnitRecord& unit);

}  // namespace Vrel::tool
