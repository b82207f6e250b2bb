// Physical values and units: a number with an exponent for each base dimension. docs/units.md has the
// units that texts may name, the rules of such texts and those of writing them.
#pragma once

#include <vrelio/export.h>
#include <vrelio/si/fraction.h>

#include <array>
#include <cstddef>
#include <string>

namespace si {

/// Number of base dimensions.
constexpr std::size_t dimension_count = 9;

/// An exponent for each base dimension, in this order: metre, kilogram, second, ampere, kelvin, mole,
/// candela, radian, steradian.
using exponent_list = std::array<fraction, dimension_count>;

/// What the functions `value::format` may do, to be combined by `|`.
enum format_flag : int {
  format_plain = 0,                ///< number and unit follow one another, without prefix
  format_separate = 1,             ///< a blank before the unit; "1" where a unit has no numerator
  format_prefix = 2,               ///< an SI prefix where the unit takes one
  format_prefix_dimensionless = 4  ///< with `format_prefix`: also where there is no unit
};

/// A physical value: a magnitude in base units and the exponents of the nine base dimensions.
///
/// A unit is a value: one nanometre is the magnitude 1e-9 with a metre exponent of 1. Radian and
/// steradian count as dimensions, so an angle is not dimensionless.
///
/// Nothing here raises: what cannot be done leaves an invalid value, without dimensions and with the
/// magnitude 1.0, to be asked for by `is_valid()`. A plain value without shared state.
///
/// ```cpp
/// si::value length(std::string("10 nm"));
/// double angstroms = length.in("angstrom");  // 100
/// ```
class VRELIO_EXPORT value {
 public:
  /// 1.0 without dimensions.
  value();
  /// A number without dimensions.
  // NOLINTNEXTLINE(google-explicit-constructor): a number is a value
  value(double magnitude);
  /// The value that a text such as `10 nm` or `kg*m/s^2` names; invalid where it names none.
  /// The micro sign is the one byte 0xB5 (ISO 8859-1); `u` is read as well.
  // NOLINTNEXTLINE(google-explicit-constructor): a text names a value
  value(const std::string& text);
  /// A valid value of this magnitude in base units and these exponents, as they are.
  value(double magnitude, const exponent_list& exponents);
  /// A copy of all that `other` holds, valid or not.
  value(const value& other);
  virtual ~value();

  /// Take over all that `other` holds, valid or not.
  value& operator=(const value& other);
  /// Become a valid number without dimensions.
  value& operator=(double magnitude);
  /// Become the value that a text names; see the constructor.
  value& operator=(const std::string& text);

  /// Become 1.0 without dimensions, and valid.
  void clear();
  /// Become the value that `text` names, times `factor`.
  /// \return whether the value is valid.
  bool set_value(const std::string& text, double factor);

  /// False for what came of an impossible operation or of a text that names no value.
  bool is_valid() const { return valid_; }
  /// Whether the value is valid and all exponents are 0/1.
  bool is_dimensionless() const;
  /// Whether both values are valid and have the same exponents.
  bool is_compatible(const value& other) const;
  /// The magnitude in base units, whatever the exponents are, also of an invalid value.
  double value_in_baseunits() const { return value_; }
  /// The exponents of the base dimensions.
  const exponent_list& exponents() const { return exponents_; }
  /// The magnitude if the value is dimensionless, else a quiet not-a-number.
  // NOLINTNEXTLINE(google-explicit-constructor): a dimensionless value is a number
  operator double() const;
  /// How many of the unit `text` the value holds; not-a-number if the dimensions differ or the text names
  /// no unit.
  double in(const std::string& text) const;

  /// Whether both are valid, have the same exponents, and their magnitudes differ by less than 1e-9 of
  /// either; 0 equals only 0. An invalid value equals nothing, not even itself.
  bool operator==(const value& other) const;
  /// The opposite of `==`.
  bool operator!=(const value& other) const { return !(*this == other); }

  /// Multiply magnitudes and add exponents. An invalid right side makes the result invalid; an invalid
  /// left side stays invalid.
  value& operator*=(const value& other);
  /// Divide magnitudes and subtract exponents, as `*=` does. Dividing by 0 gives infinity or
  /// not-a-number.
  value& operator/=(const value& other);
  /// Add a compatible value; any other makes the result invalid.
  value& operator+=(const value& other);
  /// Subtract a compatible value; any other makes the result invalid.
  value& operator-=(const value& other);
  /// Multiply the magnitude.
  value& operator*=(double factor);
  /// Divide the magnitude.
  value& operator/=(double divisor);
  /// Raise to a power: multiplies every exponent and raises the magnitude.
  value& operator^=(const fraction& power);

  // Intended: the forms that give a new value are not const; ValueTest.ANewValueComesFromAVariableOnly.
  /// A copy that was treated by `*=`.
  value operator*(const value& other);
  /// A copy that was treated by `/=`.
  value operator/(const value& other);
  /// A copy that was treated by `+=`.
  value operator+(const value& other);
  /// A copy that was treated by `-=`.
  value operator-(const value& other);
  /// A copy that was treated by `*=`.
  value operator*(double factor);
  /// A copy that was treated by `/=`.
  value operator/(double divisor);
  /// A copy that was treated by `^=`.
  value operator^(const fraction& power);

  /// Number and unit in one text, with a blank between them if `flags` has `format_separate`.
  /// The micro sign is written as the one byte 0xB5. See the other form.
  std::string format(int digits, int flags) const;
  /// Write the number with about `digits` significant digits, and the unit that it counts.
  ///
  /// The unit is the first of the table that has the exponents, with an SI prefix if `flags` (of
  /// `format_flag`) allow it, else a product of base units. A decimal point is a point in every locale.
  void format(std::string& number, std::string& unit, int digits, int flags) const;

 private:
  void invalidate();
  bool has_exponents_of(const value& other) const;

  bool valid_ = true;
  exponent_list exponents_;
  double value_ = 1.0;
};

}  // namespace si
