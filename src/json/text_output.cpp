#include "json/text_output_internal.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace Json::detail {

namespace {

constexpr int significant_digits = 10;
// All digits of the greatest double, a sign, a point and a decimal place.
constexpr std::size_t longest_decimal = std::numeric_limits<double>::max_exponent10 + 4;

}  // namespace

void TextOutput::put_integer(int integer) {
  std::array<char, std::numeric_limits<int>::digits10 + 2> text;
  const auto end = std::to_chars(text.data(), text.data() + text.size(), integer).ptr;
  put(std::string_view(text.data(), static_cast<std::size_t>(end - text.data())));
}

void TextOutput::put_decimal(double decimal) {
  std::array<char, longest_decimal> text;
  char* const first = text.data();
  char* const last = first + text.size();
  double whole = 0.0;
  const bool has_fraction = std::modf(decimal, &whole) != 0.0;
  const auto end =
      has_fraction
          ? std::to_chars(first, last, decimal, std::chars_format::general, significant_digits).ptr
          : std::to_chars(first, last, decimal, std::chars_format::fixed, 1).ptr;
  put(std::string_view(first, static_cast<std::size_t>(end - first)));
}

void TextOutput::hand_over() {
  out_.write(text_.data(), static_cast<std::streamsize>(text_.size()));
  text_.clear();
}

}  // namespace Json::detail
