#include "json/number_text_internal.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cmath>
#include <limits>
#include <locale>
#include <sstream>
#include <string>

namespace {

using Json::detail::extract_decimal;
using Json::detail::extract_integer;
using Json::detail::Extraction;

template <class T>
Extraction<T> extract_by_stream(const std::string& text) {
  std::istringstream stream(text);
  stream.imbue(std::locale::classic());
  T value{};
  stream >> value;
  const bool is_converted = !stream.fail();
  stream.clear();
  const auto position = stream.tellg();
  return {value, is_converted, static_cast<std::size_t>(position)};
}

template <class T>
bool is_same(const Extraction<T>& left, const Extraction<T>& right) {
  return left.value == right.value && std::signbit(left.value) == std::signbit(right.value) &&
         left.is_converted == right.is_converted && left.length == right.length;
}

template <class T>
void expect_extraction(const Extraction<T>& extraction, const Extraction<T>& expected,
                       const std::string& text) {
  EXPECT_EQ(extraction.value, expected.value) << text;
  EXPECT_EQ(extraction.is_converted, expected.is_converted) << text;
  EXPECT_EQ(extraction.length, expected.length) << text;
}

const std::string number_texts[] = {"",
                                    "0",
                                    "-0",
                                    "+0",
                                    "007",
                                    "-",
                                    "+",
                                    "+-5",
                                    "-+5",
                                    "--5",
                                    "5-",
                                    "5+3",
                                    "1e5",
                                    "1E5",
                                    "e5",
                                    "-e5",
                                    ".",
                                    "-.",
                                    ".5",
                                    "-.5",
                                    "+.5",
                                    "1.",
                                    "1.5",
                                    "1.5.3",
                                    "1.5e",
                                    "1.5e+",
                                    "1.5e-",
                                    "1.5e+x",
                                    "1.5e3",
                                    "1.5E-3",
                                    "1.5e3.5",
                                    "1.5e3e3",
                                    ".e5",
                                    "1.e5",
                                    "1.0e5",
                                    "0x10",
                                    "1,5",
                                    "inf",
                                    "nan",
                                    "1.0f",
                                    "1 2",
                                    "1e400",
                                    "-1e400",
                                    "1e-400",
                                    "-1e-400",
                                    "4e-320",
                                    "1e400e",
                                    "1e400.5",
                                    "1.0e99999999999",
                                    "2147483647",
                                    "2147483648",
                                    "-2147483648",
                                    "-2147483649",
                                    "+2147483648",
                                    "21474836470",
                                    "99999999999999999999",
                                    "-99999999999999999999",
                                    "99999999999e5",
                                    "1.7976931348623157e308",
                                    "1.7976931348623159e308",
                                    "2.4703282292062328e-324",
                                    "1.00000000000000011102230246251565404236316680908203125"};

TEST(NumberTextTest, IntegersAreWhatAStreamExtracts) {
  for (const std::string& text : number_texts) {
    expect_extraction(extract_integer(text), extract_by_stream<int>(text), text);
  }
}

TEST(NumberTextTest, DecimalsAreWhatAStreamExtracts) {
  for (const std::string& text : number_texts) {
    expect_extraction(extract_decimal(text), extract_by_stream<double>(text), text);
  }
}

TEST(NumberTextTest, AnIntegerBeyondItsLimitsIsTheLimitAndNotConverted) {
  expect_extraction(extract_integer("2147483648x"),
                    {std::numeric_limits<int>::max(), false, std::size_t{10}}, "greatest");
  expect_extraction(extract_integer("-2147483649x"),
                    {std::numeric_limits<int>::min(), false, std::size_t{11}}, "least");
}

TEST(NumberTextTest, ADecimalBeyondItsLimitsIsTheLimitAndNotConverted) {
  constexpr double greatest = std::numeric_limits<double>::max();
  expect_extraction(extract_decimal("1e400x"), {greatest, false, std::size_t{5}}, "greatest");
  expect_extraction(extract_decimal("-1e400x"), {-greatest, false, std::size_t{6}}, "least");
}

TEST(NumberTextTest, ADecimalThatIsTooSmallIsZeroOrSubnormal) {
  expect_extraction(extract_decimal("1e-400"), {0.0, true, std::size_t{6}}, "zero");
  expect_extraction(extract_decimal("4e-320"), {4e-320, true, std::size_t{6}}, "subnormal");
}

TEST(NumberTextTest, AMillionDigitsAreOneNumber) {
  const std::string digits(1000000, '7');
  EXPECT_EQ(extract_integer(digits).length, digits.size());
  const auto decimal = extract_decimal("0." + digits);
  EXPECT_DOUBLE_EQ(decimal.value, 7.0 / 9.0);
  EXPECT_EQ(decimal.length, digits.size() + 2);
}

rc::Gen<std::string> number_like() {
  return rc::gen::container<std::string>(rc::gen::elementOf(std::string("0123456789.eE+-")));
}

RC_GTEST_PROP(NumberTextTest, AnyTextGivesTheIntegerThatAStreamExtracts, ()) {
  const std::string text = *number_like();
  RC_ASSERT(is_same(extract_integer(text), extract_by_stream<int>(text)));
}

RC_GTEST_PROP(NumberTextTest, AnyTextGivesTheDecimalThatAStreamExtracts, ()) {
  const std::string text = *number_like();
  RC_ASSERT(is_same(extract_decimal(text), extract_by_stream<double>(text)));
}

// Most random texts are no numbers, so here is what is one nearly always.
RC_GTEST_PROP(NumberTextTest, AnyDecimalIsTheOneThatAStreamExtracts, ()) {
  const auto digit_string = rc::gen::container<std::string>(rc::gen::inRange('0', ':'));
  const std::string text = *rc::gen::element<std::string>("", "-", "+") + *digit_string + "." +
                           *digit_string + *rc::gen::element<std::string>("", "e", "E-", "e+") +
                           std::to_string(*rc::gen::inRange(0, 400));
  RC_ASSERT(is_same(extract_decimal(text), extract_by_stream<double>(text)));
}

}  // namespace
