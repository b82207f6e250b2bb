#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>
#include <vrelio/si/value.h>

#include <climits>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "si/comma_locale.h"
#include "si/print_values.h"

namespace {

using si::format_plain;
using si::format_prefix;
using si::format_prefix_dimensionless;
using si::format_separate;
using si::fraction;
using si::value;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr int all_flags = format_separate | format_prefix | format_prefix_dimensionless;

struct Written {
  std::string number;
  std::string unit;
};

bool operator==(const Written& left, const Written& right) {
  return left.number == right.number && left.unit == right.unit;
}

void PrintTo(const Written& printed, std::ostream* stream) {
  *stream << '"' << printed.number << "\", \"" << printed.unit << '"';
}

Written written(const value& shown, int digits, int flags) {
  Written result;
  shown.format(result.number, result.unit, digits, flags);
  return result;
}

value of(const char* text) { return value(std::string(text)); }

// Through the unit alone, since a number in front of a power is raised with it.
value read_back(const Written& text) {
  value read;
  read.set_value(text.unit, value(text.number).value_in_baseunits());
  return read;
}

fraction raw(int num, int den) {
  fraction stored;
  stored.num = num;
  stored.den = den;
  return stored;
}

std::string unit_of(const si::exponent_list& exponents, int flags = format_plain) {
  return written(value(1.0, exponents), 3, flags).unit;
}

TEST(ValueFormatTest, ALengthTakesThePrefixThatFits) {
  EXPECT_EQ(written(value(5e-9, {1}), 1, format_prefix), (Written{"5", "nm"}));
  EXPECT_EQ(written(of("1 um"), 3, format_prefix), (Written{"1", "\xB5m"}));
  EXPECT_EQ(written(of("1500 m"), 3, format_prefix), (Written{"1.50", "km"}));
  EXPECT_EQ(written(of("0.02 m"), 3, format_prefix), (Written{"20.0", "mm"}));
}

TEST(ValueFormatTest, WithoutTheFlagThereIsNoPrefix) {
  EXPECT_EQ(written(value(5e-9, {1}), 1, format_plain), (Written{"5e-9", "m"}));
}

TEST(ValueFormatTest, NumberAndUnitStandTogetherOrApart) {
  const value length(5e-9, {1});
  EXPECT_EQ(length.format(1, format_prefix), "5nm");
  EXPECT_EQ(length.format(1, format_prefix | format_separate), "5 nm");
  EXPECT_EQ(value(2.5).format(2, format_plain), "2.5");
  EXPECT_EQ(value(2.5).format(2, format_separate), "2.5 ");
}

TEST(ValueFormatTest, ZeroHasThreeDecimalsAndNoPrefix) {
  EXPECT_EQ(written(value(0.0, {1}), 7, all_flags), (Written{"0.000", "m"}));
  EXPECT_EQ(written(value(-0.0, {1}), 7, all_flags), (Written{"0.000", "m"}));
  EXPECT_EQ(written(value(0.0, {0, 1}), 7, all_flags), (Written{"0.000", "g"}));
  EXPECT_EQ(written(value(0.0, {0, 1, 3}), 7, all_flags), (Written{"0.000", "kg*s^3"}));
}

TEST(ValueFormatTest, AMassIsWrittenInGramsOrTonnes) {
  EXPECT_EQ(written(of("2 kg"), 1, format_plain), (Written{"2e3", "g"}));
  EXPECT_EQ(written(of("2 kg"), 1, format_prefix), (Written{"2", "kg"}));
  EXPECT_EQ(written(of("2 kg"), 3, format_prefix), (Written{"2.00", "kg"}));
  EXPECT_EQ(written(of("1000 kg"), 3, format_plain), (Written{"1.00e6", "g"}));
  EXPECT_EQ(written(of("1001 kg"), 4, format_plain), (Written{"1.001", "t"}));
  EXPECT_EQ(written(of("2e6 kg"), 3, format_prefix), (Written{"2.00", "kt"}));
  EXPECT_EQ(written(of("-5e6 kg"), 3, format_plain), (Written{"-5.00e9", "g"}));
}

TEST(ValueFormatTest, TheFirstUnitOfTheTableIsTaken) {
  EXPECT_EQ(written(of("3 Bq"), 1, format_plain), (Written{"3", "Hz"}));
  EXPECT_EQ(written(of("180 deg"), 4, format_plain), (Written{"3.142", "rad"}));
  EXPECT_EQ(written(of("2 bar"), 1, format_prefix), (Written{"200", "kPa"}));
  EXPECT_EQ(written(value(2e-28, {2}), 1, format_prefix), (Written{"2", "barn"}));
}

TEST(ValueFormatTest, APrefixStaysWithinTheLimitsOfItsUnit) {
  EXPECT_EQ(written(of("20 Mm"), 3, format_prefix), (Written{"2.00e7", "m"}));
  EXPECT_EQ(written(of("500000 m"), 3, format_prefix), (Written{"500", "km"}));
  EXPECT_EQ(written(of("5000 s"), 3, format_prefix), (Written{"5.00e3", "s"}));
  EXPECT_EQ(written(of("5 ms"), 3, format_prefix), (Written{"5.00", "ms"}));
  EXPECT_EQ(written(value(5e-5, {0, 0, 0, 0, 0, 0, 0, 1}), 3, format_prefix),
            (Written{"0.0500", "mrad"}));
  EXPECT_EQ(written(value(5e-6, {0, 0, 0, 0, 0, 0, 0, 1}), 3, format_prefix),
            (Written{"5.00e-6", "rad"}));
  EXPECT_EQ(written(value(5e-3, {0, 0, 0, 0, 0, 0, 0, 0, 1}), 3, format_prefix),
            (Written{"5.00e-3", "sr"}));
  EXPECT_EQ(written(value(5e-26, {1}), 3, format_prefix), (Written{"0.0500", "ym"}));
}

TEST(ValueFormatTest, APrefixIsWrittenWhereTheNumberStaysFromAHundredthToAThousand) {
  EXPECT_EQ(written(of("1000 km"), 4, format_prefix), (Written{"1000", "km"}));
  EXPECT_EQ(written(of("1001 km"), 4, format_prefix), (Written{"1.001e6", "m"}));
  EXPECT_EQ(written(of("1e-5 rad"), 3, format_prefix), (Written{"0.0100", "mrad"}));
  EXPECT_EQ(written(of("0.99e-5 rad"), 3, format_prefix), (Written{"9.90e-6", "rad"}));
}

TEST(ValueFormatTest, EveryPrefixIsWritten) {
  constexpr const char* units[] = {"yA",
                                   "zA",
                                   "aA",
                                   "fA",
                                   "pA",
                                   "nA",
                                   "\xB5"
                                   "A",
                                   "mA",
                                   "A",
                                   "kA",
                                   "MA",
                                   "GA",
                                   "TA",
                                   "PA",
                                   "EA",
                                   "ZA",
                                   "YA"};
  int exponent = -24;
  for (const char* const unit : units) {
    const value current(3.5 * std::pow(10.0, exponent), {0, 0, 0, 1});
    EXPECT_EQ(written(current, 2, format_prefix), (Written{"3.5", unit}));
    exponent += 3;
  }
}

TEST(ValueFormatTest, TenthsTakeAPrefixOnlyInFrontOfAUnitThatFollowsAtOnce) {
  EXPECT_EQ(written(of("0.5 m"), 1, format_prefix), (Written{"500", "mm"}));
  EXPECT_EQ(written(of("0.5 m"), 1, format_prefix | format_separate), (Written{"0.5", "m"}));
  EXPECT_EQ(written(of("0.05 m"), 1, format_prefix | format_separate), (Written{"50", "mm"}));
}

TEST(ValueFormatTest, ANumberWithoutUnitTakesAPrefixOnlyByAFlagOfItsOwn) {
  EXPECT_EQ(written(value(5000.0), 1, format_prefix), (Written{"5e3", ""}));
  EXPECT_EQ(written(value(5000.0), 1, format_prefix_dimensionless), (Written{"5e3", ""}));
  EXPECT_EQ(written(value(5000.0), 1, format_prefix | format_prefix_dimensionless),
            (Written{"5", "k"}));
}

TEST(ValueFormatTest, UnitsThatTheTableLacksAreProductsOfBaseUnits) {
  EXPECT_EQ(unit_of({1, 1}), "m*kg");
  EXPECT_EQ(unit_of({2, 1, -1, -1}), "m^2*kg/s/A");
  EXPECT_EQ(unit_of({0, 0, 0, 3, -2, 1}), "A^3*mol/K^2");
  EXPECT_EQ(unit_of({0, 0, 0, 0, 0, 0, 1, -1, 2}), "cd*sr^2/rad");
  EXPECT_EQ(written(value(5e-9, {1, 1}), 1, all_flags), (Written{"5e-9", "m*kg"}));
}

TEST(ValueFormatTest, AMissingNumeratorIsOneByAFlag) {
  EXPECT_EQ(unit_of({-1}), "/m");
  EXPECT_EQ(unit_of({-1}, format_separate), "1/m");
  EXPECT_EQ(unit_of({-3, 0, 0, -2}, format_separate), "1/m^3/A^2");
  EXPECT_EQ(unit_of({}, format_separate), "");
}

TEST(ValueFormatTest, FractionsStandInParentheses) {
  EXPECT_EQ(unit_of({fraction(1, 2)}), "m^(1/2)");
  EXPECT_EQ(unit_of({fraction(3, 2), fraction(-5, 3)}), "m^(3/2)/kg^(5/3)");
}

TEST(ValueFormatTest, TheSignOfAnExponentIsThatOfItsWorth) {
  EXPECT_EQ(unit_of({raw(1, -2)}), "/m^(1/2)");
  EXPECT_EQ(unit_of({raw(-1, 2)}), "/m^(1/2)");
  EXPECT_EQ(unit_of({raw(-1, -2)}), "m^(1/2)");
  EXPECT_EQ(unit_of({raw(-2, -1)}), "m^2");
  EXPECT_EQ(unit_of({raw(2, -1)}), "/m^2");
}

TEST(ValueFormatTest, ExponentsAreWrittenWithoutReducing) {
  EXPECT_EQ(unit_of({raw(2, 4)}), "m^(2/4)");
  EXPECT_EQ(unit_of({raw(3, 3)}), "m^(3/3)");
  EXPECT_EQ(unit_of({raw(3, 0), raw(-3, 0)}), "m^(3/0)/kg^(3/0)");
  EXPECT_EQ(unit_of({raw(INT_MIN, 1)}), "/m^2147483648");
  EXPECT_EQ(unit_of({raw(INT_MIN, INT_MIN)}), "m^(2147483648/2147483648)");
}

TEST(ValueFormatTest, AnExponentWorthZeroIsLeftOut) {
  EXPECT_EQ(unit_of({raw(0, 5), 1}), "kg");
  EXPECT_EQ(unit_of({raw(0, 0)}), "");
}

TEST(ValueFormatTest, DigitsCountFromTheFirst) {
  EXPECT_EQ(value(3.14159).format(3, 0), "3.14");
  EXPECT_EQ(value(31.4159).format(3, 0), "31.4");
  EXPECT_EQ(value(314.159).format(3, 0), "314");
  EXPECT_EQ(value(0.0314159).format(3, 0), "0.0314");
  EXPECT_EQ(value(-31.4159).format(3, 0), "-31.4");
  EXPECT_EQ(value(314.159).format(1, 0), "314");
}

TEST(ValueFormatTest, WhatLiesJustBelowAPowerOfTenHasTheDigitsOfThatPower) {
  EXPECT_EQ(value(999.9).format(4, 0), "1000");
  EXPECT_EQ(value(999.7).format(4, 0), "999.7");
  EXPECT_EQ(value(9.999).format(3, 0), "10.0");
  EXPECT_EQ(value(9.997).format(3, 0), "10.00");
  EXPECT_EQ(of("999.9 m").format(4, format_prefix), "1.000km");
}

TEST(ValueFormatTest, LargeAndSmallNumbersHaveAnExponent) {
  EXPECT_EQ(value(1000.0).format(3, 0), "1000");
  EXPECT_EQ(value(1000.5).format(3, 0), "1.00e3");
  EXPECT_EQ(value(0.01).format(3, 0), "0.0100");
  EXPECT_EQ(value(0.00999).format(3, 0), "9.99e-3");
  EXPECT_EQ(value(-123456.0).format(3, 0), "-1.23e5");
}

TEST(ValueFormatTest, OneIsWrittenWithoutDecimals) {
  EXPECT_EQ(value(1.0).format(5, 0), "1");
  EXPECT_EQ(value(-1.0).format(3, 0), "-1.00");
  EXPECT_EQ(of("1 km").format(5, format_prefix), "1km");
}

TEST(ValueFormatTest, ValuesAtTheEndsOfADoubleAreWritten) {
  EXPECT_EQ(value(4.9e-324, {1}).format(3, 0), "4.94e-324m");
  EXPECT_EQ(value(1.7e308, {1}).format(3, 0), "1.70e308m");
  EXPECT_EQ(value(-2.2250738585072014e-308).format(5, 0), "-2.2251e-308");
  EXPECT_EQ(value(1e-305).format(3, 0), "1.00e-305");
  EXPECT_EQ(value(4.9e-324, {1}).format(3, format_prefix), "4.94e-324m");
}

TEST(ValueFormatTest, WhatIsNotFiniteIsNamed) {
  EXPECT_EQ(value(infinity, {1}).format(3, all_flags), "inf m");
  EXPECT_EQ(value(-infinity, {1}).format(3, all_flags), "-inf m");
  EXPECT_EQ(value(std::nan(""), {1}).format(3, all_flags), "nan m");
  EXPECT_EQ(value(std::copysign(std::nan(""), -1.0)).format(3, 0), "nan");
  EXPECT_EQ(value(infinity, {0, 1}).format(3, all_flags), "inf t");
  EXPECT_EQ(value(1e300, {2}).format(3, 0), "infbarn");
}

TEST(ValueFormatTest, AnyCountOfDigitsIsSafe) {
  EXPECT_EQ(value(123456.0).format(0, 0), "1.234560e5");
  EXPECT_EQ(value(123456.0).format(-1, 0), "1.234560e5");
  EXPECT_EQ(value(123456.0).format(INT_MIN, 0), "1.234560e5");
  EXPECT_EQ(value(2.5).format(INT_MIN, 0), "2");
  EXPECT_EQ(value(0.5).format(INT_MAX, 0), "0.5" + std::string(1099, '0'));
  EXPECT_EQ(value(-999.5).format(INT_MAX, 0), "-999.5" + std::string(1099, '0'));
  EXPECT_EQ(value(-2048.0).format(INT_MAX, 0).size(), std::string("-2.e3").size() + 1100);
}

TEST(ValueFormatTest, UnknownFlagsMeanNothing) {
  EXPECT_EQ(of("5 nm").format(1, ~all_flags), of("5 nm").format(1, format_plain));
  EXPECT_EQ(of("5 nm").format(1, -1), of("5 nm").format(1, all_flags));
}

TEST(ValueFormatTest, AnInvalidValueIsWrittenInBaseUnits) {
  value invalid = of("?");
  EXPECT_EQ(invalid.format(3, format_plain), "1");
  EXPECT_EQ(invalid.format(3, format_separate), "1 1");
  invalid *= of("2000 N");
  EXPECT_EQ(invalid.format(3, format_prefix), "2.00e3m*kg/s^2");
}

TEST(ValueFormatTest, NoLocaleChangesWhatIsWritten) {
  const si::testing::CommaLocale locale;
  EXPECT_EQ(of("1234.5 m").format(5, format_plain), "1.2345e3m");
  EXPECT_EQ(of("12.5 m").format(3, format_plain), "12.5m");
  EXPECT_EQ(unit_of({raw(INT_MIN, 1)}), "/m^2147483648");
}

double magnitude_of(int mantissa, int scale) { return mantissa * std::pow(10.0, scale); }

RC_GTEST_PROP(ValueFormatPropertyTest, WhatIsWrittenIsReadWithinItsDigits, ()) {
  const int digits = *rc::gen::inRange(1, 15);
  si::exponent_list exponents;
  for (fraction& exponent : exponents) {
    exponent = fraction(*rc::gen::inRange(-3, 4), *rc::gen::inRange(1, 4));
  }
  const value shown(magnitude_of(*rc::gen::inRange(1, 99999), *rc::gen::inRange(-40, 40)),
                    exponents);
  const value read = read_back(written(shown, digits, format_separate));
  RC_ASSERT(read.exponents() == shown.exponents());
  const double ratio = read.value_in_baseunits() / shown.value_in_baseunits();
  RC_ASSERT(std::abs(ratio - 1) <= 1.001 * std::pow(10.0, 1 - digits));
}

RC_GTEST_PROP(ValueFormatPropertyTest, LengthsAreReadAsOneText, ()) {
  const value shown(magnitude_of(*rc::gen::inRange(1, 99999), *rc::gen::inRange(-15, 10)), {1});
  const value read(shown.format(15, format_separate | format_prefix));
  RC_ASSERT((read == shown));
}

RC_GTEST_PROP(ValueFormatPropertyTest, TheTextOfAReadTextIsTheSame, ()) {
  const value shown(magnitude_of(*rc::gen::inRange(-9999, 9999), *rc::gen::inRange(-15, 10)), {1});
  const std::string text = shown.format(4, format_separate);
  RC_ASSERT(value(text).format(4, format_separate) == text);
}

RC_GTEST_PROP(ValueFormatPropertyTest, AnythingCanBeWritten,
              (double magnitude, int digits, int flags)) {
  si::exponent_list exponents;
  for (fraction& exponent : exponents)
    exponent = raw(*rc::gen::arbitrary<int>(), *rc::gen::arbitrary<int>());
  const Written text = written(value(magnitude, exponents), digits, flags);
  RC_ASSERT(!text.number.empty());
  RC_ASSERT(text.number.size() < 1200u);
}

}  // namespace
