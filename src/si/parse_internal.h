// The text of a value: terms, joined by operators and parentheses. docs/units.md has the rules.
#pragma once

#include <vrelio/si/value.h>

#include <string_view>

namespace si::detail {

/// Read a text, in time and memory in proportion to its length.
/// \return false, with `result` in any state, if the text names no value.
bool parse(std::string_view text, value& result);

}  // namespace si::detail
