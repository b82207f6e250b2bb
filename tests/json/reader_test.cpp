#include <vrelio/json/reader.h>

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cmath>
#include <cstddef>
#include <limits>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "json/json_outcome.h"
#include "support/deep_value.h"

namespace {

using Json::Array;
using Json::Object;
using Json::Reader;
using Json::Value;
using Vrel::testing::JsonOutcome;
using Vrel::testing::read_json_in_slices;
using Vrel::testing::read_json_whole;

std::string text_of(const Object& object) {
  std::ostringstream out;
  out << object;
  return out.str();
}

// Reads a text in all ways, which have to agree.
JsonOutcome outcome_of(const std::string& text) {
  JsonOutcome whole = read_json_whole(text);
  EXPECT_EQ(read_json_in_slices(text, [](std::size_t) { return std::size_t{1}; }), whole)
      << "byte by byte: " << text;
  for (std::size_t cut = 1; cut < text.size(); ++cut) {
    const auto size = [&](std::size_t taken) { return taken < cut ? cut - taken : text.size(); };
    EXPECT_EQ(read_json_in_slices(text, size), whole) << "cut at " << cut << ": " << text;
  }
  return whole;
}

void expect_object(const std::string& text, const Object& object) {
  const JsonOutcome outcome = outcome_of(text);
  EXPECT_EQ("", outcome.error) << text;
  EXPECT_EQ(object, outcome.object) << text << " gives " << Value(outcome.object);
  EXPECT_TRUE(outcome.is_closed) << text;
  EXPECT_EQ(text.size(), outcome.taken) << text;
}

// The object with this text as the value of "a".
void expect_value(const std::string& text, const Value& value) {
  expect_object("{\"a\":" + text + "}", Object{{"a", value}});
}

void expect_open(const std::string& text, const Object& object) {
  const JsonOutcome outcome = outcome_of(text);
  EXPECT_EQ("", outcome.error) << text;
  EXPECT_EQ(object, outcome.object) << text << " gives " << Value(outcome.object);
  EXPECT_FALSE(outcome.is_closed) << text;
  EXPECT_EQ(text.size(), outcome.taken) << text;
}

// The last character of the text is at fault.
void expect_refused(const std::string& text, const std::string& message) {
  const JsonOutcome outcome = outcome_of(text);
  EXPECT_EQ(message, outcome.error) << text;
  EXPECT_FALSE(outcome.is_closed) << text;
  EXPECT_EQ(text.size() - 1, outcome.taken) << text;
}

void expect_unexpected_character(const std::string& text, const std::string& word) {
  expect_refused(
      text, "Unexpected '" + text.substr(text.size() - 1) + "' character in " + word + " value");
}

void expect_unexpected_string(const std::string& text, const std::string& string,
                              const std::string& word) {
  expect_refused(text, "Unexpected '" + string + "' string in " + word + " value");
}

TEST(ReaderTest, HasAnEmptyMapAtFirst) { EXPECT_EQ(Object(), Reader().object()); }

TEST(ReaderTest, AnEmptySliceEndsNothing) {
  Reader reader;
  const char* begin = "";
  const char* const end = begin;
  EXPECT_FALSE(reader.read(begin, end));
  EXPECT_EQ(end, begin);
}

TEST(ReaderTest, AnEmptyObjectIsAnEmptyMap) {
  expect_object("{}", {});
  expect_object("{ }", {});
  expect_object(" \t\n\v\f\r{ \t\n\v\f\r}", {});
}

TEST(ReaderTest, AnEmptyArrayHasNoItems) {
  expect_value("[]", Array());
  expect_value("[ ]", Array());
  expect_value("[[],[ ]]", Array{Value(Array()), Value(Array())});
}

TEST(ReaderTest, OnlyAnObjectCanBeTheTopLevel) {
  for (const char* const text : {"[", "1", "\"", "t", "n", "}", "]", ",", ":", " -"}) {
    expect_unexpected_character(text, "object");
  }
  const JsonOutcome outcome = read_json_whole("[1]");
  EXPECT_EQ("Unexpected '[' character in object value", outcome.error);
}

TEST(ReaderTest, ReadsEachKind) {
  expect_value("null", Value());
  expect_value("true", true);
  expect_value("false", false);
  expect_value("12", 12);
  expect_value("1.5", 1.5);
  expect_value("\"text\"", "text");
  expect_value("[1,\"b\",null]", Array{Value(1), Value("b"), Value()});
  expect_value("{\"b\":{\"c\":1}}", Object{{"b", Object{{"c", 1}}}});
}

TEST(ReaderTest, WhitespaceMayStandBetweenAllParts) {
  expect_object(
      " { \"a\" : [ 1 , true , { \"b\" : null } ] , \"c\" : \"d\" }",
      Object{{"a", Array{Value(1), Value(true), Value(Object{{"b", Value()}})}}, {"c", "d"}});
}

TEST(ReaderTest, StopsBehindTheBraceThatClosesTheObject) {
  const std::string text = "{\"a\":1} {";
  const JsonOutcome outcome = read_json_whole(text);
  EXPECT_TRUE(outcome.is_closed);
  EXPECT_EQ(7u, outcome.taken);
}

TEST(ReaderTest, ACommaNeedsAValueBehindIt) {
  expect_unexpected_character("{\"a\":[1,]", "value");
  expect_unexpected_character("{\"a\":1,}", "object");
  expect_unexpected_character("{\"a\":[,", "value");
  expect_unexpected_character("{,", "object");
  expect_unexpected_character("{\"a\":1,,", "object");
}

TEST(ReaderTest, PartsNeedTheirSigns) {
  expect_unexpected_character("{\"a\" \"", "object");
  expect_unexpected_character("{\"a\",", "object");
  expect_unexpected_character("{\"a\"}", "object");
  expect_unexpected_character("{\"a\"::", "value");
  expect_unexpected_character("{\"a\":}", "value");
  expect_unexpected_character("{\"a\":]", "value");
  expect_unexpected_character("{\"a\":1 \"", "object");
  expect_unexpected_character("{\"a\":1]", "object");
  expect_unexpected_character("{\"a\":[1 2", "array");
  expect_unexpected_character("{\"a\":[1}", "array");
  expect_unexpected_character("{\"a\":[1:", "array");
  expect_unexpected_character("{\"a\":[{]", "object");
  expect_unexpected_character("{a", "object");
  expect_unexpected_character("{1", "object");
  expect_unexpected_character("{\"a\":x", "value");
  expect_unexpected_character("{\"a\":+", "value");
  expect_unexpected_character("{\"a\":.", "value");
  expect_unexpected_character("{\"a\":[[1],]", "value");
}

TEST(ReaderTest, ANumberAtTheEndOfASliceStaysOpen) {
  Reader reader;
  const std::string first = "{\"a\":12";
  const char* begin = first.data();
  EXPECT_FALSE(reader.read(begin, begin + first.size()));
  EXPECT_EQ(Object({{"a", Value()}}), reader.object());
  const std::string second = "3}";
  begin = second.data();
  EXPECT_TRUE(reader.read(begin, begin + second.size()));
  EXPECT_EQ(Object({{"a", 123}}), reader.object());
}

TEST(ReaderTest, IntegersAndDecimalsAreToldByThePoint) {
  expect_value("0", 0);
  expect_value("-0", 0);
  expect_value("007", 7);
  expect_value("2147483647", std::numeric_limits<int>::max());
  expect_value("-2147483648", std::numeric_limits<int>::min());
  expect_value("1.0", 1.0);
  expect_value("-0.5", -0.5);
  expect_value("1.", 1.0);
  expect_value("-.5", -0.5);
  expect_value("1.0e5", 100000.0);
  expect_value("1.5E-3", 0.0015);
  expect_value("1.5e+3", 1500.0);
  expect_value("1.0e-999", 0.0);
}

TEST(ReaderTest, AnExponentWithoutAPointIsIgnored) {
  expect_value("1e5", 1);
  expect_value("12E-7", 12);
  expect_value("3e", 3);
}

// The text of a decimal is rounded to its last digit, and may lose the point with it.
TEST(ReaderTest, ADecimalWrittenWithoutAPointIsReadAsAnInteger) {
  EXPECT_EQ("1e-07", text_of({{"a", 1e-7}}).substr(5, 5));
  expect_value("1e-07", 1);
  EXPECT_EQ("2333333333", text_of({{"a", 2333333332.8}}).substr(5, 10));
  expect_unexpected_string("{\"a\":2333333333}", "2333333333", "number");
}

TEST(ReaderTest, WhatFollowsANumberInItsCharactersIsIgnored) {
  expect_value("1-2", 1);
  expect_value("1.5.3", 1.5);
  expect_value("1.5-3", 1.5);
}

TEST(ReaderTest, NumbersThatAreNoneAreNamed) {
  expect_unexpected_string("{\"a\":-,", "-", "number");
  expect_unexpected_string("{\"a\":--1,", "--1", "number");
  expect_unexpected_string("{\"a\":-e1}", "-e1", "number");
  expect_unexpected_string("{\"a\":-.}", "-.", "number");
  expect_unexpected_string("{\"a\":1.5e}", "1.5e", "number");
  expect_unexpected_string("{\"a\":1.5e+ ", "1.5e+", "number");
}

TEST(ReaderTest, NumbersBeyondTheLimitsAreNamed) {
  expect_unexpected_string("{\"a\":2147483648}", "2147483648", "number");
  expect_unexpected_string("{\"a\":-2147483649}", "-2147483649", "number");
  expect_unexpected_string("{\"a\":1.0e999}", "1.0e999", "number");
}

TEST(ReaderTest, AMinusAloneBeforeACommaIsNoNumber) {
  expect_unexpected_string("{\"a\":[-,", "-", "number");
}

TEST(ReaderTest, ALiteralIsCompletedInALaterSlice) {
  Reader reader;
  const std::string first = "{\"a\":tru";
  const char* begin = first.data();
  EXPECT_FALSE(reader.read(begin, begin + first.size()));
  const std::string second = "e}";
  begin = second.data();
  EXPECT_TRUE(reader.read(begin, begin + second.size()));
  EXPECT_EQ(Object({{"a", true}}), reader.object());
}

TEST(ReaderTest, AWrongLetterOfALiteralIsNamedWithTheWord) {
  for (const std::string word : {"true", "false", "null"}) {
    for (std::size_t letters = 1; letters < word.size(); ++letters) {
      expect_unexpected_character("{\"a\":" + word.substr(0, letters) + "x", "'" + word + "'");
    }
    expect_unexpected_character("{\"a\":" + word + "x", "object");
    expect_unexpected_character("{\"a\":[" + word + word.substr(0, 1), "array");
  }
}

TEST(ReaderTest, TheValueOfALiteralStandsAtItsFirstLetter) {
  EXPECT_EQ(Object({{"a", true}}), read_json_whole("{\"a\":t").object);
  EXPECT_EQ(Object({{"a", true}}), read_json_whole("{\"a\":trx").object);
  EXPECT_EQ(Object({{"a", false}}), read_json_whole("{\"a\":f").object);
}

TEST(ReaderTest, EscapesStandForTheirCharacters) {
  expect_value(R"("\"\\\/\b\f\n\r\t")", "\"\\/\b\f\n\r\t");
  expect_object(R"({"a\"b":1})", Object{{"a\"b", 1}});
}

TEST(ReaderTest, OtherEscapesAreNamed) {
  for (const std::string letter : {"u", "x", "a", "0", " ", "\n", "'"}) {
    expect_unexpected_string("{\"a\":\"\\" + letter, "\\" + letter, "string");
    expect_unexpected_string("{\"\\" + letter, "\\" + letter, "string");
  }
}

TEST(ReaderTest, StringsAreBytes) {
  std::string bytes;
  for (int code = 0; code < 256; ++code) {
    if (code != '"' && code != '\\') bytes += static_cast<char>(code);
  }
  expect_object("{\"" + bytes + "\":\"" + bytes + "\"}", Object{{bytes, bytes}});
}

TEST(ReaderTest, SignsInStringsMeanNothing) { expect_value("\"{[,:]}\"", "{[,:]}"); }

TEST(ReaderTest, ARepeatedNameKeepsTheLastValue) {
  expect_object("{\"a\":1,\"a\":2}", Object{{"a", 2}});
  expect_object("{\"a\":{\"b\":1},\"a\":[3]}", Object{{"a", Array{Value(3)}}});
  expect_object("{\"a\":{\"b\":1},\"a\":{\"c\":2}}", Object{{"a", Object{{"c", 2}}}});
}

TEST(ReaderTest, ARepeatedNameKeepsTheEarlierValueUntilTheNextBegins) {
  expect_open("{\"a\":[1],\"a\": ", Object{{"a", Array{Value(1)}}});
  EXPECT_EQ(Object({{"a", Array{Value(1)}}}), read_json_whole("{\"a\":[1],\"a\":x").object);
  expect_open("{\"a\":[1],\"a\":2", Object{{"a", Array{Value(1)}}});
}

TEST(ReaderTest, TheEmptyNameIsAName) { expect_object("{\"\":1}", Object{{"", 1}}); }

TEST(ReaderTest, WhatWasBuiltBeforeAFaultIsKept) {
  EXPECT_EQ(Object({{"a", 1}, {"b", Array{Value(2), Value()}}}),
            read_json_whole("{\"a\":1,\"b\":[2,x").object);
}

TEST(ReaderTest, TheSameFaultComesAgainAtTheSamePlace) {
  for (const std::string text : {"[", "{,", "{\"a\"x", "{\"a\":x", "{\"a\":[1;", "{\"a\":-x",
                                 "{\"a\":1.5e,", "{\"a\":tx", "{\"a\":\"\\x", "{\"a\":1;"}) {
    Reader reader;
    const char* begin = text.data();
    const char* const end = begin + text.size();
    std::string errors[2];
    for (std::string& error : errors) {
      try {
        reader.read(begin, end);
      } catch (const Reader::Unexpected& unexpected) {
        error = unexpected.what();
      }
      EXPECT_EQ(end - 1, begin) << text;
    }
    EXPECT_NE("", errors[0]) << text;
    EXPECT_EQ(errors[0], errors[1]) << text;
  }
}

TEST(ReaderTest, WhatIsOpenIsThereAlready) {
  expect_open("{", {});
  expect_open("{\"a", {});
  expect_open("{\"a\"", Object{{"a", Value()}});
  expect_open("{\"a\":\"b", Object{{"a", "b"}});
  expect_open("{\"a\":[", Object{{"a", Array{Value()}}});
  expect_open("{\"a\":[1,", Object{{"a", Array{Value(1), Value()}}});
  expect_open("{\"a\":{\"b\"", Object{{"a", Object{{"b", Value()}}}});
}

// Reads each text to its end, in one reader.
Object read_all(Reader& reader, const std::vector<std::string>& texts) {
  for (const std::string& text : texts) {
    const char* begin = text.data();
    EXPECT_TRUE(reader.read(begin, begin + text.size())) << text;
  }
  return reader.object();
}

TEST(ReaderTest, AFurtherObjectGoesIntoTheSameMap) {
  Reader reader;
  EXPECT_EQ(Object({{"a", 3}, {"b", 2}, {"c", 4}}),
            read_all(reader, {"{\"a\":1,\"b\":2}", "{\"a\":3,\"c\":4}"}));
}

TEST(ReaderTest, ClearEmptiesTheMapBetweenTwoObjects) {
  Reader reader;
  read_all(reader, {"{\"a\":1}"});
  reader.clear();
  EXPECT_EQ(Object(), reader.object());
  EXPECT_EQ(Object({{"b", 2}}), read_all(reader, {"{\"b\":2}"}));
}

TEST(ReaderTest, ClearBeforeAnyReadingIsHarmless) {
  Reader reader;
  reader.clear();
  EXPECT_EQ(Object({{"b", 2}}), read_all(reader, {"{\"b\":2}"}));
}

TEST(ReaderTest, AnEmptyObjectIsRefusedWhereEntriesAreLeft) {
  Reader reader;
  read_all(reader, {"{\"a\":1}"});
  const std::string text = "{}";
  const char* begin = text.data();
  try {
    reader.read(begin, begin + text.size());
    ADD_FAILURE();
  } catch (const Reader::Unexpected& error) {
    EXPECT_STREQ("Unexpected '}' character in object value", error.what());
  }
  EXPECT_EQ(text.data() + 1, begin);
}

TEST(ReaderTest, AnEmptyObjectIsTakenAfterClear) {
  Reader reader;
  read_all(reader, {"{\"a\":1}"});
  reader.clear();
  EXPECT_EQ(Object(), read_all(reader, {"{}"}));
}

TEST(ReaderTest, UnexpectedIsARuntimeError) {
  const Reader::Unexpected character('}', "value");
  EXPECT_STREQ("Unexpected '}' character in value value", character.what());
  const std::unique_ptr<std::runtime_error> string =
      std::make_unique<Reader::Unexpected>(std::string("12x"), "number");
  EXPECT_STREQ("Unexpected '12x' string in number value", string->what());
}

TEST(ReaderTest, DeepArraysAreRead) {
  const std::string text =
      "{\"a\":" + std::string(deep_levels, '[') + "1" + std::string(deep_levels, ']') + "}";
  const JsonOutcome outcome = read_json_whole(text);
  EXPECT_TRUE(outcome.is_closed);
  EXPECT_TRUE(outcome.object == Object({{"a", nested_arrays(deep_levels, 1)}}));
}

TEST(ReaderTest, DeepObjectsAreReadAndWritten) {
  std::string text;
  for (int level = 0; level < deep_levels; ++level) text += "{\"a\":";
  text += "1" + std::string(deep_levels, '}');
  const JsonOutcome outcome = read_json_whole(text);
  EXPECT_TRUE(outcome.is_closed);
  std::ostringstream out;
  out << outcome.object;
  EXPECT_TRUE(out.str() == text);
}

TEST(ReaderTest, NestingThatNeverEndsIsTakenDown) {
  const JsonOutcome outcome = read_json_whole("{\"a\":" + std::string(deep_levels, '['));
  EXPECT_FALSE(outcome.is_closed);
  EXPECT_EQ(Json::kind_array, outcome.object.at("a").kind());
}

// Decimals of up to ten digits, of any magnitude at which they are written with a point.
rc::Gen<Value> decimals() {
  const auto decimal = [](long long digits, int power) {
    const double number = static_cast<double>(digits);
    return Value(power < 0 ? number / std::pow(10.0, -power) : number * std::pow(10.0, power));
  };
  return rc::gen::apply(decimal, rc::gen::inRange(-9999999999LL, 10000000000LL),
                        rc::gen::oneOf(rc::gen::inRange(-4, 4), rc::gen::inRange(0, 290)));
}

rc::Gen<std::string> byte_strings() {
  return rc::gen::container<std::string>(rc::gen::arbitrary<char>());
}

rc::Gen<Value> leaves() {
  return rc::gen::oneOf(
      rc::gen::just(Value()),
      rc::gen::map(rc::gen::arbitrary<bool>(), [](bool b) { return Value(b); }),
      rc::gen::map(rc::gen::arbitrary<int>(), [](int i) { return Value(i); }), decimals(),
      rc::gen::map(byte_strings(), [](std::string s) { return Value(std::move(s)); }));
}

rc::Gen<Value> values(int depth) {
  if (depth == 0) return leaves();
  const auto inner = rc::gen::scale(0.3, values(depth - 1));  // fewer items, the deeper they lie
  return rc::gen::oneOf(leaves(),
                        rc::gen::map(rc::gen::container<std::vector<Value>>(inner),
                                     [](const std::vector<Value>& items) {
                                       return Value(Array(items.begin(), items.end()));
                                     }),
                        rc::gen::map(rc::gen::container<Object>(byte_strings(), inner),
                                     [](Object map) { return Value(std::move(map)); }));
}

RC_GTEST_PROP(ReaderTest, WhatIsWrittenIsReadBack, ()) {
  const Object object{{"top", *values(3)}};
  const JsonOutcome outcome = read_json_whole(text_of(object));
  RC_ASSERT(outcome.error.empty());
  RC_ASSERT(outcome.is_closed);
  RC_ASSERT(outcome.object == object);
}

RC_GTEST_PROP(ReaderTest, SlicesMakeNoDifference, (const std::vector<unsigned char>& sizes)) {
  std::string text = text_of(Object{{"top", *values(2)}});
  // Some texts are damaged.
  if (*rc::gen::arbitrary<bool>()) {
    text[*rc::gen::inRange<std::size_t>(0, text.size())] =
        *rc::gen::element('"', '}', ',', 'x', '\\', '1');
  }
  std::size_t slice = 0;
  const auto size = [&](std::size_t) {
    return sizes.empty() ? text.size() : std::size_t{1} + sizes[slice++ % sizes.size()] % 7U;
  };
  RC_ASSERT(read_json_in_slices(text, size) == read_json_whole(text));
}

}  // namespace
