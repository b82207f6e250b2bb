// Character classes of the readers, the same in every locale.
#pragma once

namespace Json::detail {

constexpr bool is_letter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

constexpr bool is_digit(char c) { return c >= '0' && c <= '9'; }

/// Blank, tab, line feed, vertical tab, form feed and carriage return.
constexpr bool is_whitespace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

/// What a number is gathered from, in whatever order.
constexpr bool is_number_character(char c) {
  return is_digit(c) || c == '.' || c == 'e' || c == 'E' || c == '+' || c == '-';
}

}  // namespace Json::detail
