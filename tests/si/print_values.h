// Lets failures show fractions and values.
#pragma once

#include <vrelio/si/fraction.h>
#include <vrelio/si/value.h>

#include <iomanip>
#include <ostream>

namespace si {

inline void PrintTo(const fraction& printed, std::ostream* stream) {
  *stream << printed.num << '/' << printed.den;
}

inline void PrintTo(const value& printed, std::ostream* stream) {
  *stream << (printed.is_valid() ? "" : "invalid ") << std::setprecision(17)
          << printed.value_in_baseunits();
  for (const fraction& exponent : printed.exponents()) {
    *stream << ' ';
    PrintTo(exponent, stream);
  }
}

}  // namespace si
