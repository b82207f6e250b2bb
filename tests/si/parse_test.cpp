// What texts name which values: parse.cpp and term.cpp.
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>
#include <vrelio/si/value.h>

#include <clocale>
#include <cmath>
#include <fstream>
#include <limits>
#include <locale>
#include <ostream>
#include <string>
#include <vector>

#include "si/comma_locale.h"
#include "si/plain_parser.h"
#include "si/print_values.h"
#include "support/source_tree.h"

namespace {

using si::fraction;
using si::value;
using si::testing::CommaLocale;
using si::testing::PlainParser;

constexpr double infinity = std::numeric_limits<double>::infinity();

value of(const std::string& text) { return value(text); }

double number_of(const std::string& text) {
  const value read(text);
  EXPECT_TRUE(read.is_valid()) << text;
  EXPECT_TRUE(read.is_dimensionless()) << text;
  return read.value_in_baseunits();
}

void expect_none(const std::vector<std::string>& texts) {
  for (const std::string& text : texts) EXPECT_FALSE(of(text).is_valid()) << text;
}

const value metre(1.0, {1});
const value kilogram(1.0, {0, 1});
const value second(1.0, {0, 0, 1});

TEST(ParseTest, ANumberAndAUnitAreRead) {
  EXPECT_EQ(of("10 nm"), value(1e-8, {1}));
  EXPECT_EQ(of("10nm"), value(1e-8, {1}));
  EXPECT_EQ(of("10   nm"), value(1e-8, {1}));
  EXPECT_EQ(of("m"), metre);
  EXPECT_EQ(of("2.5"), value(2.5));
  EXPECT_EQ(of("2 "), value(2.0));
}

TEST(ParseTest, AnEmptyTextNamesNoValue) {
  expect_none({"", "()", "(())", "*m", "m*", "m/", "^2"});
}

TEST(ParseTest, AThousandGramsAreAKilogram) {
  EXPECT_EQ(of("1000 g"), kilogram);
  EXPECT_EQ(of("kg"), kilogram);
}

TEST(ParseTest, AKilogramTakesNoPrefix) { expect_none({"mkg", "kkg", "5 Mkg", "\xB5kg"}); }

TEST(ParseTest, GramsTakeNoPrefixAboveKilo) {
  EXPECT_EQ(of("hg"), value(0.1, {0, 1}));
  EXPECT_EQ(of("mg"), value(1e-6, {0, 1}));
  expect_none({"Mg", "Gg", "Yg"});
}

TEST(ParseTest, TonnesTakeNoPrefixBelowHecto) {
  EXPECT_EQ(of("ht"), value(1e5, {0, 1}));
  EXPECT_EQ(of("kt"), value(1e6, {0, 1}));
  expect_none({"mt", "dt", "\xB5t"});
}

TEST(ParseTest, SecondsTakeNoPrefixAboveOne) {
  EXPECT_EQ(of("ms"), value(1e-3, {0, 0, 1}));
  expect_none({"ks", "hs", "Ms"});
}

TEST(ParseTest, LimitsOfWritingDoNotBindReading) {
  EXPECT_EQ(of("Mm"), value(1e6, {1}));
  EXPECT_EQ(of("kangstrom"), value(1e-7, {1}));
  EXPECT_EQ(of("krad"), value(1e3, {0, 0, 0, 0, 0, 0, 0, 1}));
}

TEST(ParseTest, ThePrefixForAttoIsNotRead) { expect_none({"10 am", "aA", "a"}); }

TEST(ParseTest, MicroIsReadInTwoWays) {
  EXPECT_EQ(of("3 um"), value(3e-6, {1}));
  EXPECT_EQ(of("3 \xB5m"), value(3e-6, {1}));
}

TEST(ParseTest, AnExponentMarkNeedsASignOrADigit) {
  expect_none({"1eV", "1e", "1E", "2e m", "1e.5", "5EA", "1e*m"});
  EXPECT_EQ(of("1 eV"), value(1.60217733e-19, {2, 1, -2}));
  EXPECT_EQ(of("1e0eV"), of("1 eV"));
}

TEST(ParseTest, NumbersAreReadInAllTheirForms) {
  EXPECT_EQ(number_of("+5"), 5.0);
  EXPECT_EQ(number_of("-5"), -5.0);
  EXPECT_EQ(number_of("5."), 5.0);
  EXPECT_EQ(number_of(".5"), 0.5);
  EXPECT_EQ(number_of("-.5e1"), -5.0);
  EXPECT_EQ(number_of("1.e2"), 100.0);
  EXPECT_EQ(number_of("1E+2"), 100.0);
  EXPECT_EQ(number_of("1e-2"), 0.01);
  EXPECT_EQ(number_of("007"), 7.0);
  EXPECT_EQ(number_of("0.1"), 0.1);
}

TEST(ParseTest, APointBehindAnExponentIsPassedOver) {
  EXPECT_EQ(number_of("1e5."), 1e5);
  EXPECT_EQ(number_of("1e5.5"), 1e5);
  EXPECT_EQ(of("1e5.5m"), value(1e5, {1}));
}

TEST(ParseTest, ASecondExponentMarkEndsTheNumber) {
  EXPECT_EQ(of("1e2e"), value(1.60217733e-17, {0, 0, 1, 1}));
  EXPECT_EQ(number_of("1e2E"), 1e20);
  expect_none({"1e2e3"});
}

TEST(ParseTest, WhatIsNoNumberNamesNoValue) {
  expect_none({"+", "-", ".", "+-5", "-+5", "1..2", "1.2.3", ".e5", "+e5", "1e+", "1e-", "1e+m",
               "1e-.5", "--5", "1+2", "0x10", "1,5", " 5"});
}

TEST(ParseTest, NumbersBeyondADoubleBecomeInfinityOrZero) {
  EXPECT_EQ(number_of("1e309"), infinity);
  EXPECT_EQ(number_of("-1e309"), -infinity);
  EXPECT_EQ(number_of("1e999999999999999999999"), infinity);
  EXPECT_EQ(number_of("1e-400"), 0.0);
  EXPECT_EQ(number_of("+1e-999999999999999999999"), 0.0);
  EXPECT_TRUE(std::signbit(number_of("-1e-400")));
  EXPECT_EQ(number_of("0e999999999999999999999"), 0.0);
  EXPECT_EQ(number_of("1" + std::string(400, '0')), infinity);
  EXPECT_EQ(of("1e309 m").value_in_baseunits(), infinity);
}

TEST(ParseTest, TheSmallestNumbersAreKept) {
  EXPECT_EQ(number_of("4.9e-324"), 4.9e-324);
  EXPECT_EQ(number_of("-2.3e-310"), -2.3e-310);
  EXPECT_EQ(number_of("1.7976931348623157e308"), 1.7976931348623157e308);
  EXPECT_EQ(number_of("0." + std::string(400, '0') + "1e401"), 1.0);
}

TEST(ParseTest, AnUnknownNameIsRefused) {
  expect_none({"xyz", "?", "5 xyz", "\xC2\xB5m", "10 1m", "b", "0x"});
  expect_none({std::string(1, '\0'), std::string("1\0", 2), std::string("1\0m", 3)});
}

TEST(ParseTest, AnUnknownNameBehindAPrefixIsNoUnit) {
  EXPECT_EQ(of("kxyz"), value(1000.0));
  EXPECT_EQ(of("5 nonsense"), value(5e-9));
  EXPECT_EQ(of("10 m "), value(0.01));
  EXPECT_EQ(of("k(m)"), value(1000.0));
}

TEST(ParseTest, BlanksAloneAreOne) {
  EXPECT_EQ(number_of(" "), 1.0);
  EXPECT_EQ(number_of(std::string(1000000, ' ')), 1.0);
}

TEST(ParseTest, ABlankBehindAUnitMakesItAnother) { EXPECT_EQ(of("kg * m"), value(1000.0, {1})); }

TEST(ParseTest, APrefixAloneIsANumber) {
  EXPECT_EQ(number_of("k"), 1000.0);
  EXPECT_EQ(number_of("5 n"), 5e-9);
  EXPECT_EQ(number_of("\xB5"), 1e-6);
}

TEST(ParseTest, AUnitGoesBeforeAPrefix) {
  EXPECT_EQ(of("m"), metre);
  EXPECT_EQ(of("T"), value(1.0, {0, 1, -2, -1}));
  EXPECT_EQ(of("G"), value(1e-4, {0, 1, -2, -1}));
  EXPECT_EQ(of("h"), value(3600.0, {0, 0, 1}));
  EXPECT_EQ(of("Pa"), value(1.0, {-1, 1, -2}));
  EXPECT_EQ(of("pc"), value(3.0856775807e16, {1}));
}

TEST(ParseTest, ProductsAndQuotientsGroupToTheLeft) {
  EXPECT_EQ(of("kg*m/s^2"), value(1.0, {1, 1, -2}));
  EXPECT_EQ(of("m/s*kg"), value(1.0, {1, 1, -1}));
  EXPECT_EQ(of("8/4/2"), value(1.0));
  EXPECT_EQ(of("8/(4/2)"), value(4.0));
  EXPECT_EQ(of("10 nm*3"), value(3e-8, {1}));
}

TEST(ParseTest, PowersBindTighterAndGroupToTheLeft) {
  EXPECT_EQ(of("2*3^2"), value(18.0));
  EXPECT_EQ(of("2^3^2"), value(64.0));
  EXPECT_EQ(of("-2^2"), value(4.0));
  EXPECT_EQ(of("m^1/2"), value(0.5, {1}));
}

TEST(ParseTest, ANumberInFrontOfAUnitIsRaisedWithIt) {
  EXPECT_EQ(of("10 m^2"), value(100.0, {2}));
  EXPECT_EQ(of("10*m^2"), value(10.0, {2}));
}

TEST(ParseTest, ExponentsAreFractions) {
  EXPECT_EQ(of("m^(1/2)"), value(1.0, {fraction(1, 2)}));
  EXPECT_EQ(of("m^(-3/2)"), value(1.0, {fraction(-3, 2)}));
  EXPECT_EQ(of("m^-1"), value(1.0, {-1}));
  EXPECT_EQ(of("m^4^(2/4)"), value(1.0, {2}));
  EXPECT_EQ(of("m^"), value(1.0));
  expect_none({"m^1.5", "m^(2)", "m^x", "m^(1/-2)", "m^ 2", "m^+2", "m^((1/2))"});
}

TEST(ParseTest, ParenthesesGroup) {
  EXPECT_EQ(of("(1/2)"), value(0.5));
  EXPECT_EQ(of("kg/(m*s^2)"), value(1.0, {-1, 1, -2}));
  EXPECT_EQ(of("((m))"), metre);
  EXPECT_EQ(of("(m*s)^2/s"), value(1.0, {2, 0, 1}));
}

TEST(ParseTest, ParenthesesHaveToMatchInNumber) {
  expect_none({"(", ")", "(m", "m)", "(m*s", "m*s)", "((m)", "(m))", "m^1/2)", "(m^2", "(()"});
}

TEST(ParseTest, ParenthesesDoNotMultiply) {
  expect_none({"2(m)", "(2)m", "2(3)", "(2)(3)x", "()m"});
}

TEST(ParseTest, OuterParenthesesAreStrippedEvenIfTheyDoNotBelongTogether) {
  // What is left, "m)*(s", has no operator outside of its parentheses: milli, and no known unit.
  EXPECT_EQ(of("(m)*(s)"), value(0.001));
  expect_none({"(s)*(m)", "(1)*(m)"});
  EXPECT_EQ(of("1*(m)*(s)"), value(1.0, {1, 0, 1}));
  EXPECT_EQ(of("((m)*(s))"), value(0.001));
  EXPECT_EQ(of("m*(s)"), value(1.0, {1, 0, 1}));
}

TEST(ParseTest, ParenthesesThatCloseBeforeTheyOpenAreText) {
  EXPECT_EQ(of("k)m("), value(1000.0));
  EXPECT_EQ(of("k)*("), value(1000.0));
  expect_none({")m(", ")*("});
}

TEST(ParseTest, OneFaultyPartSpoilsTheText) {
  expect_none({"m*?", "?*m", "m/?/s", "(?)^2", "?^2", "m*(s*(?))", "m**s", "m*/s", "m^2^x"});
}

std::string repeated(const std::string& part, std::size_t count) {
  std::string text;
  text.reserve(part.size() * count);
  for (std::size_t i = 0; i < count; ++i) text += part;
  return text;
}

constexpr std::size_t many = 1000000;

TEST(ParseTest, NestingIsBoundedByTheLengthOfTheTextOnly) {
  EXPECT_EQ(of(repeated("(", many) + "m" + repeated(")", many)), metre);
  EXPECT_EQ(of(repeated("(", many) + "m" + repeated(")^1", many)), metre);
  EXPECT_EQ(of(repeated("(1*", many) + "m" + repeated(")", many)), metre);
  EXPECT_EQ(of(repeated("1*(", many) + "m" + repeated(")", many)), metre);
  EXPECT_EQ(of(repeated("1/(", many) + "m" + repeated(")", many)), metre);
  EXPECT_EQ(of(repeated("(", many) + "m" + repeated("*1)", many)), metre);
}

TEST(ParseTest, LongChainsAreRead) {
  EXPECT_EQ(of("m" + repeated("*1", many)), metre);
  EXPECT_EQ(of("1" + repeated("*m", many)).exponents()[0], fraction(1000000));
  EXPECT_EQ(of("m" + repeated("^1", many)), metre);
  EXPECT_EQ(of("1" + repeated("/(m)", many)).exponents()[0], fraction(-1000000));
}

TEST(ParseTest, LongTextsThatNameNothingAreRefused) {
  for (const char* const part :
       {"(", ")", "*", "^", "(*", "^(", ")(", "(m", "m)", "+", "-", ".", "e"}) {
    EXPECT_FALSE(of(repeated(part, many)).is_valid()) << part;
  }
  EXPECT_FALSE(of(repeated("(", many) + repeated(")", many)).is_valid());
  EXPECT_FALSE(of("?" + repeated("*m", many)).is_valid());
}

TEST(ParseTest, LongNumbersAndNamesAreRead) {
  EXPECT_EQ(number_of("0." + std::string(many, '0') + "1"), 0.0);
  EXPECT_EQ(number_of(std::string(many, '9')), infinity);
  EXPECT_EQ(number_of("1." + std::string(many, '0')), 1.0);
  EXPECT_EQ(number_of("1e" + std::string(many, '0') + "2"), 100.0);
  EXPECT_EQ(number_of(std::string(many, 'k')), 1000.0);
  EXPECT_EQ(number_of("m^" + std::string(many, '0')), 1.0);
}

TEST(ParseTest, ExponentsWrapAroundAt32Bits) {
  EXPECT_EQ(of("(m^2147483647)*m").exponents()[0], fraction(-2147483647 - 1));
}

TEST(ParseTest, NoLocaleChangesWhatIsRead) {
  const CommaLocale locale;
  EXPECT_EQ(number_of("1234.5"), 1234.5);
  EXPECT_EQ(of("1.5e-3 m"), value(1.5e-3, {1}));
  EXPECT_EQ(number_of("1e-400"), 0.0);
  EXPECT_EQ(number_of("1.5e400"), infinity);
  expect_none({"1,5", "1.234,5"});
}

// make_expected_units.py writes the file, from the answers of another program.
TEST(ParseTest, AnotherProgramReadsTheSameValues) {
  std::ifstream file(Vrel::testing::source_path("tests/si/expected_units.txt"));
  int lines = 0;
  for (std::string text; std::getline(file, text, '\t'); ++lines) {
    double magnitude = 0.0;
    file >> magnitude;
    si::exponent_list exponents;
    for (fraction& exponent : exponents) file >> exponent.num;
    file.ignore();
    const value read(text);
    EXPECT_TRUE(read.is_valid()) << text;
    EXPECT_EQ(read.exponents(), exponents) << text;
    EXPECT_NEAR(read.value_in_baseunits() / magnitude, 1.0, 1e-12) << text;
  }
  EXPECT_EQ(lines, 230);
}

// Compares validity, exponents and magnitude.
bool agrees_with_plain_rules(const std::string& text) {
  const value read(text);
  const std::optional<value> expected = PlainParser::parse(text);
  if (!expected || !read.is_valid()) return expected.has_value() == read.is_valid();
  const double seen = read.value_in_baseunits();
  const double worth = expected->value_in_baseunits();
  if (read.exponents() != expected->exponents()) return false;
  if (seen == worth || (std::isnan(seen) && std::isnan(worth))) return true;
  return std::abs(seen / worth - 1.0) < 1e-12;
}

void expect_agreement(const std::string& alphabet, std::size_t length,
                      const std::string& front = "") {
  EXPECT_TRUE(agrees_with_plain_rules(front)) << front;
  if (front.size() == length) return;
  for (const char c : alphabet) expect_agreement(alphabet, length, front + c);
}

TEST(ParseTest, ShortTextsFollowThePlainRules) { expect_agreement("()*/^1.e-+ mkgst?", 4); }

TEST(ParseTest, ShortTextsOfOperatorsFollowThePlainRules) { expect_agreement("()*^1m", 7); }

TEST(ParseTest, ShortNumbersFollowThePlainRules) { expect_agreement("10.eE-+m", 6); }

RC_GTEST_PROP(ParsePropertyTest, LongTextsFollowThePlainRules, ()) {
  const std::vector<std::string> parts =
      *rc::gen::container<std::vector<std::string>>(rc::gen::elementOf(
          std::vector<std::string>{"(",  ")", "*",  "/",     "^", "m", "kg",  "s",  "2",   "1e3",
                                   ".5", "k", "-1", "(1/2)", " ", "e", "(m)", "*(", ")^2", "1*"}));
  std::string text;
  for (const std::string& part : parts) text += part;
  RC_ASSERT(agrees_with_plain_rules(text));
}

// Texts that name a value more often than not.
std::string random_expression(int depth) {
  const auto operand = [&] {
    if (depth == 0)
      return *rc::gen::elementOf(std::vector<std::string>{"m", "2 s", "kg", "3e2", "mm"});
    return random_expression(depth - 1);
  };
  switch (*rc::gen::inRange(0, 5)) {
    case 0:
      return operand() + "*" + operand();
    case 1:
      return operand() + "/" + operand();
    case 2:
      return "(" + operand() + ")";
    case 3:
      return operand() + "^" + *rc::gen::elementOf(std::vector<std::string>{"2", "-1", "(1/2)"});
    default:
      return operand();
  }
}

RC_GTEST_PROP(ParsePropertyTest, ExpressionsFollowThePlainRules, ()) {
  const std::string text = random_expression(*rc::gen::inRange(0, 6));
  RC_ASSERT(agrees_with_plain_rules(text));
}

RC_GTEST_PROP(ParsePropertyTest, AnyBytesAreReadOrRefused, (const std::string& text)) {
  const value read(text);
  RC_ASSERT(read.is_valid() || read.value_in_baseunits() == 1.0);
}

}  // namespace
