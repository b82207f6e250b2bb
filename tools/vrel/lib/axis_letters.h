// Which axis of a stack is X, Y, Z, C (channel) or T (time).
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Vrel::tool {

/// The letter in an axis that has none.
constexpr char no_letter = '\0';

/// The letter that a label names: as its last character, which for C and T has to be a word of its
/// own ("ExpControl X", "z", "T"), or by a word for it ("Channel", "time").
char letter_of(std::string_view label);

/// A letter for each axis, none of them twice. Where two labels name the same one the first axis has
/// it. Axes whose label names none get theirs by position: X the first, Y the second, then what is
/// left of Z, T and C in this order.
/// \param labels  one for each axis, the fastest first.
std::vector<char> axis_letters(const std::vector<std::string>& labels);

}  // namespace Vrel::tool
