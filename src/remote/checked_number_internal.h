// Numbers that change their type without changing their value.
#pragma once

#include <vrelio/json/value.h>

#include <cmath>
#include <limits>
#include <type_traits>

namespace Vrel::detail {

/// Whether the integer type To has exactly this number.
template <class To, class From>
bool holds_number(From number) {
  if constexpr (std::is_floating_point_v<From>) {
    // The limits are powers of 2, so a decimal has them exactly.
    const double end = std::ldexp(1.0, std::numeric_limits<To>::digits);
    const double begin = std::is_signed_v<To> ? -end : 0.0;
    return number >= begin && number < end && std::trunc(number) == number;
  } else {
    // NOLINTNEXTLINE(bugprone-signed-char-misuse): int8 is plain char
    const To converted = static_cast<To>(number);
    return static_cast<From>(converted) == number && (converted > To{0}) == (number > From{0});
  }
}

/// The number as a To. A decimal takes any, as near as it can.
/// \throws Json::BadCast "bad cast" if an integer type does not have exactly this number.
template <class To, class From>
To checked_number(From number) {
  if constexpr (!std::is_floating_point_v<To>) {
    if (!holds_number<To>(number)) throw Json::BadCast();
  }
  return static_cast<To>(number);
}

}  // namespace Vrel::detail
