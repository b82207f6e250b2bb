// Numbers at the beginning of a text, taken as a stream with the classic locale extracts them.
#pragma once

#include <cstddef>
#include <string_view>

namespace Json::detail {

/// What a stream gives for a text that it is to take a number from.
template <class T>
struct Extraction {
  /// 0 where the characters taken are no number; the limit of T where the number is beyond it.
  T value;
  /// Whether the characters taken are a number that T holds.
  bool is_converted;
  /// How many characters are taken, also if they are no number.
  std::size_t length;
};

/// An optional sign and decimal digits; what follows is not looked at. Nothing is skipped in front.
Extraction<int> extract_integer(std::string_view text);

/// As much as can belong to a decimal number: an optional sign, digits with a point, and after digits
/// an exponent, of which sign and digits may be missing. All of it has to be a number: `1.5.3` is 1.5,
/// but `1.5e` is nothing. What is too small becomes 0 or the nearest subnormal number. Nothing is
/// skipped in front.
Extraction<double> extract_decimal(std::string_view text);

}  // namespace Json::detail
