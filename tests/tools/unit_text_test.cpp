#include "lib/unit_text.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>

namespace Vrel::tool {
namespace {

using nlohmann::json;

constexpr double infinity = std::numeric_limits<double>::infinity();

std::string normalised(const std::string& text) {
  const std::optional<si::value> read = read_value(text);
  return read ? to_text(to_quantity(*read)) : "none";
}

std::string converted(const std::string& text, const std::string& unit) {
  return to_text(to_quantity(read_value(text).value(), read_value(unit).value(), unit));
}

UnitRecord record(double factor, std::array<ExponentRecord, 9> exponents) {
  return {exponents, factor};
}

TEST(UnitTextTest, AValueIsToldInTheUnitThatFits) {
  EXPECT_EQ(normalised("10 nm"), "10 nm");
  EXPECT_EQ(normalised("0.01 um"), "10 nm");
  EXPECT_EQ(normalised("kg*m/s^2"), "1 N");
  EXPECT_EQ(normalised("1500 g"), "1.5 kg");
  EXPECT_EQ(normalised("5/m"), "5 1/m");
  EXPECT_EQ(normalised("-5 m"), "-5 m");
}

TEST(UnitTextTest, NumbersHaveNoZerosAtTheirEnd) {
  EXPECT_EQ(normalised("0 m"), "0 m");
  EXPECT_EQ(normalised("100"), "100");
  EXPECT_EQ(normalised("-1 s"), "-1 s");
  EXPECT_EQ(normalised("2.50"), "2.5");
  EXPECT_EQ(normalised("1e10 m"), "1e10 m");
  EXPECT_EQ(normalised("1.50e-40 m"), "1.5e-40 m");
  EXPECT_EQ(normalised("1000"), "1000");
}

TEST(UnitTextTest, NumbersHaveFifteenDigits) {
  EXPECT_EQ(normalised("1/3"), "0.333333333333333");
  EXPECT_EQ(normalised("123.456789012345678"), "123.456789012346");
}

TEST(UnitTextTest, WhatIsNotFiniteIsNamed) {
  EXPECT_EQ(normalised("1e999 m"), "inf m");
  EXPECT_EQ(normalised("-1e999"), "-inf");
  EXPECT_EQ(normalised("0/0"), "nan");
}

TEST(UnitTextTest, BothLettersForMicroAreReadAndTheSignIsWritten) {
  EXPECT_EQ(normalised("3 \xC2\xB5m"), "3 \xC2\xB5m");
  EXPECT_EQ(normalised("3 \xCE\xBCm"), "3 \xC2\xB5m");
  EXPECT_EQ(normalised("3 um"), "3 \xC2\xB5m");
}

TEST(UnitTextTest, OtherCharactersAndBrokenBytesNameNoUnit) {
  for (const char* const text :
       {"3 \xC3\xA4m", "k\xC3\xA4", "3 \xB5m", "k\xFF", "k\xC2", "3\xC2\xA0m"}) {
    EXPECT_EQ(normalised(text), "none");
  }
}

TEST(UnitTextTest, ATextThatNamesNoValueIsNone) {
  for (const char* const text : {"", "?", "3 am", "1e", "mkg"}) EXPECT_EQ(normalised(text), "none");
}

TEST(UnitTextTest, AValueIsToldInAnyUnitOfItsDimensions) {
  EXPECT_EQ(converted("10 nm", "\xC2\xB5m"), "0.01 \xC2\xB5m");
  EXPECT_EQ(converted("10 nm", "\xCE\xBCm"), "0.01 \xCE\xBCm");
  EXPECT_EQ(converted("10 nm", "angstrom"), "100 angstrom");
  EXPECT_EQ(converted("1 km/h", "m/s"), "0.277777777777778 m/s");
  EXPECT_EQ(converted("1/4", "1"), "0.25 1");
  EXPECT_EQ(converted("1 m", "nm"), "1e9 nm");
}

TEST(UnitTextTest, AUnitAsTypedCannotControlTheTerminal) {
  EXPECT_EQ(converted("1", "k\x1B[31m"), "1e-3 k\\x1B[31m");
}

TEST(UnitTextTest, JsonHasNumberUnitFactorAndExponents) {
  const si::value shown = read_value("10 nm/s^2").value();
  EXPECT_EQ(json::parse(to_json({"0.01", "\xC2\xB5m/s^2"}, shown)),
            json({{"number", 0.01},
                  {"unit", "\xC2\xB5m/s^2"},
                  {"factor", shown.value_in_baseunits()},
                  {"exponents",
                   json::parse("[[1,1],[0,1],[-2,1],[0,1],[0,1],[0,1],[0,1],[0,1],[0,1]]")}}));
}

TEST(UnitTextTest, NumbersThatJsonCannotHoldAreNull) {
  for (const char* const number : {"inf", "-inf", "nan", "1.79769313486232e308"}) {
    const json object = json::parse(to_json({number, ""}, infinity));
    EXPECT_TRUE(object["number"].is_null()) << number;
    EXPECT_TRUE(object["factor"].is_null()) << number;
  }
}

TEST(UnitTextTest, JsonIsOneLine) {
  const std::string text = to_json({"1", "k\nm"}, si::value(1.0));
  EXPECT_EQ(text.find('\n'), text.size() - 1);
}

TEST(UnitTextTest, BaseUnitsAreAProductThatCanBeRead) {
  EXPECT_EQ(to_base_units({}), "1");
  EXPECT_EQ(to_base_units({1}), "m");
  EXPECT_EQ(to_base_units({2, 1, -2}), "m^2*kg*s^-2");
  EXPECT_EQ(to_base_units({si::fraction(1, 2)}), "m^(1/2)");
  EXPECT_EQ(to_base_units({0, 0, 0, 1, 2, 3, 4, 5, 6}), "A*K^2*mol^3*cd^4*rad^5*sr^6");
}

TEST(UnitTextTest, AUnitOfAFileIsToldByItsName) {
  EXPECT_EQ(to_text(record(1, {{{1, 1}}})), "m");
  EXPECT_EQ(to_text(record(1e-6, {{{1, 1}}})), "\xC2\xB5m");
  EXPECT_EQ(to_text(record(1e-9, {{{1, 1}}})), "nm");
  EXPECT_EQ(to_text(record(1, {{{0, 1}, {1, 1}}})), "kg");
  EXPECT_EQ(to_text(record(1, {{{2, 1}, {1, 1}, {-2, 1}}})), "J");
}

TEST(UnitTextTest, AUnitOfAFileWithoutNameHasANumber) {
  EXPECT_EQ(to_text(record(5e-7, {{{1, 1}}})), "500 nm");
  EXPECT_EQ(to_text(record(0.01, {})), "0.01");
  EXPECT_EQ(to_text(record(2, {{{1, 1}, {0, 1}, {-1, 1}}})), "2 m/s");
  EXPECT_EQ(to_text(record(1, {{{-3, 1}}})), "1/m^3");
}

TEST(UnitTextTest, TheNeutralUnitIsOne) { EXPECT_EQ(to_text(UnitRecord()), "1"); }

TEST(UnitTextTest, AnyRecordHasAText) {
  EXPECT_EQ(to_text(record(infinity, {{{1, 1}}})), "inf m");
  EXPECT_EQ(to_text(record(std::nan(""), {})), "nan");
  EXPECT_EQ(to_text(record(0, {{{1, 1}}})), "0 m");
  EXPECT_EQ(to_text(record(1, {{{2, 4}, {INT_MIN, INT_MIN}, {3, 0}}})),
            "m^(2/4)*kg^(2147483648/2147483648)*s^(3/0)");
}

}  // namespace
}  // namespace Vrel::tool
