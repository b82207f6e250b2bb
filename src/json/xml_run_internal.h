// Characters that are all treated alike, taken in one go.
#pragma once

#include <array>
#include <cstddef>
#include <string>

#include "json/ascii_internal.h"

namespace Json::detail {

constexpr std::array<bool, 256> make_xml_name_characters() {
  std::array<bool, 256> table{};
  for (unsigned byte = 0; byte < table.size(); ++byte) {
    const char c = static_cast<char>(byte);
    table[byte] = is_letter(c) || is_digit(c) || c == '_' || c == ':';
  }
  return table;
}

constexpr std::array<bool, 256> xml_name_characters = make_xml_name_characters();

/// What a name goes on with.
constexpr auto is_xml_name_character = [](char c) {
  return xml_name_characters[static_cast<unsigned char>(c)];
};

/// The first character in [begin, end) that is not wanted.
template <class Predicate>
const char* skip_while(Predicate is_wanted, const char* begin, const char* end) {
  while (begin != end && is_wanted(*begin)) ++begin;
  return begin;
}

/// Append the character in front of `rest` and those behind it that are wanted; `rest` moves behind
/// what was appended.
template <class Predicate>
void append_run(Predicate is_wanted, const char*& rest, const char* end, std::string& text) {
  const char* const first = rest - 1;
  rest = skip_while(is_wanted, rest, end);
  text.append(first, static_cast<std::size_t>(rest - first));
}

}  // namespace Json::detail
