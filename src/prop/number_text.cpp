#include "prop/number_text_internal.h"

#include <charconv>
#include <cmath>
#include <cstddef>
#include <limits>
#include <locale>
#include <sstream>
#include <system_error>
#include <type_traits>

#include "foundation/data_type_list_internal.h"

namespace Vrel::detail {

namespace {

constexpr int significant_digits = 20;

// More than a sign, a point, all digits and the zeros or the exponent around them take.
constexpr std::size_t longest_number = 64;

std::to_chars_result write_digits(char* begin, char* end, double number) {
  return std::to_chars(begin, end, number, std::chars_format::general, significant_digits);
}

template <class Integer>
std::to_chars_result write_digits(char* begin, char* end, Integer number) {
  return std::to_chars(begin, end, number);
}

template <class T>
void append_digits(std::string& out, T number) {
  char digits[longest_number];
  const std::to_chars_result result = write_digits(digits, digits + sizeof digits, number);
  out.append(digits, result.ptr);
}

// --- Reading what the library writes, without a stream

bool is_digit(char c) { return c >= '0' && c <= '9'; }

// A stream knows neither the names of infinity and of no number, nor other signs in front of them.
bool begins_with_digits(std::string_view text) {
  if (!text.empty() && text.front() == '-') text.remove_prefix(1);
  return !text.empty() && (is_digit(text.front()) || text.front() == '.');
}

// Behind these characters a stream takes nothing more for a number.
bool ends_number(std::string_view rest) {
  return rest.empty() || rest.front() == ' ' || rest.front() == ',' || rest.front() == ')';
}

template <class T>
bool take_plain(std::string_view& text, T& number) {
  if (!begins_with_digits(text)) return false;
  T taken{};
  const char* const end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, taken);
  const std::string_view rest(result.ptr, static_cast<std::size_t>(end - result.ptr));
  if (result.ec != std::errc() || !ends_number(rest)) return false;
  number = taken;
  text = rest;
  return true;
}

bool take_plain(std::string_view& text, bool& number) {
  if (text.empty() || (text.front() != '0' && text.front() != '1')) return false;
  if (!ends_number(text.substr(1))) return false;
  number = text.front() == '1';
  text.remove_prefix(1);
  return true;
}

// --- Reading everything else as a stream does

template <class T>
bool extract(std::istream& stream, T& number) {
  return !(stream >> number).fail();
}

// A stream would take a character. Intended: as with the wider kinds, what is negative wraps around in
// an unsigned one; PropNumberTextTest.ANegativeNumberWrapsAroundInAnUnsignedKind.
bool extract(std::istream& stream, unsigned char& number) {
  constexpr int highest = std::numeric_limits<unsigned char>::max();
  int taken = 0;
  if (!extract(stream, taken) || taken < -highest || taken > highest) return false;
  number = static_cast<unsigned char>(taken);
  return true;
}

bool extract(std::istream& stream, char& number) {
  using Limits = std::numeric_limits<char>;
  int taken = 0;
  if (!extract(stream, taken) || taken < Limits::min() || taken > Limits::max()) return false;
  number = static_cast<char>(taken);
  return true;
}

// White space and what stands behind it up to the next: as much as a stream can take for a number, so
// that a long text is not copied for each of its numbers.
std::string_view first_word(std::string_view text) {
  constexpr const char* white_space = " \t\n\v\f\r";
  const std::size_t begin = text.find_first_not_of(white_space);
  if (begin == std::string_view::npos) return {};
  return text.substr(0, text.find_first_of(white_space, begin));
}

template <class T>
bool take_by_stream(std::string_view& text, T& number) {
  std::istringstream stream{std::string(first_word(text))};
  stream.imbue(std::locale::classic());
  T taken{};
  if (!extract(stream, taken)) return false;
  number = taken;
  stream.clear();
  text.remove_prefix(static_cast<std::size_t>(stream.tellg()));
  return true;
}

// --- Reading what is not finite

bool skip_word(std::string_view& text, std::string_view word) {
  if (text.substr(0, word.size()) != word) return false;
  text.remove_prefix(word.size());
  return true;
}

template <class T>
bool take_not_finite(std::string_view& text, T& number) {
  using Limits = std::numeric_limits<T>;
  if (skip_word(text, "Inf")) {
    number = Limits::infinity();
  } else if (skip_word(text, "-Inf")) {
    number = -Limits::infinity();
  } else if (skip_word(text, "NaN")) {
    number = Limits::quiet_NaN();
  } else {
    return false;
  }
  return true;
}

}  // namespace

template <class T>
void append_number(std::string& out, T number) {
  if constexpr (std::is_same_v<T, bool>) {
    out += number ? '1' : '0';
  } else if constexpr (std::is_integral_v<T>) {
    append_digits(out, number);
  } else if (std::isfinite(number)) {
    append_digits(out, static_cast<double>(number));
  } else {
    out += std::isnan(number) ? "NaN" : number > 0 ? "Inf" : "-Inf";
  }
}

template <class T>
bool NumberInput::take(T& number) {
  if (take_plain(rest_, number)) return true;
  if constexpr (std::is_floating_point_v<T>) {
    if (take_not_finite(rest_, number)) return true;
  }
  return take_by_stream(rest_, number);
}

#define VRELIO_INSTANTIATE(id, type, name)             \
  template void append_number(std::string& out, type); \
  template bool NumberInput::take(type&);
VRELIO_REAL_TYPES(VRELIO_INSTANTIATE)
VRELIO_INSTANTIATE(0x10000, bool, logical)
#undef VRELIO_INSTANTIATE

}  // namespace Vrel::detail
