// Values written into properties.
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>
#include <vrelio/foundation/error.h>
#include <vrelio/foundation/propstring.h>
#include <vrelio/remote/property_bridge.h>

#include <cmath>
#include <limits>
#include <map>
#include <string>
#include <vector>

#include "foundation/scoped_codeset.h"
#include "prop/every_kind.h"
#include "prop/generators.h"
#include "prop/nested_cells.h"
#include "remote/trees.h"
#include "support/deep_value.h"
#include "support/expect_error.h"

using Json::Array;
using Json::Object;
using Json::set_value;
using Json::Value;

namespace {

using namespace Vrel::testing;

constexpr int array_flag = Vrel::prop_array_flag;
constexpr int int_min = std::numeric_limits<int>::min();
constexpr int int_max = std::numeric_limits<int>::max();

// --- Words

// clang-format off
const std::map<int, std::string> words = {
    {0x1, "8 bit unsigned integer"},
    {0x2, "8 bit signed integer"},
    {0x4, "16 bit unsigned integer"},
    {0x8, "16 bit signed integer"},
    {0x10, "32 bit unsigned integer"},
    {0x20, "32 bit signed integer"},
    {0x40, "decimal"},
    {0x80, "decimal"},
    {0x1000, "64 bit unsigned integer"},
    {0x2000, "64 bit signed integer"},
    {0x8000, "structure"},
    {0x10000, "boolean"},
    {0x20000, "string"},
    {0x1 | array_flag, "8 bit unsigned integer array"},
    {0x2 | array_flag, "8 bit signed integer array"},
    {0x4 | array_flag, "16 bit unsigned integer array"},
    {0x8 | array_flag, "16 bit signed integer array"},
    {0x10 | array_flag, "32 bit unsigned integer array"},
    {0x20 | array_flag, "32 bit signed integer array"},
    {0x40 | array_flag, "decimal array"},
    {0x80 | array_flag, "decimal array"},
    {0x1000 | array_flag, "64 bit unsigned integer array"},
    {0x2000 | array_flag, "64 bit signed integer array"},
    {0x4000 | array_flag, "array"},
    {0x8000 | array_flag, "structure array"},
    {0x10000 | array_flag, "boolean array"},
    {0x20000 | array_flag, "string array"},
};
// clang-format on

std::string wrong_type(int id) {
  const auto word = words.find(id);
  return "Property has " + (word == words.end() ? "unsupported" : word->second) + " type";
}

void expect_wrong_type(const Value& value, const VProp& prop) {
  VProp target(prop);
  SCOPED_TRACE(value);
  EXPECT_STANDARD_ERROR(set_value(value, target), std::invalid_argument,
                        wrong_type(prop.get_id()).c_str());
  EXPECT_TRUE(target == prop);
}

TEST(PropertyWriteTest, NullGoesNowhereAndTheErrorNamesTheKind) {
  std::size_t with_word = 0;
  for (const Kind& kind : every_kind()) {
    SCOPED_TRACE(kind);
    expect_wrong_type(Value(), kind.sample);
    with_word += words.count(kind.id);
  }
  EXPECT_EQ(words.size(), with_word);
}

TEST(PropertyWriteTest, NothingGoesIntoAnEmptyProperty) {
  for (const Value& value :
       {Value(), Value(true), Value(1), Value(1.5), Value("a"), Value(Array{}), Value(Object{})}) {
    VProp prop;
    EXPECT_STANDARD_ERROR(set_value(value, prop), std::invalid_argument,
                          "Property has unsupported type");
    EXPECT_TRUE(prop.empty());
  }
}

bool takes(const Kind& kind, const Value& value) {
  if (words.count(kind.id) == 0) return false;
  if (kind.is_array) return value.kind() == Json::kind_array;
  switch (value.kind()) {
    case Json::kind_boolean:
      return kind.group == KindGroup::logical;
    case Json::kind_integer:
    case Json::kind_decimal:
      return kind.group == KindGroup::integer || kind.group == KindGroup::decimal;
    case Json::kind_string:
      return kind.name == "char";
    case Json::kind_map:
      return kind.name == "struct";
    default:
      return false;
  }
}

TEST(PropertyWriteTest, AValueGoesIntoItsKindsAndNoOther) {
  for (const Kind& kind : every_kind()) {
    SCOPED_TRACE(kind);
    for (const Value& value :
         {Value(true), Value(1), Value(1.0), Value("a"), Value(Array{}), Value(Object{})}) {
      if (takes(kind, value)) {
        VProp target(kind.plain);
        EXPECT_NO_THROW(set_value(value, target)) << value;
      } else {
        expect_wrong_type(value, kind.sample);
      }
    }
  }
}

TEST(PropertyWriteTest, AnItemThatDoesNotGoIntoAnArrayIsNamedByTheArray) {
  for (const Kind& kind : every_numeric_kind()) {
    if (!kind.is_array || kind.group == KindGroup::complex) continue;
    SCOPED_TRACE(kind);
    for (const Value& item : {Value(), Value("a"), Value(Array{Value(1)}), Value(Object{})}) {
      expect_wrong_type(Array{item, item}, kind.sample);
    }
  }
  expect_wrong_type(Array{Value(true), Value(true)}, VProparray<int>{1, 2});
  expect_wrong_type(Array{Value(1), Value(1)}, VProparray<bool>{true, false});
  expect_wrong_type(Array{Value(1)}, VProparray<VPropstring>{L"a"});
}

// --- Scalars

bool changes(const Value& value, const VProp& from, const VProp& to) {
  VProp prop(from);
  const bool is_changed = set_value(value, prop);
  EXPECT_TRUE(prop == to) << value;
  return is_changed;
}

TEST(PropertyWriteTest, AScalarTellsWhetherItChanged) {
  EXPECT_TRUE(changes(true, VProp(false), VProp(true)));
  EXPECT_FALSE(changes(true, VProp(true), VProp(true)));
  EXPECT_TRUE(changes(2, VProp(1), VProp(2)));
  EXPECT_FALSE(changes(2, VProp(2), VProp(2)));
  EXPECT_TRUE(changes(2.0, VProp(1), VProp(2)));
  EXPECT_FALSE(changes(2.0, VProp(2), VProp(2)));
  EXPECT_TRUE(changes(2, VProp(1.5), VProp(2.0)));
  EXPECT_FALSE(changes(2, VProp(2.0), VProp(2.0)));
  EXPECT_TRUE(changes("b", VProp("a"), VProp("b")));
  EXPECT_FALSE(changes("b", VProp("b"), VProp("b")));
}

TEST(PropertyWriteTest, ANumberIsWrittenIntoEachRealKind) {
  for (const Kind& kind : every_numeric_kind()) {
    if (kind.is_array || (kind.group != KindGroup::integer && kind.group != KindGroup::decimal)) {
      continue;
    }
    SCOPED_TRACE(kind);
    for (const Value& number : {Value(42), Value(42.0)}) {
      EXPECT_TRUE(changes(number, kind.plain, kind.of_numbers({42})));
      EXPECT_FALSE(changes(number, kind.of_numbers({42}), kind.of_numbers({42})));
    }
  }
}

TEST(PropertyWriteTest, WhatEqualsThePresentDecimalIsNoChange) {
  EXPECT_FALSE(changes(0.1, VProp(0.1F), VProp(0.1F)));
  EXPECT_TRUE(changes(0.1, VProp(0.2F), VProp(0.1F)));
  VProp zero(0.0);
  EXPECT_FALSE(set_value(-0.0, zero));
  EXPECT_FALSE(std::signbit(zero.get<double>()));
  VProp not_a_number(std::nan(""));
  EXPECT_TRUE(set_value(std::nan(""), not_a_number));
}

TEST(PropertyWriteTest, ASingleTakesTheNearestNumberThatItHas) {
  EXPECT_TRUE(changes(0.1, VProp(0.0F), VProp(0.1F)));
  EXPECT_TRUE(changes(16777217, VProp(0.0F), VProp(16777216.0F)));
  EXPECT_TRUE(changes(1e300, VProp(0.0F), VProp(HUGE_VALF)));
  EXPECT_TRUE(changes(-1e300, VProp(0.0F), VProp(-HUGE_VALF)));
}

// Numbers at and beyond both ends of an integer type.
struct Range {
  const char* name;
  std::vector<std::pair<Value, VProp>> fitting;
  std::vector<Value> beyond;
};

template <class T>
Range small_range(const char* name) {
  constexpr int first = std::numeric_limits<T>::min();
  constexpr int last = std::numeric_limits<T>::max();
  return {name,
          {{Value(first), VProp(static_cast<T>(first))},
           {Value(last), VProp(static_cast<T>(last))},
           {Value(static_cast<double>(first)), VProp(static_cast<T>(first))},
           {Value(static_cast<double>(last)), VProp(static_cast<T>(last))}},
          {Value(first - 1), Value(last + 1), Value(int_min), Value(int_max), Value(first - 1.0),
           Value(last + 1.0)}};
}

std::vector<Range> ranges() {
  const double after_int64 = std::ldexp(1, 63);
  const double after_uint64 = std::ldexp(1, 64);
  constexpr long long int64_min = std::numeric_limits<long long>::min();
  return {
      small_range<unsigned char>("uint8"),
      small_range<char>("int8"),
      small_range<unsigned short>("uint16"),
      small_range<short>("int16"),
      {"uint32",
       {{Value(0), VProp(0U)},
        {Value(int_max), VProp(2147483647U)},
        {Value(2147483648.0), VProp(2147483648U)},
        {Value(4294967295.0), VProp(4294967295U)}},
       {Value(-1), Value(int_min), Value(-1.0), Value(4294967296.0)}},
      {"int32",
       {{Value(int_min), VProp(int_min)},
        {Value(int_max), VProp(int_max)},
        {Value(-2147483648.0), VProp(int_min)},
        {Value(2147483647.0), VProp(int_max)}},
       {Value(-2147483649.0), Value(2147483648.0)}},
      {"uint64",
       {{Value(0), VProp(0ULL)},
        {Value(int_max), VProp(2147483647ULL)},
        {Value(after_int64), VProp(1ULL << 63)},
        {Value(std::nextafter(after_uint64, 0)), VProp(0xFFFFFFFFFFFFF800ULL)}},
       {Value(-1), Value(int_min), Value(-1.0), Value(after_uint64)}},
      {"int64",
       {{Value(int_min), VProp(-2147483648LL)},
        {Value(int_max), VProp(2147483647LL)},
        {Value(-after_int64), VProp(int64_min)},
        {Value(std::nextafter(after_int64, 0)), VProp(0x7FFFFFFFFFFFFC00LL)}},
       {Value(after_int64), Value(std::nextafter(-after_int64, -HUGE_VAL))}},
  };
}

void expect_bad_cast(const Value& value, const VProp& prop) {
  VProp target(prop);
  SCOPED_TRACE(value);
  EXPECT_STANDARD_ERROR(set_value(value, target), std::bad_cast, "bad cast");
  EXPECT_TRUE(target == prop);
}

// A property of the kind of `like` with another content.
VProp other_than(const VProp& like) {
  const Kind& kind = kind_of(like.get_id());
  const VProp one = kind.of_numbers({1.0});
  return like == one ? kind.of_numbers({2.0}) : one;
}

TEST(PropertyWriteTest, AnIntegerPropertyTakesNumbersUpToBothEnds) {
  for (const Range& range : ranges()) {
    SCOPED_TRACE(range.name);
    for (const auto& [value, expected] : range.fitting) {
      EXPECT_TRUE(changes(value, other_than(expected), expected));
      EXPECT_FALSE(changes(value, expected, expected));
    }
  }
}

TEST(PropertyWriteTest, ANumberBeyondAnIntegerPropertyIsABadCast) {
  for (const Range& range : ranges()) {
    SCOPED_TRACE(range.name);
    const VProp prop = other_than(range.fitting.front().second);
    for (const Value& value : range.beyond) expect_bad_cast(value, prop);
  }
  expect_bad_cast(300, VProp(static_cast<unsigned char>(1)));
}

TEST(PropertyWriteTest, ADecimalThatIsNoIntegerIsABadCast) {
  for (const Range& range : ranges()) {
    SCOPED_TRACE(range.name);
    const VProp prop = other_than(range.fitting.front().second);
    for (const double number :
         {1.5, -0.5, 0.1, 5e-324, 1e300, -1e300, HUGE_VAL, -HUGE_VAL, std::nan("")}) {
      expect_bad_cast(number, prop);
    }
  }
}

TEST(PropertyWriteTest, MinusZeroIsZero) {
  EXPECT_TRUE(changes(-0.0, VProp(1U), VProp(0U)));
  EXPECT_TRUE(changes(-0.0, VProp(1), VProp(0)));
}

TEST(PropertyWriteTest, AStringIsInTheLocalEncoding) {
  const VPropstring text(L"10 \xB5m");
  EXPECT_TRUE(changes(text.to(VPropstring::encoding_local), VProp("a"), VProp(text)));
  EXPECT_FALSE(changes(text.to(VPropstring::encoding_local), VProp(text), VProp(text)));
}

TEST(PropertyWriteTest, AStringFollowsTheEncodingOfTheLocale) {
  const ScopedCodeset local("ISO-8859-1");
  EXPECT_TRUE(changes("\xB5m", VProp(L"a"), VProp(L"\xB5m")));
  EXPECT_FALSE(
      changes(Array{"\xB5m"}, VProparray<VPropstring>{L"a"}, VProparray<VPropstring>{L"\xB5m"}));
}

TEST(PropertyWriteTest, AStringMayHoldAZeroByte) {
  const std::string text("a\0b", 3);
  VProp prop("a");
  EXPECT_TRUE(set_value(text, prop));
  EXPECT_EQ(text, Json::get_value(prop).get<std::string>());
}

// --- Who shares the property

TEST(PropertyWriteTest, WhoSharesThePropertyKeepsItsValue) {
  VProp tree;
  tree["a.b"] = 1;
  tree["c{0}"] = 1;
  tree["d(0).e"] = 1;
  tree["f"] = VProparray<int>{1, 2};
  const VProp before(tree);
  set_value(Object{{"a", Object{{"b", Value(2)}}},
                   {"c", Array{Value(2)}},
                   {"d", Array{Object{{"e", Value(2)}}}},
                   {"f", Array{Value(2), Value(3)}}},
            tree);
  EXPECT_EQ("{\"a\":{\"b\":2},\"c\":[2],\"d\":[{\"e\":2}],\"f\":[2,3]}",
            text_of(Json::get_value(tree)));
  EXPECT_EQ("{\"a\":{\"b\":1},\"c\":[1],\"d\":[{\"e\":1}],\"f\":[1,2]}",
            text_of(Json::get_value(before)));
}

TEST(PropertyWriteTest, AScalarBecomesTheSoleOwner) {
  VProp prop(1);
  const VProp other(prop);
  EXPECT_FALSE(set_value(1, prop));
  EXPECT_NE(std::as_const(prop).value_ptr(), other.value_ptr());
}

// --- Arrays

TEST(PropertyWriteTest, AnArrayGivesFalseAlsoWhereItChanges) {
  EXPECT_FALSE(changes(Array{Value(3), Value(4)}, VProparray<int>{1, 2}, VProparray<int>{3, 4}));
  EXPECT_FALSE(changes(Array{Value(1), Value(2)}, VProparray<int>{1, 2}, VProparray<int>{1, 2}));
  EXPECT_FALSE(
      changes(Array{Value(3)}, VProparray<VProp>(1, VProp(1)), VProparray<VProp>(1, VProp(3))));
  EXPECT_FALSE(changes(Array{}, VProparray<int>(), VProparray<int>()));
}

TEST(PropertyWriteTest, ItemsOfEachPlainKindAreWritten) {
  for (const Kind& kind : every_numeric_kind()) {
    if (!kind.is_array || kind.group == KindGroup::complex) continue;
    SCOPED_TRACE(kind);
    const bool is_logical = kind.group == KindGroup::logical;
    const Array items = is_logical ? Array{false, true} : Array{Value(0), Value(1.0)};
    EXPECT_FALSE(changes(items, kind.sample, kind.of_numbers({0, 1})));
  }
  EXPECT_FALSE(changes(Array{"c", "d"}, VProparray<VPropstring>{L"a", L"b"},
                       VProparray<VPropstring>{L"c", L"d"}));
}

Value parsed_lists(const std::vector<std::vector<int>>& lists) {
  Array outer;
  for (const std::vector<int>& list : lists) {
    Array inner;
    for (const int number : list) inner.emplace_back(number);
    outer.emplace_back(inner);
  }
  return outer;
}

TEST(PropertyWriteTest, TheOutermostListIsTheLastDimension) {
  const VProp zeros = shaped<int>({2, 1, 3}, {0, 0, 0, 0, 0, 0});
  EXPECT_FALSE(changes(parsed_lists({{1, 2}, {3, 4}, {5, 6}}), zeros,
                       shaped<int>({2, 1, 3}, {1, 2, 3, 4, 5, 6})));
}

TEST(PropertyWriteTest, AnArrayKeepsItsShape) {
  VProp prop = shaped<int>({2, 1, 3}, {0, 0, 0, 0, 0, 0});
  set_value(parsed_lists({{1, 2}, {3, 4}, {5, 6}}), prop);
  EXPECT_EQ((std::vector<unsigned int>{2, 1, 3}), prop.get_arr(true)->get_size(true));
}

TEST(PropertyWriteTest, AListOfAnotherLengthIsABadCastAndResizesNothing) {
  const VProp three = VProparray<int>{1, 2, 3};
  expect_bad_cast(Array{Value(1), Value(2), Value(3), Value(4)}, three);
  expect_bad_cast(Array{Value(4), Value(5)}, three);
  expect_bad_cast(Array{}, three);
  expect_bad_cast(Array{Value(1)}, VProparray<int>());
  expect_bad_cast(Array{}, VProparray<int>{1});
  expect_bad_cast(Array{Value(1), Value(2)}, VProparray<int>{1});
}

TEST(PropertyWriteTest, AListInAListOfAnotherLengthIsABadCast) {
  const VProp prop = shaped<int>({2, 3}, {0, 0, 0, 0, 0, 0});
  expect_bad_cast(parsed_lists({{1, 2}, {3, 4}}), prop);
  expect_bad_cast(parsed_lists({{1, 2, 3}, {4, 5, 6}}), prop);
  expect_bad_cast(parsed_lists({{1, 2}, {3, 4}, {5}}), prop);
  expect_bad_cast(parsed_lists({{1, 2}, {3, 4}, {5, 6, 7}}), prop);
}

TEST(PropertyWriteTest, AnItemThatShouldBeAListIsABadCast) {
  const VProp prop = shaped<int>({2, 2}, {0, 0, 0, 0});
  for (const Value& item : {Value(), Value(1), Value("a"), Value(Object{})}) {
    expect_bad_cast(Array{Array{Value(1), Value(2)}, item}, prop);
  }
  expect_bad_cast(Array{Value(1), Value(2), Value(3), Value(4)}, prop);
}

TEST(PropertyWriteTest, AnItemThatDoesNotFitIsABadCastAndChangesNothing) {
  expect_bad_cast(Array{Value(5), Value(300)}, VProparray<unsigned char>{1, 2});
  expect_bad_cast(Array{Value(5), Value(1.5)}, VProparray<int>{1, 2});
}

TEST(PropertyWriteTest, CellsTakeWhatTheirValuesTake) {
  const VProp cells = shaped<VProp>({2, 2}, {1, "a", true, VProparray<int>{1, 2}});
  EXPECT_FALSE(
      changes(Array{Array{Value(2), Value("b")}, Array{Value(false), Array{Value(3), Value(4)}}},
              cells, shaped<VProp>({2, 2}, {2, "b", false, VProparray<int>{3, 4}})));
}

TEST(PropertyWriteTest, CellsAreBoundToTheirShape) {
  const VProp cells = VProparray<VProp>(3, VProp(1));
  expect_bad_cast(Array{Value(2), Value(3)}, cells);
  expect_bad_cast(Array{Value(2), Value(3), Value(4), Value(5)}, cells);
}

TEST(PropertyWriteTest, ACellThatFailsLeavesThoseBeforeItChanged) {
  VProp cells = VProparray<VProp>{VProp(1), VProp(true), VProp(3)};
  EXPECT_STANDARD_ERROR(set_value(Array{Value(7), Value(7), Value(7)}, cells),
                        std::invalid_argument, "Property has boolean type");
  EXPECT_EQ("[7,true,3]", text_of(Json::get_value(cells)));
}

TEST(PropertyWriteTest, AnEmptyCellTakesNothing) {
  VProp cells = VProparray<VProp>(2);
  EXPECT_STANDARD_ERROR(set_value(Array{Value(), Value()}, cells), std::invalid_argument,
                        "Property has unsupported type");
}

VProp two_structs() {
  return VProparray<VPropstruct>{VPropstruct{{"a", VProp(1)}}, VPropstruct{{"a", VProp(2)}}};
}

TEST(PropertyWriteTest, StructsOfAnArrayTakeMaps) {
  VProp structs = two_structs();
  EXPECT_FALSE(set_value(Array{Object{{"a", Value(3)}}, Object{}}, structs));
  EXPECT_EQ(R"([{"a":3},{"a":2}])", text_of(Json::get_value(structs)));
}

TEST(PropertyWriteTest, StructsOfAnArrayTakeNothingElse) {
  for (const Value& item : {Value(), Value(true), Value(1), Value("a"), Value(Array{})}) {
    VProp structs = two_structs();
    EXPECT_STANDARD_ERROR(set_value(Array{Object{}, item}, structs), std::invalid_argument,
                          "Property has structure type");
  }
  expect_bad_cast(Array{Object{}}, two_structs());
}

TEST(PropertyWriteTest, AMemberOfAStructOfAnArrayIsNamedInErrors) {
  VProp structs = two_structs();
  EXPECT_STANDARD_ERROR(
      set_value(Array{Object{{"a", Value(3)}}, Object{{"a", Value("b")}}}, structs),
      std::invalid_argument,
      "Invalid argument for property 'a'\n"
      "Property has 32 bit signed integer type");
  EXPECT_STANDARD_ERROR(set_value(Array{Object{}, Object{{"b", Value(1)}}}, structs),
                        std::invalid_argument, "No property 'b'");
  EXPECT_EQ(R"([{"a":3},{"a":2}])", text_of(Json::get_value(structs)));
}

TEST(PropertyWriteTest, AnArrayThatLostItsShapeIsRefused) {
  VProp prop = misshapen();
  EXPECT_VREL_ERROR(set_value(Array{}, prop), "Invalid size vector in property array!", -1);
}

// --- Structs

VProp sample_struct() {
  VProp tree;
  tree["a"] = 1;
  tree["b.c"] = static_cast<unsigned char>(2);
  tree["b.d.e"] = true;
  tree["z"] = "text";
  return tree;
}

TEST(PropertyWriteTest, AMapGivesFalseAlsoWhereItChangesMembers) {
  VProp tree = sample_struct();
  EXPECT_FALSE(set_value(Object{{"a", Value(5)}}, tree));
  EXPECT_EQ(5, tree["a"].get<int>());
  EXPECT_FALSE(set_value(Object{}, tree));
}

TEST(PropertyWriteTest, MembersThatAreNotNamedStay) {
  VProp tree = sample_struct();
  set_value(Object{{"b", Object{{"c", Value(9)}}}}, tree);
  EXPECT_EQ(R"({"a":1,"b":{"c":9,"d":{"e":true}},"z":"text"})", text_of(Json::get_value(tree)));
}

TEST(PropertyWriteTest, OfTwoMembersOfOneNameTheFirstIsWritten) {
  VProp tree = VPropstruct{{"a", VProp(1)}, {"a", VProp(2)}};
  set_value(Object{{"a", Value(5)}}, tree);
  EXPECT_TRUE(tree == VProp(VPropstruct{{"a", VProp(5)}, {"a", VProp(2)}}));
}

TEST(PropertyWriteTest, AKeyThatNamesNoMemberIsRefused) {
  VProp tree = sample_struct();
  EXPECT_STANDARD_ERROR(set_value(Object{{"A", Value(1)}}, tree), std::invalid_argument,
                        "No property 'A'");
  EXPECT_STANDARD_ERROR(set_value(Object{{"", Value(1)}}, tree), std::invalid_argument,
                        "No property ''");
  EXPECT_STANDARD_ERROR(set_value(Object{{"b.c", Value(1)}}, tree), std::invalid_argument,
                        "No property 'b.c'");
  EXPECT_STANDARD_ERROR(set_value(Object{{"%s%n", Value(1)}}, tree), std::invalid_argument,
                        "No property '%s%n'");
  EXPECT_TRUE(tree == sample_struct());
}

TEST(PropertyWriteTest, AnErrorInAMemberHasItsName) {
  VProp tree = sample_struct();
  EXPECT_STANDARD_ERROR(set_value(Object{{"z", Value(1)}}, tree), std::invalid_argument,
                        "Invalid argument for property 'z'\nProperty has string type");
  EXPECT_STANDARD_ERROR(set_value(Object{{"a", Value(1.5)}}, tree), std::invalid_argument,
                        "Invalid argument for property 'a'\nbad cast");
}

TEST(PropertyWriteTest, AnErrorInStructsInEachOtherHasAllNamesTheOutermostFirst) {
  VProp tree = sample_struct();
  EXPECT_STANDARD_ERROR(set_value(Object{{"b", Object{{"c", Value(300)}}}}, tree),
                        std::invalid_argument,
                        "Invalid argument for property 'b'\n"
                        "Invalid argument for property 'c'\nbad cast");
  EXPECT_STANDARD_ERROR(set_value(Object{{"b", Object{{"d", Object{{"x", Value(1)}}}}}}, tree),
                        std::invalid_argument,
                        "Invalid argument for property 'b'\n"
                        "Invalid argument for property 'd'\nNo property 'x'");
}

TEST(PropertyWriteTest, AnErrorBehindOtherMembersHasItsOwnNamesOnly) {
  VProp tree = sample_struct();
  EXPECT_STANDARD_ERROR(
      set_value(Object{{"b", Object{{"d", Object{{"e", Value(false)}}}}}, {"y", Value(1)}}, tree),
      std::invalid_argument, "No property 'y'");
  EXPECT_STANDARD_ERROR(
      set_value(Object{{"b", Object{{"d", Object{{"e", Value(false)}}}}}, {"z", Value(1)}}, tree),
      std::invalid_argument, "Invalid argument for property 'z'\nProperty has string type");
}

TEST(PropertyWriteTest, AnErrorInCellsOfAMemberHasItsName) {
  VProp tree;
  tree["a{1}.b"] = 1;
  tree["a{0}"] = 2;
  EXPECT_STANDARD_ERROR(
      set_value(Object{{"a", Array{Value(1), Object{{"b", Value("x")}}}}}, tree),
      std::invalid_argument,
      "Invalid argument for property 'a'\n"
      "Invalid argument for property 'b'\nProperty has 32 bit signed integer type");
}

TEST(PropertyWriteTest, AnErrorOfTheLibraryInAMemberBecomesAnInvalidArgument) {
  VProp tree = VPropstruct{{"a", misshapen()}};
  const std::string last_error = vrel_get_last_error_string();
  EXPECT_STANDARD_ERROR(
      set_value(Object{{"a", Array{}}}, tree), std::invalid_argument,
      "Invalid argument for property 'a'\nInvalid size vector in property array!");
  EXPECT_EQ(last_error, vrel_get_last_error_string());
}

TEST(PropertyWriteTest, AnErrorLeavesTheMembersBeforeItChanged) {
  VProp tree = sample_struct();
  EXPECT_STANDARD_ERROR(set_value(Object{{"a", Value(7)},
                                         {"b", Object{{"c", Value(8)}, {"d", Value(1)}}},
                                         {"z", Value("new")}},
                                  tree),
                        std::invalid_argument,
                        "Invalid argument for property 'b'\n"
                        "Invalid argument for property 'd'\nProperty has structure type");
  EXPECT_EQ(R"({"a":7,"b":{"c":8,"d":{"e":true}},"z":"text"})", text_of(Json::get_value(tree)));
}

TEST(PropertyWriteTest, AStructOfManyMembersIsWrittenInOneGo) {
  VPropstruct fields;
  Value map;
  for (int i = 0; i < 50000; ++i) {
    fields.emplace_back(std::to_string(i), VProp(i));
    map[std::to_string(i)] = i + 1;
  }
  VProp tree(fields);
  EXPECT_FALSE(set_value(map, tree));
  EXPECT_TRUE(Json::get_value(tree) == map);
}

// --- Depth

constexpr int levels = 200000;

TEST(PropertyWriteTest, DepthTakesNoStack) {
  VProp tree = nested_structs(levels, VProp(1));
  Value value(2);
  for (int i = 0; i < levels; ++i) {
    Object map;
    map.emplace("a", std::move(value));
    value = std::move(map);
  }
  EXPECT_FALSE(set_value(value, tree));
  EXPECT_TRUE(Json::get_value(tree) == value);
}

TEST(PropertyWriteTest, AnErrorInTheDepthHasALineForEachName) {
  VProp tree = nested_structs(levels, VProp(1));
  const Value value = Json::get_value(nested_structs(levels, VProp(true)));
  std::string expected;
  for (int i = 0; i < levels; ++i) expected += "Invalid argument for property 'a'\n";
  expected += "Property has 32 bit signed integer type";
  try {
    set_value(value, tree);
    ADD_FAILURE() << "nothing raised";
  } catch (const std::invalid_argument& error) {
    EXPECT_TRUE(error.what() == expected);
  }
}

TEST(PropertyWriteTest, AValueDeeperThanThePropertyIsRefused) {
  expect_wrong_type(nested_arrays(deep_levels, Value(1)), VProp(1));
  expect_wrong_type(nested_arrays(deep_levels, Value(1)), VProparray<int>{1});
  expect_wrong_type(nested_maps(deep_levels, Value(1)), VProp(1));
}

// --- Both ways

VProp any_scalar() {
  const std::vector<Kind>& kinds = every_kind();
  const Kind& kind =
      kinds[static_cast<std::size_t>(number_between(0, static_cast<int>(kinds.size()) - 1))];
  if (!kind.is_numeric() || kind.group == KindGroup::complex) return VProp(any_text());
  const std::vector<std::complex<double>> numbers(static_cast<std::size_t>(number_between(1, 6)),
                                                  number_between(0, 100));
  return kind.of_numbers(numbers);
}

VProp any_tree(int depth) {
  if (depth == 0 || chance(3)) return any_scalar();
  const int count = number_between(0, 3);
  if (chance(2)) {
    VProparray<VProp> cells;
    for (int i = 0; i < count; ++i) cells.push_back(any_tree(depth - 1));
    return cells;
  }
  VPropstruct fields;
  for (int i = 0; i < count; ++i) fields.emplace_back(std::to_string(i), any_tree(depth - 1));
  return fields;
}

RC_GTEST_PROP(PropertyWriteTest, WhatWasReadGoesBackWithoutAChange, ()) {
  const VProp tree = any_tree(4);
  VProp target(tree);
  RC_ASSERT(!set_value(Json::get_value(tree), target));
  RC_ASSERT(target == tree);
}

// Only the numbers, truths and texts of the two differ.
VProp cleared(const VProp& tree) {
  if (tree.get_id() == 0x8000) {
    VPropstruct fields = tree.get<VPropstruct>();
    for (auto& field : fields) field.second = cleared(field.second);
    return fields;
  }
  if (tree.get_id() == (0x4000 | array_flag)) {
    VProparray<VProp> cells = tree.get<VProparray<VProp>>();
    for (VProp& cell : cells) cell = cleared(cell);
    return cells;
  }
  const Kind& kind = kind_of(tree.get_id());
  if (!kind.is_numeric()) return kind.plain;
  return kind.of_numbers(
      std::vector<std::complex<double>>(kind.is_array ? tree.get_arr(true)->count() : 1));
}

RC_GTEST_PROP(PropertyWriteTest, WhatWasReadIsWrittenIntoATreeOfTheSameForm, ()) {
  const VProp tree = any_tree(4);
  VProp target = cleared(tree);
  set_value(Json::get_value(tree), target);
  RC_ASSERT(target == tree);
}

}  // namespace
