// The text of a value without operators: a number, a unit, or both. docs/units.md has the rules.
#pragma once

#include <vrelio/si/value.h>

#include <string_view>

namespace si::detail {

/// Read a term that is not empty.
/// \return false, with `result` as it was, if the text is none.
bool parse_term(std::string_view text, value& result);

}  // namespace si::detail
