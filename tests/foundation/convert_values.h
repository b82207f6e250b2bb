// Values at which conversions change their ways, for every real type.
#pragma once

#include <cmath>
#include <iterator>
#include <limits>
#include <random>
#include <tuple>
#include <type_traits>
#include <vector>

namespace Vrel::testing {

using RealTypes = std::tuple<unsigned char, char, unsigned short, short, unsigned int, int, float,
                             double, unsigned long long, long long>;

constexpr int real_ids[] = {1, 2, 4, 8, 16, 32, 64, 128, 4096, 8192};
constexpr int complex_flag = 0x40000000;

// Calls visit(T()) for the type T of a real id.
template <std::size_t Row = 0, class Visit>
void visit_real_type(int id, Visit visit) {
  if constexpr (Row < std::size(real_ids)) {
    if (real_ids[Row] != id) return visit_real_type<Row + 1>(id, visit);
    visit(std::tuple_element_t<Row, RealTypes>());
  }
}

template <class T>
void add_integers(std::vector<T>& values) {
  for (unsigned bit = 0; bit < 8 * sizeof(T); ++bit)
    for (const long long step : {-1, 0, 1}) {
      const unsigned long long value = (1ull << bit) + static_cast<unsigned long long>(step);
      values.push_back(static_cast<T>(value));
      values.push_back(static_cast<T>(0 - value));
    }
}

template <class T>
void add_reals(std::vector<T>& values) {
  using Limits = std::numeric_limits<T>;
  std::vector<T> positive = {0,
                             Limits::denorm_min(),
                             Limits::min(),
                             T(0.5),
                             T(0.999),
                             T(1.5),
                             T(2.5),
                             T(100.75),
                             Limits::max(),
                             Limits::infinity(),
                             Limits::quiet_NaN()};
  for (const int exponent : {0, 7, 8, 15, 16, 24, 31, 32, 33, 40, 53, 62, 63, 64, 65, 100, 127})
    for (const T offset : {T(-1), T(-0.5), T(0), T(0.5), T(1), T(1000)}) {
      const T value = std::ldexp(T(1), exponent) + offset;
      positive.push_back(value);
      positive.push_back(std::nextafter(value, T(0)));
      positive.push_back(std::nextafter(value, Limits::infinity()));
    }
  for (const T value : positive) {
    values.push_back(value);
    values.push_back(-value);
  }
}

template <class T>
T random_value(std::mt19937_64& random) {
  if constexpr (std::is_integral_v<T>) {
    return static_cast<T>(random());
  } else {
    const T digits = static_cast<T>(static_cast<long long>(random()));
    return std::ldexp(digits, -static_cast<int>(random() % 80));
  }
}

// `count` values, at least all those of interest; the same for the same seed.
template <class T>
std::vector<T> values_of_interest(std::size_t count, unsigned seed) {
  std::vector<T> values;
  if constexpr (std::is_integral_v<T>)
    add_integers(values);
  else
    add_reals(values);
  std::mt19937_64 random(seed);
  while (values.size() < count) values.push_back(random_value<T>(random));
  return values;
}

}  // namespace Vrel::testing
