// An exact rational number, for the exponents of physical units. docs/units.md tells its rules.
#pragma once

#include <vrelio/export.h>

#include <string>

namespace si {

/// A numerator over a denominator, a plain copyable value.
///
/// The fields have 32 bits, and arithmetic on them wraps around as that of unsigned numbers does;
/// nothing reports an overflow. Every operation reduces its result.
///
/// Intended: the sign stays where the reduction leaves it, so that -1/2 becomes 1/-2 while -5/3 stays
/// as it is; FractionTest.TheSignStaysWhereReducingLeavesIt.
struct VRELIO_EXPORT fraction {
  int num = 0;  ///< numerator
  int den = 1;  ///< denominator; may be negative, and is 0 only where a caller made it so

  /// 0/1.
  fraction() = default;
  /// The whole number `numerator`.
  // NOLINTNEXTLINE(google-explicit-constructor): a whole number is a fraction
  fraction(int numerator) : num(numerator) {}
  /// `numerator` over `denominator`, reduced. A denominator of 0 gives 1/0, or 0/1 below a numerator of 0.
  fraction(int numerator, int denominator);

  /// Multiply by `other` and reduce.
  fraction& operator*=(const fraction& other);
  /// Divide by `other` and reduce.
  fraction& operator/=(const fraction& other);
  /// Add `other` and reduce.
  fraction& operator+=(const fraction& other);
  /// Subtract `other` and reduce.
  fraction& operator-=(const fraction& other);

  /// Whether both fields are equal. Two fractions of equal worth are equal once both are reduced.
  bool operator==(const fraction& other) const { return num == other.num && den == other.den; }
  /// Whether a field differs.
  bool operator!=(const fraction& other) const { return !(*this == other); }

  /// Divide both fields by the divisor that Euclid's loop on the signed fields ends with, which may be
  /// negative. A numerator of 0 sets the denominator to 1.
  void reduce();

  /// Read a text such as `3`, `-3`, `1/2`, `-1/2` or `(1/2)` and take it over without reducing it.
  /// A run of digits may be empty and then stands for 0; the denominator bears no sign.
  ///
  /// \return false if the text has another form; the numerator may have changed by then.
  bool parse(const std::string& text);
};

}  // namespace si
