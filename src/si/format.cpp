#include <vrelio/si/value.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "si/unit_table_internal.h"

namespace si {
namespace {

// Intended: a mass is written in grams or tonnes; ValueFormatTest.AMassIsWrittenInGramsOrTonnes.
bool is_passed_over(const unit& row, double magnitude) {
  if (row.name == "t") return magnitude < 1000.0;
  if (row.name == "g") return magnitude > 1000.0;
  return row.name == "kg";
}

const unit* choose_unit(const value& written) {
  for (const unit& row : detail::unit_table()) {
    const bool fits = row.is_compatible(written);
    if (fits && !is_passed_over(row, written.value_in_baseunits())) return &row;
  }
  return nullptr;
}

// The sign of its worth: fields of which both are negative make a positive fraction.
int sign_of(const fraction& exponent) {
  if (exponent.num == 0) return 0;
  return (exponent.num < 0) == (exponent.den < 0) ? 1 : -1;
}

std::string absolute_text(int number) { return std::to_string(std::abs(std::int64_t{number})); }

// Without sign, in a form that can be read again.
std::string exponent_text(const fraction& exponent) {
  const std::string numerator = absolute_text(exponent.num);
  const std::string denominator = absolute_text(exponent.den);
  if (denominator != "1") return "^(" + numerator + '/' + denominator + ')';
  return numerator == "1" ? "" : '^' + numerator;
}

std::string compose_unit(const exponent_list& exponents, int flags) {
  std::string numerator;
  std::string denominator;
  for (std::size_t i = 0; i < dimension_count; ++i) {
    const std::string power = detail::unit_table()[i].name + exponent_text(exponents[i]);
    const int sign = sign_of(exponents[i]);
    if (sign > 0) numerator += (numerator.empty() ? "" : "*") + power;
    if (sign < 0) denominator += '/' + power;
  }
  if (numerator.empty() && (flags & format_separate) != 0) numerator = "1";
  return numerator + denominator;
}

// For magnitudes that are finite and not 0. The addend lifts what rounding left below a power of ten.
int decimal_exponent(double magnitude) {
  return static_cast<int>(std::floor(std::log(std::abs(magnitude)) / std::log(10.0) + 0.0001));
}

// In two steps where the power of ten would not fit a double.
double divide_by_power_of_ten(double magnitude, int exponent) {
  constexpr int lowest = -300;
  if (exponent >= lowest) return magnitude / detail::power_of_ten(exponent);
  return magnitude / detail::power_of_ten(lowest) / detail::power_of_ten(exponent - lowest);
}

bool allows_prefix(const value& written, int flags) {
  if (written.is_dimensionless() && (flags & format_prefix_dimensionless) == 0) return false;
  return (flags & format_prefix) != 0;
}

// The exponent of the prefix to write; 0 for none.
int choose_prefix(double magnitude, const unit& row, int flags) {
  const int exponent = decimal_exponent(magnitude);
  // A number of one decimal in front of a separate unit stays as it is.
  if (exponent < 0 && 1 - exponent <= 1 + (flags & format_separate)) return 0;
  int prefix = static_cast<int>(std::floor(exponent / 3.0)) * 3;
  if (exponent < row.min_exp) prefix = row.min_exp;
  if (exponent > row.max_exp) prefix = row.max_exp;
  const double scaled = std::abs(magnitude / detail::power_of_ten(prefix));
  return scaled >= 0.01 && scaled <= 1000.0 ? prefix : 0;
}

// As "%.*f" of the C locale: a negative precision stands for 6.
std::string fixed_text(double number, std::int64_t precision) {
  constexpr std::int64_t default_precision = 6;
  // No double has more decimals.
  constexpr std::int64_t highest_precision = 1100;
  if (precision < 0) precision = default_precision;
  char text[highest_precision + 10];
  const std::to_chars_result result =
      std::to_chars(text, text + sizeof text, number, std::chars_format::fixed,
                    static_cast<int>(std::min(precision, highest_precision)));
  return {text, result.ptr};
}

std::string number_text(double magnitude, int digits) {
  if (std::isnan(magnitude)) return "nan";
  if (std::isinf(magnitude)) return magnitude < 0 ? "-inf" : "inf";
  const std::int64_t decimals = std::int64_t{digits} - 1;
  const int exponent = decimal_exponent(magnitude);
  if (std::abs(magnitude) > 1000.0 || std::abs(magnitude) < 0.01) {
    const double mantissa = divide_by_power_of_ten(magnitude, exponent);
    return fixed_text(mantissa, decimals) + 'e' + std::to_string(exponent);
  }
  // Intended: whatever the digits are; ValueFormatTest.OneIsWrittenWithoutDecimals.
  if (magnitude == 1.0) return "1";
  return fixed_text(magnitude, std::max<std::int64_t>(decimals - exponent, 0));
}

}  // namespace

std::string value::format(int digits, int flags) const {
  std::string number;
  std::string unit_name;
  format(number, unit_name, digits, flags);
  return number + ((flags & format_separate) != 0 ? " " : "") + unit_name;
}

void value::format(std::string& number, std::string& unit, int digits, int flags) const {
  const si::unit* const row = choose_unit(*this);
  unit = row != nullptr ? row->name : compose_unit(exponents_, flags);
  if (value_ == 0.0) {
    number = "0.000";
    return;
  }
  double magnitude = row != nullptr ? value_ / row->value_in_baseunits() : value_;
  if (row != nullptr && allows_prefix(*this, flags) && std::isfinite(magnitude)) {
    const int prefix = choose_prefix(magnitude, *row, flags);
    unit = detail::written_prefix(prefix) + unit;
    magnitude /= detail::power_of_ten(prefix);
  }
  number = number_text(magnitude, digits);
}

}  // namespace si
