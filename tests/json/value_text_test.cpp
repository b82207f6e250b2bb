#include <gtest/gtest.h>
#include <vrelio/json/value.h>

#include <iomanip>
#include <limits>
#include <locale>
#include <sstream>
#include <string>

#include "support/deep_value.h"

using Json::Array;
using Json::Object;
using Json::Value;

namespace {

std::string text_of(const Value& value) {
  std::ostringstream out;
  out << value;
  return out.str();
}

struct Row {
  const char* name;
  Value value;
  std::string text;
};

const double infinity = std::numeric_limits<double>::infinity();

const Row rows[] = {
    {"null", Value(), "null"},
    {"true", true, "true"},
    {"false", false, "false"},
    {"an integer", 3, "3"},
    {"the lowest integer", std::numeric_limits<int>::min(), "-2147483648"},
    {"a decimal without a fraction", 3.0, "3.0"},
    {"zero", 0.0, "0.0"},
    {"minus zero", -0.0, "-0.0"},
    {"a great decimal without a fraction", 1e15, "1000000000000000.0"},
    {"a decimal of 22 digits", 1e21, "1000000000000000000000.0"},
    {"a tenth", 0.1, "0.1"},
    {"ten digits", 1234567.891, "1234567.891"},
    {"more than ten digits", 1.23456789012345, "1.23456789"},
    {"a small decimal", 1e-7, "1e-07"},
    {"a decimal whose fraction is lost", 12345678901.5, "1.23456789e+10"},
    {"infinity", infinity, "inf"},
    {"minus infinity", -infinity, "-inf"},
    {"not a number", std::numeric_limits<double>::quiet_NaN(), "nan"},
    {"an empty string", "", "\"\""},
    {"a string", "plain", "\"plain\""},
    {"a backslash and a double quote", "a\\b\"c", "\"a\\\\b\\\"c\""},
    {"nothing but what is escaped", "\\\"", "\"\\\\\\\"\""},
    {"control characters", std::string("a\n\t\0\x7F", 5), std::string("\"a\n\t\0\x7F\"", 7)},
    {"bytes above 127", "\xB5/\xC3\xA9", "\"\xB5/\xC3\xA9\""},
    {"an empty array", Array(), "[]"},
    {"an array", Array{Value(1), Value("a"), Value()}, "[1,\"a\",null]"},
    {"an empty map", Object(), "{}"},
    {"a map in the order of its keys", Object{{"b", 1}, {"a", 2}}, "{\"a\":2,\"b\":1}"},
    {"keys as they are quoted", Object{{"", 1}, {"a\"", 2}}, "{\"\":1,\"a\\\"\":2}"},
    {"containers in containers",
     Object{{"a", Array{Value(Array{}), Value(Object{{"b", Array{Value(1)}}})}}, {"c", Object()}},
     "{\"a\":[[],{\"b\":[1]}],\"c\":{}}"},
};

struct DecimalComma : std::numpunct<char> {
  char do_decimal_point() const override { return ','; }
  char do_thousands_sep() const override { return '.'; }
  std::string do_grouping() const override { return "\3"; }
};

}  // namespace

TEST(ValueTextTest, EveryKindHasItsText) {
  for (const Row& row : rows) EXPECT_EQ(row.text, text_of(row.value)) << row.name;
}

TEST(ValueTextTest, AMapAloneHasTheSameText) {
  std::ostringstream out;
  out << Object{{"b", 1}, {"a", Array{Value(2.0)}}};
  EXPECT_EQ("{\"a\":[2.0],\"b\":1}", out.str());
}

TEST(ValueTextTest, FlagsAndPrecisionOfTheStreamStayAsTheyAre) {
  std::ostringstream out;
  out << std::hex << std::showbase << std::scientific << std::setprecision(3);
  const std::ios_base::fmtflags flags = out.flags();
  out << Value(Array{Value(255), Value(2.0), Value(0.125)});
  EXPECT_EQ("[255,2.0,0.125]", out.str());
  EXPECT_EQ(flags, out.flags());
  EXPECT_EQ(3, out.precision());
}

TEST(ValueTextTest, NoLocaleChangesNumbers) {
  std::ostringstream out;
  out.imbue(std::locale(out.getloc(), new DecimalComma));
  out << Value(Array{Value(1234567), Value(1234.5), Value(1234567.0)});
  EXPECT_EQ("[1234567,1234.5,1234567.0]", out.str());
}

TEST(ValueTextTest, ATextLongerThanAnyBufferIsWhole) {
  Value value;
  std::string expected = "[";
  for (int number = 0; number < 100000; ++number) {
    value.array().emplace_back(number);
    expected += (number == 0 ? "" : ",") + std::to_string(number);
  }
  EXPECT_EQ(expected + "]", text_of(value));
}

TEST(ValueTextTest, AStreamThatFailsTakesNoMore) {
  std::ostringstream out;
  out.setstate(std::ios_base::badbit);
  out << Value(1);
  EXPECT_EQ("", out.str());
  EXPECT_TRUE(out.bad());
}

TEST(ValueTextTest, DeepValuesAreWritten) {
  const std::size_t levels = deep_levels;
  EXPECT_EQ(std::string(levels, '[') + "1" + std::string(levels, ']'),
            text_of(nested_arrays(deep_levels, 1)));
  const std::string text = text_of(nested_maps(deep_levels, 1));
  EXPECT_EQ("{\"a\":{\"a\":", text.substr(0, 10));
  EXPECT_EQ(",\"b\":1},\"b\":0}", text.substr(text.size() - 14));
}
