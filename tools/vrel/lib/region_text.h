// The part of a stack that a text such as "x=100:200,z=5" names.
#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "lib/region.h"

namespace Vrel::tool {

/// A text that names no region, or none that the stack has.
class RegionError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// What a text says of one axis.
struct AxisChoice {
  std::string axis;          ///< its name: label, letter or number
  std::optional<u64> first;  ///< first index; none for the first of the axis
  std::optional<u64> end;    ///< index behind the last; none for the end of the axis
  bool is_single = false;    ///< one index rather than a range
};

/// Read AXIS=RANGE, with further ones behind commas. A range is FIRST:END, either of which may be
/// left out, or one index. Blanks around the parts do not count; the axis is what stands in front of
/// the last "=".
/// \throws RegionError for any other text and for ranges that hold no index.
std::vector<AxisChoice> parse_region(std::string_view text);

/// The region of a stack that was chosen; axes that are not named are whole.
///
/// A name is the label of an axis, the same in other case, the letter of an axis (see
/// `axis_letters`) or its number from 0 on; the first of these that is one counts.
/// \param choices  as parsed.
/// \param labels  one for each axis.
/// \param sizes  one for each axis.
/// \throws RegionError for a name that no axis or more than one has, for an axis that is named twice,
/// and for indices that the axis does not have.
Region choose_region(const std::vector<AxisChoice>& choices, const std::vector<std::string>& labels,
                     const std::vector<std::uint32_t>& sizes);

}  // namespace Vrel::tool
