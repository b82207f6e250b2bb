// Properties as values.
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>
#include <vrelio/foundation/propstring.h>
#include <vrelio/remote/property_bridge.h>

#include <cmath>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "foundation/scoped_codeset.h"
#include "prop/every_kind.h"
#include "prop/generators.h"
#include "prop/nested_cells.h"
#include "remote/trees.h"
#include "support/expect_error.h"

using Json::Array;
using Json::Object;
using Json::Value;

namespace {

using namespace Vrel::testing;

std::string read(const VProp& prop) { return text_of(Json::get_value(prop)); }

// --- Scalars

TEST(PropertyReadTest, EachKindHasItsValueOrNone) {
  for (const Kind& kind : every_kind()) {
    SCOPED_TRACE(kind);
    const bool is_plain = kind.is_numeric() && kind.group != KindGroup::complex;
    const bool is_other = kind.name == "char" || kind.name == "struct" || kind.name == "cell";
    if (is_plain || is_other) {
      EXPECT_NO_THROW(Json::get_value(kind.plain));
    } else {
      EXPECT_STANDARD_ERROR(Json::get_value(kind.sample), std::invalid_argument,
                            "Property has unsupported type");
    }
  }
}

TEST(PropertyReadTest, ANumberHasTheKindOfItsGroup) {
  for (const Kind& kind : every_numeric_kind()) {
    if (kind.group == KindGroup::complex) continue;
    SCOPED_TRACE(kind);
    const std::string one = kind.group == KindGroup::integer   ? "1"
                            : kind.group == KindGroup::decimal ? "1.0"
                                                               : "true";
    const std::string zero = kind.group == KindGroup::integer   ? "0"
                             : kind.group == KindGroup::decimal ? "0.0"
                                                                : "false";
    EXPECT_EQ(kind.is_array ? "[" + one + "," + zero + "]" : one, read(kind.sample));
  }
}

TEST(PropertyReadTest, ASmallIntegerReadsAtBothEnds) {
  EXPECT_EQ("255", read(VProp(static_cast<unsigned char>(255))));
  EXPECT_EQ("-128", read(VProp(static_cast<char>(-128))));
  EXPECT_EQ("127", read(VProp(static_cast<char>(127))));
  EXPECT_EQ("65535", read(VProp(static_cast<unsigned short>(65535))));
  EXPECT_EQ("-32768", read(VProp(static_cast<short>(-32768))));
  EXPECT_EQ("-2147483648", read(VProp(std::numeric_limits<int>::min())));
  EXPECT_EQ("2147483647", read(VProp(std::numeric_limits<int>::max())));
}

TEST(PropertyReadTest, AnIntegerThatFitsReads) {
  EXPECT_EQ("5", read(VProp(5ULL)));
  EXPECT_EQ("2147483647", read(VProp(2147483647U)));
  EXPECT_EQ("2147483647", read(VProp(2147483647ULL)));
  EXPECT_EQ("2147483647", read(VProp(2147483647LL)));
  EXPECT_EQ("-2147483648", read(VProp(-2147483648LL)));
}

TEST(PropertyReadTest, AnIntegerThatDoesNotFitIsABadCast) {
  const VProp beyond[] = {VProp(1ULL << 40),
                          VProp(1U << 31),
                          VProp(0xFFFFFFFFU),
                          VProp(1ULL << 31),
                          VProp(0xFFFFFFFFULL),
                          VProp(1ULL << 32),
                          VProp(std::numeric_limits<unsigned long long>::max()),
                          VProp(1LL << 31),
                          VProp(1LL << 32),
                          VProp(-(1LL << 31) - 1),
                          VProp(-(1LL << 32)),
                          VProp(std::numeric_limits<long long>::min()),
                          VProp(std::numeric_limits<long long>::max())};
  for (const VProp& prop : beyond) {
    EXPECT_STANDARD_ERROR(Json::get_value(prop), std::bad_cast, "bad cast");
  }
}

TEST(PropertyReadTest, AnElementThatDoesNotFitIsABadCast) {
  EXPECT_STANDARD_ERROR(Json::get_value(VProp(VProparray<unsigned int>{1, 1U << 31})),
                        std::bad_cast, "bad cast");
}

TEST(PropertyReadTest, ASingleIsWidened) {
  EXPECT_EQ(static_cast<double>(0.1F), Json::get_value(VProp(0.1F)).get<double>());
  EXPECT_EQ(0.1, Json::get_value(VProp(0.1)).get<double>());
}

TEST(PropertyReadTest, WhatIsNotFiniteIsADecimal) {
  EXPECT_EQ(HUGE_VAL, Json::get_value(VProp(HUGE_VALF)).get<double>());
  EXPECT_TRUE(std::isnan(Json::get_value(VProp(std::nan(""))).get<double>()));
}

TEST(PropertyReadTest, ATextIsInTheLocalEncoding) {
  const VPropstring text(L"10 \xB5m");
  EXPECT_EQ(text.to(VPropstring::encoding_local), Json::get_value(VProp(text)).get<std::string>());
  EXPECT_EQ("", Json::get_value(VProp("")).get<std::string>());
}

TEST(PropertyReadTest, ATextFollowsTheEncodingOfTheLocale) {
  const ScopedCodeset local("ISO-8859-1");
  EXPECT_EQ("\xB5m", Json::get_value(VProp(L"\xB5m")).get<std::string>());
}

TEST(PropertyReadTest, AnEmptyPropertyHasNoValue) {
  EXPECT_STANDARD_ERROR(Json::get_value(VProp()), std::invalid_argument,
                        "Property has unsupported type");
}

// --- Structs

TEST(PropertyReadTest, AStructIsAMapInTheOrderOfItsKeys) {
  const VProp fields =
      VPropstruct{{"b", VProp(1)}, {"a", VPropstruct{{"c", VProp("d")}}}, {"", VProp(true)}};
  EXPECT_EQ(R"({"":true,"a":{"c":"d"},"b":1})", read(fields));
  EXPECT_EQ("{}", read(VProp(VPropstruct())));
}

TEST(PropertyReadTest, OfTwoMembersOfOneNameTheLaterCounts) {
  EXPECT_EQ(R"({"a":2})", read(VPropstruct{{"a", VProp(1)}, {"a", VProp(2)}}));
  EXPECT_EQ(R"({"a":{"y":2}})", read(VPropstruct{{"a", VPropstruct{{"x", VProp(1)}}},
                                                 {"a", VPropstruct{{"y", VProp(2)}}}}));
  EXPECT_EQ("{\"a\":[2,3]}",
            read(VPropstruct{{"a", VProparray<int>{1}}, {"a", VProparray<int>{2, 3}}}));
  EXPECT_EQ(R"({"a":1})",
            read(VPropstruct{{"a", VProparray<VProp>(3, VProp(5))}, {"a", VProp(1)}}));
}

TEST(PropertyReadTest, AMemberWithoutAValueLeavesTheStructWithoutOne) {
  const VProp tree = VPropstruct{{"a", VPropstruct{{"b", VProp()}}}};
  EXPECT_STANDARD_ERROR(Json::get_value(tree), std::invalid_argument,
                        "Property has unsupported type");
}

TEST(PropertyReadTest, TheFirstOfSeveralErrorsShows) {
  const VProp too_large(1LL << 40);
  const VProp nothing;
  for (const bool is_large_first : {false, true}) {
    const VProp& first = is_large_first ? too_large : nothing;
    const VProp& second = is_large_first ? nothing : too_large;
    const VProp in_structs = VPropstruct{{"z", VPropstruct{{"y", first}}}, {"a", second}};
    const VProp in_cells = VProparray<VProp>{VProparray<VProp>{first, second}, second};
    for (const VProp& tree : {in_structs, in_cells}) {
      if (is_large_first) {
        EXPECT_STANDARD_ERROR(Json::get_value(tree), std::bad_cast, "bad cast");
      } else {
        EXPECT_STANDARD_ERROR(Json::get_value(tree), std::invalid_argument,
                              "Property has unsupported type");
      }
    }
  }
}

// --- Arrays

struct Nesting {
  std::vector<unsigned int> shape;
  const char* text;
};

TEST(PropertyReadTest, TheLastDimensionIsTheOutermostList) {
  const Nesting nestings[] = {
      {{2, 1, 3}, "[[1,2],[3,4],[5,6]]"}, {{2, 3}, "[[1,2],[3,4],[5,6]]"},
      {{3, 2}, "[[1,2,3],[4,5,6]]"},      {{1, 6}, "[1,2,3,4,5,6]"},
      {{6, 1}, "[1,2,3,4,5,6]"},          {{6}, "[1,2,3,4,5,6]"},
      {{1, 1, 6, 1, 1}, "[1,2,3,4,5,6]"}, {{1, 3, 1, 2, 1}, "[[1,2,3],[4,5,6]]"},
  };
  for (const Nesting& nesting : nestings) {
    EXPECT_EQ(nesting.text, read(shaped<int>(nesting.shape, {1, 2, 3, 4, 5, 6})));
  }
  EXPECT_EQ("[[[1,2],[3,4]],[[5,6],[7,8]]]",
            read(shaped<int>({2, 2, 2}, {1, 2, 3, 4, 5, 6, 7, 8})));
}

TEST(PropertyReadTest, AnArrayWithoutAShapeIsAFlatList) {
  EXPECT_EQ("[1,2,3]", read(VProparray<int>{1, 2, 3}));
}

TEST(PropertyReadTest, AnArrayOfOneElementIsAListOfOneItem) {
  EXPECT_EQ("[1]", read(VProparray<int>{1}));
  EXPECT_EQ("[1]", read(shaped<int>({1, 1, 1}, {1})));
}

TEST(PropertyReadTest, AnArrayWithoutElementsIsAnEmptyList) {
  EXPECT_EQ("[]", read(VProparray<int>()));
  EXPECT_EQ("[]", read(shaped<double>({2, 0, 3}, {})));
  EXPECT_EQ("[]", read(VProparray<VProp>()));
  EXPECT_EQ("[]", read(VProparray<VPropstruct>()));
}

TEST(PropertyReadTest, AnArrayOfAnyKindIsNested) {
  EXPECT_EQ("[[true,false],[false,true]]", read(shaped<bool>({2, 2}, {true, false, false, true})));
  EXPECT_EQ("[[0.5,1.0],[2.0,3.0]]", read(shaped<float>({2, 2}, {0.5F, 1, 2, 3})));
  EXPECT_EQ(R"([["a","b"],["c",""]])", read(shaped<VPropstring>({2, 2}, {L"a", L"b", L"c", L""})));
  EXPECT_EQ(R"([[1,"b"],[[2,3],{"c":true}]])",
            read(shaped<VProp>({2, 2},
                               {1, "b", VProparray<int>{2, 3}, VPropstruct{{"c", VProp(true)}}})));
  const auto fields = [](int number) { return VPropstruct{{"a", VProp(number)}}; };
  EXPECT_EQ(R"([[{"a":1},{"a":2}],[{"a":3},{}]])",
            read(shaped<VPropstruct>({2, 2}, {fields(1), fields(2), fields(3), VPropstruct()})));
}

TEST(PropertyReadTest, ACellWithoutAValueLeavesTheArrayWithoutOne) {
  EXPECT_STANDARD_ERROR(Json::get_value(VProparray<VProp>{VProp(1), VProp()}),
                        std::invalid_argument, "Property has unsupported type");
}

TEST(PropertyReadTest, AnArrayThatLostItsShapeIsRefused) {
  EXPECT_VREL_ERROR(Json::get_value(misshapen()), "Invalid size vector in property array!", -1);
}

TEST(PropertyReadTest, AShapeMayHaveManyDimensionsOfOneElement) {
  std::vector<unsigned int> shape(100000, 1);
  shape[5] = 2;
  EXPECT_EQ("[1,2]", read(shaped<int>(shape, {1, 2})));
}

TEST(PropertyReadTest, EachDimensionOfTwoElementsIsAList) {
  VProparray<bool> array;
  array.set_size(std::vector<unsigned int>(16, 2), VProparrayBase::set_mode_resize);
  array[1] = true;
  Value value = Json::get_value(array);
  const Value* item = &value;
  for (int level = 0; level < 16; ++level) {
    ASSERT_EQ(2U, item->array().size()) << level;
    item = level < 15 ? &item->array().front() : &item->array().back();
  }
  EXPECT_TRUE(*item == Value(true));
}

// The item at a position, the last index of which counts the outermost list.
const Value& item_at(const Value& value, const std::vector<unsigned int>& shape,
                     const std::vector<unsigned int>& position) {
  const Value* item = &value;
  for (std::size_t i = shape.size(); i-- > 0;) {
    if (shape[i] == 1) continue;
    item = &*std::next(item->array().begin(), position[i]);
  }
  return *item;
}

RC_GTEST_PROP(PropertyReadTest, AnItemIsFoundByThePositionOfItsElement, ()) {
  std::vector<unsigned int> shape(static_cast<std::size_t>(number_between(1, 5)));
  for (unsigned int& size : shape) size = static_cast<unsigned int>(number_between(1, 4));
  VProparray<int> array;
  array.set_size(shape, VProparrayBase::set_mode_resize);
  if (array.size() < 2) return;
  for (std::size_t i = 0; i < array.size(); ++i) array[i] = static_cast<int>(i);
  const Value value = Json::get_value(array);
  std::vector<unsigned int> position;
  for (const unsigned int size : shape) {
    position.push_back(static_cast<unsigned int>(number_between(0, static_cast<int>(size) - 1)));
  }
  RC_ASSERT(item_at(value, shape, position) == Value(array[array.get_idx(position)]));
}

// --- Depth

constexpr int levels = 200000;

TEST(PropertyReadTest, DepthOfStructsTakesNoStack) {
  const Value value = Json::get_value(nested_structs(levels, VProp(7)));
  const Value* inner = &value;
  for (int i = 0; i < levels; ++i) inner = inner->find("a");
  EXPECT_TRUE(*inner == Value(7));
}

TEST(PropertyReadTest, DepthOfCellsTakesNoStack) {
  VProp cells = nested_cells(levels);
  EXPECT_STANDARD_ERROR(Json::get_value(cells), std::invalid_argument,
                        "Property has unsupported type");
}

// --- Parameters

TEST(PropertyReadTest, TheParametersAreTheMembers) {
  VProp tree;
  tree["b"] = 2;
  tree["a.c"] = VProparray<int>{1, 2};
  EXPECT_EQ("{\"a\":{\"c\":[1,2]},\"b\":2}", text_of(Json::get_parameters(tree)));
  EXPECT_EQ("{}", text_of(Json::get_parameters(VPropstruct())));
}

TEST(PropertyReadTest, WhatIsNoStructHasNoParameters) {
  EXPECT_TRUE(Json::get_parameters(VProp()).empty());
  EXPECT_TRUE(Json::get_parameters(VProp(2.5)).empty());
  for (const Kind& kind : every_kind()) {
    if (kind.id == 0x8000) continue;
    EXPECT_TRUE(Json::get_parameters(kind.sample).empty()) << kind;
  }
}

TEST(PropertyReadTest, ParametersFailAsValuesDo) {
  EXPECT_STANDARD_ERROR(Json::get_parameters(VPropstruct{{"a", VProp()}}), std::invalid_argument,
                        "Property has unsupported type");
  EXPECT_STANDARD_ERROR(Json::get_parameters(VPropstruct{{"a", VProp(1LL << 31)}}), std::bad_cast,
                        "bad cast");
}

}  // namespace
