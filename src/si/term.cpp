#include "si/term_internal.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <locale>
#include <optional>
#include <sstream>
#include <string>

#include "si/unit_table_internal.h"

namespace si::detail {
namespace {

bool is_digit(char c) { return c >= '0' && c <= '9'; }
bool is_sign(char c) { return c == '+' || c == '-'; }
bool is_exponent_mark(char c) { return c == 'e' || c == 'E'; }
bool begins_number(char c) { return is_digit(c) || is_sign(c) || c == '.'; }

// How many characters at the front of the text belong to its number; none if they can be no number.
// Intended: a number before "eV" or "e" needs a blank; ParseTest.AnExponentMarkNeedsASignOrADigit.
std::optional<std::size_t> number_length(std::string_view text) {
  bool has_point = false;
  bool has_exponent = false;
  std::size_t at = is_sign(text.front()) ? 1 : 0;
  for (; at < text.size(); ++at) {
    if (is_digit(text[at])) continue;
    if (text[at] == '.') {
      if (has_point) return std::nullopt;
      has_point = true;
    } else if (is_exponent_mark(text[at]) && !has_exponent) {
      ++at;
      if (at == text.size() || !(is_sign(text[at]) || is_digit(text[at]))) return std::nullopt;
      has_exponent = true;
    } else {
      break;
    }
  }
  return at;
}

// Infinity for what is too large, and the nearest double, perhaps 0, for what is too small.
double out_of_range_number(std::string_view digits) {
  std::istringstream stream{std::string(digits)};
  stream.imbue(std::locale::classic());
  double number = 0.0;
  const bool is_held = static_cast<bool>(stream >> number);
  return is_held ? number : std::copysign(std::numeric_limits<double>::infinity(), number);
}

// What follows the number, such as a second point behind an exponent, is passed over.
std::optional<double> number_of(std::string_view scanned) {
  if (scanned.front() == '+') scanned.remove_prefix(1);
  const char* const end = scanned.data() + scanned.size();
  double number = 0.0;
  const std::from_chars_result result = std::from_chars(scanned.data(), end, number);
  if (result.ec == std::errc::invalid_argument) return std::nullopt;
  if (result.ptr != end && is_exponent_mark(*result.ptr)) return std::nullopt;
  if (result.ec != std::errc::result_out_of_range) return number;
  const auto length = static_cast<std::size_t>(result.ptr - scanned.data());
  return out_of_range_number(scanned.substr(0, length));
}

// Cuts the number off the front of the text.
std::optional<double> take_number(std::string_view& text) {
  if (!begins_number(text.front())) return 1.0;
  const std::optional<std::size_t> length = number_length(text);
  if (!length) return std::nullopt;
  const std::string_view scanned = text.substr(0, *length);
  text.remove_prefix(*length);
  return number_of(scanned);
}

bool takes_prefix(const unit& row, int exponent) {
  if (row.name == "kg") return false;
  if (row.name == "g") return exponent <= 3;
  if (row.name == "t") return exponent >= 2;
  if (row.name == "s") return exponent <= 0;
  return true;
}

bool parse_prefixed(std::string_view text, double number, value& result) {
  const int exponent = read_prefix(text.front());
  if (exponent == no_prefix) return false;
  const unit* const row = find_unit(text.substr(1));
  if (row != nullptr && !takes_prefix(*row, exponent)) return false;
  // Intended: behind a prefix any name is read, as no unit if it is none;
  // ParseTest.AnUnknownNameBehindAPrefixIsNoUnit.
  value worth;
  if (row != nullptr) worth = *row;
  result = value(power_of_ten(exponent) * number * worth.value_in_baseunits(), worth.exponents());
  return true;
}

}  // namespace

bool parse_term(std::string_view text, value& result) {
  const std::optional<double> number = take_number(text);
  if (!number) return false;
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  const unit* const row = find_unit(text);
  if (row == nullptr) return parse_prefixed(text, *number, result);
  result = *row;
  result *= *number;
  return true;
}

}  // namespace si::detail
