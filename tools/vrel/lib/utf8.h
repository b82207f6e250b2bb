// Text from files is meant to be UTF-8 but may hold any bytes.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Vrel::tool {

/// Length of the well-formed UTF-8 sequence at the front of `text`, 1 to 4; 0 if there is none.
std::size_t utf8_sequence_length(std::string_view text);

/// The character that a well-formed sequence stands for.
char32_t decode_utf8(std::string_view sequence);

/// The text with one U+FFFD in place of each run of bytes that belong to no well-formed sequence.
std::string repair_utf8(std::string_view text);

}  // namespace Vrel::tool
