// How a single real value is converted: the rules behind every conversion of elements.
//
// Everything here has internal linkage and calls no function of the standard library, since loops that
// are compiled for one kind of processor take it in.
#pragma once

#include <type_traits>

namespace Vrel::detail {
namespace {

// The first power of two above the values of a signed `Integer`.
template <class Real, class Integer>
constexpr Real signed_limit = static_cast<Real>(std::make_unsigned_t<Integer>{1}
                                                << (8 * sizeof(Integer) - 1));

// The value toward zero, or `otherwise` where it does not fit. The lowest value of `Integer` counts
// as not fitting, and each `otherwise` below leaves the bits that it would leave. With no branch
// and no cast out of range, so that a vector loop is possible and gives the results of the loop
// for the rest.
template <class Integer, class Real>
Integer truncate(Real value, Real otherwise) {
  constexpr Real limit = signed_limit<Real, Integer>;
  const bool fits = (-limit < value) & (value < limit);
  return static_cast<Integer>(fits ? value : otherwise);
}

template <class To, class From>
To truncate_to(From value) {
  if constexpr (sizeof(To) < sizeof(int)) {
    return static_cast<To>(truncate<int>(value, From{0}));
  } else if constexpr (std::is_same_v<To, unsigned int>) {
    return static_cast<To>(truncate<long long>(value, From{0}));
  } else if constexpr (std::is_signed_v<To>) {
    return truncate<To>(value, -signed_limit<From, To>);
  } else {
    constexpr From limit = signed_limit<From, long long>;
    constexpr To highest_bit = To{1} << (8 * sizeof(To) - 1);
    const bool is_upper_half = (limit <= value) & (value < 2 * limit);
    const long long lower = truncate<long long>(is_upper_half ? value - limit : value, -limit);
    return static_cast<To>(lower) ^ (is_upper_half ? highest_bit : To{0});
  }
}

template <class To, class From>
To convert_value(From value) {
  if constexpr (std::is_floating_point_v<From> && std::is_integral_v<To>) {
    return truncate_to<To>(value);
  } else {
    return static_cast<To>(value);
  }
}

}  // namespace
}  // namespace Vrel::detail
