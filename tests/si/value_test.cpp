#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>
#include <vrelio/si/value.h>

#include <climits>
#include <cmath>
#include <limits>
#include <memory>
#include <string>
#include <type_traits>

#include "si/print_values.h"

namespace {

using si::fraction;
using si::value;

constexpr double infinity = std::numeric_limits<double>::infinity();

value of(const char* text) { return value(std::string(text)); }

value metres(double magnitude) { return value(magnitude, {1}); }

value invalid_value() { return of("?"); }

void expect_invalid(const value& seen) {
  EXPECT_FALSE(seen.is_valid());
  EXPECT_EQ(seen.value_in_baseunits(), 1.0);
  EXPECT_EQ(seen.exponents(), si::exponent_list{});
}

TEST(ValueTest, StartsAsOneWithoutDimensions) {
  const value plain;
  EXPECT_TRUE(plain.is_valid());
  EXPECT_TRUE(plain.is_dimensionless());
  EXPECT_EQ(plain.value_in_baseunits(), 1.0);
}

TEST(ValueTest, ANumberHasNoDimensions) {
  const value number = 2.5;
  EXPECT_TRUE(number.is_dimensionless());
  EXPECT_EQ(static_cast<double>(number), 2.5);
}

TEST(ValueTest, MagnitudeAndExponentsAreTakenAsTheyAre) {
  fraction unreduced;
  unreduced.num = 2;
  unreduced.den = 4;
  const value made(7.0, {1, unreduced});
  EXPECT_TRUE(made.is_valid());
  EXPECT_EQ(made.value_in_baseunits(), 7.0);
  EXPECT_EQ(made.exponents()[0], fraction(1));
  EXPECT_EQ(made.exponents()[1], unreduced);
}

TEST(ValueTest, ACopyHasAllFields) {
  value copy;
  copy = invalid_value();
  EXPECT_FALSE(copy.is_valid());
  copy = of("3 kg");
  EXPECT_EQ(copy, of("3 kg"));
  EXPECT_EQ(value(invalid_value()).is_valid(), false);
}

TEST(ValueTest, ANumberThatIsAssignedForgetsExponentsAndFault) {
  value assigned = of("3 kg");
  assigned = 4.0;
  EXPECT_EQ(static_cast<double>(assigned), 4.0);
  assigned = invalid_value();
  assigned = 5.0;
  EXPECT_EQ(static_cast<double>(assigned), 5.0);
}

TEST(ValueTest, ATextThatIsAssignedForgetsWhatWasThere) {
  value assigned = invalid_value();
  assigned = std::string("2 s");
  EXPECT_EQ(assigned, value(2.0, {0, 0, 1}));
  assigned = std::string("?");
  expect_invalid(assigned);
}

TEST(ValueTest, ClearingGivesOneWithoutDimensions) {
  value cleared = invalid_value();
  cleared *= of("4 m");
  cleared.clear();
  EXPECT_TRUE(cleared.is_dimensionless());
  EXPECT_EQ(cleared.value_in_baseunits(), 1.0);
}

TEST(ValueTest, ANumberWithDimensionsIsNone) {
  EXPECT_TRUE(std::isnan(static_cast<double>(of("rad"))));
  EXPECT_TRUE(std::isnan(static_cast<double>(of("sr"))));
  EXPECT_FALSE(of("rad").is_dimensionless());
}

TEST(ValueTest, AnInvalidValueIsNoNumber) {
  EXPECT_TRUE(std::isnan(static_cast<double>(invalid_value())));
  EXPECT_FALSE(invalid_value().is_dimensionless());
}

TEST(ValueTest, CompatibleMeansTheSameExponentsAndValid) {
  EXPECT_TRUE(of("3 m").is_compatible(of("angstrom")));
  EXPECT_FALSE(of("3 m").is_compatible(of("3 s")));
  EXPECT_FALSE(of("rad").is_compatible(1.0));
  EXPECT_FALSE(invalid_value().is_compatible(1.0));
  EXPECT_FALSE(value(1.0).is_compatible(invalid_value()));
}

TEST(ValueTest, ProductsAddExponents) {
  EXPECT_EQ(of("2 N") * of("3 m"), of("6 J"));
  EXPECT_EQ(of("2 m") * 4.0, of("8 m"));
}

TEST(ValueTest, QuotientsSubtractExponents) {
  EXPECT_EQ(of("6 J") / of("3 m"), of("2 N"));
  EXPECT_EQ(of("2 m") / 4.0, of("0.5 m"));
}

TEST(ValueTest, SumsAndDifferencesNeedTheSameExponents) {
  EXPECT_EQ(of("2 m") + of("30 cm"), of("2.3 m"));
  EXPECT_EQ(of("2 m") - of("30 cm"), of("1.7 m"));
  expect_invalid(value(2.0) + value(std::string("1m")));
  expect_invalid(of("2 m") - of("2 s"));
}

TEST(ValueTest, PowersMultiplyExponents) {
  value root = of("4m") ^ fraction(1, 2);
  EXPECT_EQ(root.value_in_baseunits(), 2.0);
  EXPECT_EQ(root.exponents()[0], fraction(1, 2));
  EXPECT_EQ(root ^ fraction(4), of("16*m^2"));
  EXPECT_EQ(of("2 s") ^ fraction(-1), of("0.5 Hz"));
}

TEST(ValueTest, APowerIsAQuotientOfDoubles) {
  EXPECT_EQ(of("2") ^ fraction(INT_MIN), value(0.0));
  EXPECT_EQ((of("2") ^ fraction(1, 0)).value_in_baseunits(), infinity);
  EXPECT_TRUE(std::isnan((of("-4") ^ fraction(1, 2)).value_in_baseunits()));
}

TEST(ValueTest, AnInvalidRightSideClearsTheLeftOne) {
  value left = of("3 m");
  expect_invalid(left *= invalid_value());
  left = of("3 m");
  expect_invalid(left /= invalid_value());
  left = of("3 m");
  expect_invalid(left += invalid_value());
  left = of("3 m");
  expect_invalid(left -= invalid_value());
}

TEST(ValueTest, AnInvalidLeftSideStaysInvalidAndGoesOn) {
  value left = invalid_value();
  left *= of("3 m");
  EXPECT_FALSE(left.is_valid());
  EXPECT_EQ(left.value_in_baseunits(), 3.0);
  EXPECT_EQ(left.exponents()[0], fraction(1));
  left ^= fraction(2);
  EXPECT_FALSE(left.is_valid());
  EXPECT_EQ(left.value_in_baseunits(), 9.0);
  EXPECT_EQ(left.exponents()[0], fraction(2));
  left /= of("m");
  left *= 2.0;
  left /= 6.0;
  EXPECT_FALSE(left.is_valid());
  EXPECT_EQ(left.value_in_baseunits(), 3.0);
  EXPECT_EQ(left.exponents()[0], fraction(1));
  expect_invalid(left + of("m"));
  expect_invalid(left - of("m"));
}

TEST(ValueTest, AValueCanBeTreatedByItself) {
  value treated = of("3 m");
  EXPECT_EQ(treated *= treated, of("9*m^2"));
  EXPECT_EQ(treated += treated, of("18*m^2"));
  EXPECT_EQ(treated -= treated, of("0*m^2"));
  treated = of("3 m");
  EXPECT_EQ(treated /= treated, value(1.0));
}

TEST(ValueTest, DividingByZeroGivesInfinityOrNoNumber) {
  EXPECT_EQ((of("m") / value(0.0)).value_in_baseunits(), infinity);
  EXPECT_TRUE((of("m") / value(0.0)).is_valid());
  EXPECT_TRUE(std::isnan((of("0 m") / 0.0).value_in_baseunits()));
}

TEST(ValueTest, EqualityAllowsABillionth) {
  EXPECT_TRUE(value(1.0) == value(1.0 + 1e-10));
  EXPECT_FALSE(value(1.0) == value(1.0 + 2e-9));
  EXPECT_TRUE(metres(-1e-30) == metres(-1.0000000001e-30));
  EXPECT_FALSE(metres(1.0) == metres(-1.0));
}

// The difference is less than a billionth of the larger magnitude alone.
TEST(ValueTest, EqualityIsTheSameFromBothSides) {
  EXPECT_FALSE(value(19051.0) == value(19050.999980949));
  EXPECT_FALSE(value(19050.999980949) == value(19051.0));
}

TEST(ValueTest, OnlyZeroEqualsZero) {
  EXPECT_FALSE(value(0.0) == value(1e-300));
  EXPECT_FALSE(value(1e-300) == value(0.0));
  EXPECT_TRUE(value(0.0) == value(-0.0));
  EXPECT_FALSE(value(0.0) == metres(0.0));
}

TEST(ValueTest, WhatIsNotFiniteEqualsNothing) {
  EXPECT_FALSE(value(infinity) == value(infinity));
  EXPECT_TRUE(value(infinity) != value(infinity));
  EXPECT_FALSE(value(infinity) == value(1.0));
}

TEST(ValueTest, AnInvalidValueEqualsNothing) {
  const value invalid = invalid_value();
  EXPECT_FALSE(invalid == invalid);
  EXPECT_TRUE(invalid != invalid);
  EXPECT_FALSE(invalid == value());
  EXPECT_FALSE(value() == invalid);
}

TEST(ValueTest, ExponentsAreComparedFieldByField) {
  fraction unreduced;
  unreduced.num = 2;
  unreduced.den = 2;
  EXPECT_FALSE(value(1.0, {1}) == value(1.0, {unreduced}));
}

TEST(ValueTest, HowManyOfAUnitAValueHolds) {
  EXPECT_NEAR(of("10 nm").in("angstrom"), 100.0, 1e-9);
  EXPECT_TRUE(std::isnan(of("10 nm").in("s")));
  EXPECT_TRUE(std::isnan(of("10 nm").in("?")));
  EXPECT_TRUE(std::isnan(invalid_value().in("1")));
}

TEST(ValueTest, AValueIsSetToSoManyOfAUnit) {
  value set;
  EXPECT_TRUE(set.set_value("nm", 10.0));
  EXPECT_EQ(set, of("10 nm"));
  EXPECT_FALSE(set.set_value("?", 10.0));
  EXPECT_FALSE(set.is_valid());
  EXPECT_EQ(set.value_in_baseunits(), 10.0);
}

TEST(ValueTest, ANewValueComesFromAVariableOnly) {
  value left = of("6 m");
  const value right = of("2 m");
  EXPECT_EQ(left * right, of("12*m^2"));
  EXPECT_EQ(left, of("6 m"));
  using product = value (value::*)(const value&);
  EXPECT_NE(static_cast<product>(&value::operator*), nullptr);
  EXPECT_NE(static_cast<product>(&value::operator-), nullptr);
}

TEST(ValueTest, HasOneVirtualOperationAndNoMoreFieldsThanNeeded) {
  EXPECT_TRUE(std::has_virtual_destructor_v<value>);
  EXPECT_EQ(sizeof(value), sizeof(void*) + 8 + 9 * 8 + sizeof(double));
}

struct Tracked : value {
  explicit Tracked(bool& set_when_gone) : is_gone(set_when_gone) {}
  ~Tracked() override { is_gone = true; }
  bool& is_gone;
};

TEST(ValueTest, ADerivedValueIsDestroyedAsWhatItIs) {
  bool is_gone = false;
  std::unique_ptr<value> held = std::make_unique<Tracked>(is_gone);
  held = std::make_unique<value>();
  EXPECT_TRUE(is_gone);
}

// A few small exponents, so that nothing wraps around.
rc::Gen<value> values() {
  return rc::gen::apply(
      [](int mantissa, int scale, const std::vector<int>& numerators, int denominator) {
        si::exponent_list exponents;
        for (std::size_t i = 0; i < exponents.size(); ++i) {
          exponents[i] = fraction(numerators[i], denominator);
        }
        return value(mantissa * std::pow(10.0, scale), exponents);
      },
      rc::gen::distinctFrom(rc::gen::inRange(-9999, 9999), 0), rc::gen::inRange(-30, 30),
      rc::gen::container<std::vector<int>>(9, rc::gen::inRange(-4, 5)), rc::gen::inRange(1, 4));
}

// The check takes an expression apart unless it stands in parentheses of its own.
RC_GTEST_PROP(ValuePropertyTest, ProductsCommute, ()) {
  value first = *values(), second = *values();
  RC_ASSERT((first * second == second * first));
}

RC_GTEST_PROP(ValuePropertyTest, ProductsAssociate, ()) {
  value first = *values(), second = *values(), third = *values();
  RC_ASSERT(((first * second) * third == first * (second * third)));
}

RC_GTEST_PROP(ValuePropertyTest, DividingUndoesMultiplying, ()) {
  value first = *values(), second = *values();
  RC_ASSERT(((first * second) / second == first));
  RC_ASSERT(((first / second) * second == first));
}

RC_GTEST_PROP(ValuePropertyTest, SubtractingUndoesAdding, ()) {
  value first = *values(), second = first * 0.25;
  RC_ASSERT(((first + second) - second == first));
}

RC_GTEST_PROP(ValuePropertyTest, APowerOfAPowerIsThePowerOfTheProduct, ()) {
  value base = *values();
  const int outer = *rc::gen::inRange(1, 4);
  if (base.value_in_baseunits() < 0) base *= -1.0;
  RC_ASSERT((((base ^ fraction(1, outer)) ^ fraction(outer)) == base));
  RC_ASSERT(((base ^ fraction(2)) == base * base));
}

RC_GTEST_PROP(ValuePropertyTest, AnyExponentsAreComputedWith, (std::array<int, 4> fields)) {
  fraction first, second;
  first.num = fields[0];
  first.den = fields[1];
  second.num = fields[2];
  second.den = fields[3];
  value left(2.0, {first}), right(3.0, {second});
  RC_ASSERT(((left * right).value_in_baseunits() == 6.0));
  RC_ASSERT(((left * right).exponents() == (right * left).exponents()));
}

}  // namespace
