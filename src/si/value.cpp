#include <vrelio/si/value.h>

#include <cmath>
#include <limits>

namespace si {
namespace {

bool are_close(double left, double right) {
  constexpr double tolerance = 1e-9;
  if (left == 0.0) return right == 0.0;
  if (right == 0.0) return false;
  const double difference = std::abs(left - right);
  return difference / std::abs(left) < tolerance && difference / std::abs(right) < tolerance;
}

}  // namespace

value::value() = default;
value::value(double magnitude) : value_(magnitude) {}
value::value(double magnitude, const exponent_list& exponents)
    : exponents_(exponents), value_(magnitude) {}
value::value(const value& other) = default;
value::~value() = default;

value& value::operator=(const value& other) = default;

value& value::operator=(double magnitude) {
  clear();
  value_ = magnitude;
  return *this;
}

void value::clear() {
  valid_ = true;
  exponents_ = {};
  value_ = 1.0;
}

void value::invalidate() {
  clear();
  valid_ = false;
}

bool value::has_exponents_of(const value& other) const { return exponents_ == other.exponents_; }

bool value::is_dimensionless() const { return valid_ && exponents_ == exponent_list{}; }

bool value::is_compatible(const value& other) const {
  return valid_ && other.valid_ && has_exponents_of(other);
}

value::operator double() const {
  return is_dimensionless() ? value_ : std::numeric_limits<double>::quiet_NaN();
}

bool value::operator==(const value& other) const {
  return is_compatible(other) && are_close(value_, other.value_);
}

// Intended: an invalid left side goes on with its numbers, in `*=`, `/=` and `^=`;
// ValueTest.AnInvalidLeftSideStaysInvalidAndGoesOn.
value& value::operator*=(const value& other) {
  if (!other.valid_) {
    invalidate();
    return *this;
  }
  for (std::size_t i = 0; i < dimension_count; ++i) exponents_[i] += other.exponents_[i];
  value_ *= other.value_;
  return *this;
}

value& value::operator/=(const value& other) {
  if (!other.valid_) {
    invalidate();
    return *this;
  }
  for (std::size_t i = 0; i < dimension_count; ++i) exponents_[i] -= other.exponents_[i];
  value_ /= other.value_;
  return *this;
}

value& value::operator+=(const value& other) {
  if (is_compatible(other)) {
    value_ += other.value_;
  } else {
    invalidate();
  }
  return *this;
}

value& value::operator-=(const value& other) {
  if (is_compatible(other)) {
    value_ -= other.value_;
  } else {
    invalidate();
  }
  return *this;
}

value& value::operator*=(double factor) {
  value_ *= factor;
  return *this;
}

value& value::operator/=(double divisor) {
  value_ /= divisor;
  return *this;
}

value& value::operator^=(const fraction& power) {
  for (fraction& exponent : exponents_) exponent *= power;
  value_ = std::pow(value_, static_cast<double>(power.num) / power.den);
  return *this;
}

value value::operator*(const value& other) { return value(*this) *= other; }
value value::operator/(const value& other) { return value(*this) /= other; }
value value::operator+(const value& other) { return value(*this) += other; }
value value::operator-(const value& other) { return value(*this) -= other; }
value value::operator*(double factor) { return value(*this) *= factor; }
value value::operator/(double divisor) { return value(*this) /= divisor; }
value value::operator^(const fraction& power) { return value(*this) ^= power; }

}  // namespace si
