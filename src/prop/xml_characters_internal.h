// What may stand in a document: characters, blanks and names.
#pragma once

#include <cstddef>
#include <string_view>

namespace Vrel::detail {

/// Whether a document can hold a code point.
constexpr bool is_xml_character(char32_t code) {
  if (code < 0x20) return code == '\t' || code == '\n' || code == '\r';
  return code < 0xD800 || (code > 0xDFFF && code < 0xFFFE) || (code > 0xFFFF && code <= 0x10FFFF);
}

constexpr bool is_xml_blank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

/// Whether a byte can begin a name; any that is not of ASCII can.
constexpr bool is_xml_name_start(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' ||
         static_cast<unsigned char>(c) > 127;
}

constexpr bool is_xml_name_byte(char c) {
  return is_xml_name_start(c) || (c >= '0' && c <= '9') || c == '-' || c == '.' || c == ':';
}

/// Number of bytes in front of the first that is no well-formed UTF-8 of what a document can hold.
std::size_t valid_xml_length(std::string_view text);

/// Whether a text can be the name of an element.
bool is_xml_name(std::string_view text);

}  // namespace Vrel::detail
