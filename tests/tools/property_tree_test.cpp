#include "lib/property_tree.h"

#include <gtest/gtest.h>
#include <vrelio/foundation/propstring.h>
#include <vrelio/prop/prop_array.h>
#include <vrelio/prop/prop_struct.h>

#include <cmath>
#include <complex>
#include <limits>
#include <nlohmann/json.hpp>
#include <string>

namespace Vrel::tool {
namespace {

using Numbers = VProparray<int>;

VPropstring utf8(const char* text) { return {text, VPropstring::encoding_utf8}; }

Numbers shaped(const Numbers::index_list& size) {
  Numbers numbers(VProparrayBase::size(size), 7);
  numbers.set_size(size, VProparrayBase::set_mode_checked);
  return numbers;
}

TEST(PropertyTextTest, ASingleValueIsOneLine) {
  EXPECT_EQ(to_text(VProp()), "empty\n");
  EXPECT_EQ(to_text(VProp(-5)), "int32 -5\n");
  EXPECT_EQ(to_text(VProp(true)), "logical 1\n");
  EXPECT_EQ(to_text(VProp(utf8("a \"b\""))), "char \"a \\\"b\\\"\"\n");
}

TEST(PropertyTextTest, DecimalsHaveAsManyDigitsAsTellThemApart) {
  EXPECT_EQ(to_text(VProp(0.1)), "double 0.1\n");
  EXPECT_EQ(to_text(VProp(0.1F)), "single 0.1\n");
  EXPECT_EQ(to_text(VProp(-std::numeric_limits<double>::infinity())), "double -Inf\n");
}

TEST(PropertyTextTest, ElementsAndPartsHaveAsManyDigitsAsSingleNumbers) {
  using Single = std::complex<float>;
  using Double = std::complex<double>;
  EXPECT_EQ(to_text(VProp(VProparray<float>{0.1F, -1.5F, 1e20F})),
            "single [1 x 3] 0.1 -1.5 1e+20\n");
  EXPECT_EQ(to_text(VProp(VProparray<double>{0.1, 1.0 / 3.0})),
            "double [1 x 2] 0.1 0.3333333333333333\n");
  EXPECT_EQ(to_text(VProp(Single(0.1F, -0.2F))), "cplx_single (0.1,-0.2)\n");
  EXPECT_EQ(to_text(VProp(Double(0.1, 1.0 / 3.0))), "cplx_double (0.1,0.3333333333333333)\n");
  EXPECT_EQ(to_text(VProp(VProparray<Single>{{0.1F, 0.0F}, {1.0F / 3.0F, INFINITY}})),
            "cplx_single [1 x 2] (0.1,0) (0.33333334,Inf)\n");
  EXPECT_EQ(to_text(VProp(std::complex<int>(1, -2))), "cplx_int32 (1,-2)\n");
}

TEST(PropertyTextTest, ArraysShowTheirSizeAndElements) {
  EXPECT_EQ(to_text(VProp(shaped({2, 3}))), "int32 [2 x 3] 7 7 7 7 7 7\n");
  EXPECT_EQ(to_text(VProp(Numbers())), "int32 [0 x 0]\n");
  EXPECT_EQ(to_text(VProp(VProparray<VPropstring>{utf8("a"), utf8("b")})),
            "char [1 x 2] \"a\" \"b\"\n");
}

TEST(PropertyTextTest, LongArraysAreCut) {
  EXPECT_EQ(to_text(VProp(shaped({1, 17}))),
            "int32 [1 x 17] 7 7 7 7 7 7 7 7 7 7 7 7 7 7 7 7 ...\n");
}

TEST(PropertyTextTest, ATreeIsIndented) {
  VProp tree;
  tree["a.b"] = 1;
  tree["c{1}.x"] = 2;
  tree["s(1).y"] = 3;
  EXPECT_EQ(to_text(tree),
            "struct\n"
            "  a: struct\n"
            "    b: int32 1\n"
            "  c: cell [1 x 2]\n"
            "    {0}: empty\n"
            "    {1}: struct\n"
            "      x: int32 2\n"
            "  s: struct [1 x 2]\n"
            "    (0): struct\n"
            "    (1): struct\n"
            "      y: int32 3\n");
}

TEST(PropertyTextTest, ElementsOfASheetHaveAllTheirIndices) {
  VProp tree;
  tree["{1,1}"] = 5;
  EXPECT_EQ(to_text(tree),
            "cell [2 x 2]\n"
            "  {0,0}: empty\n"
            "  {1,0}: empty\n"
            "  {0,1}: empty\n"
            "  {1,1}: int32 5\n");
}

TEST(PropertyTextTest, NothingHarmsATerminal) {
  VProp tree;
  tree.get<VPropstruct>().emplace_back("a\x1B[2J", VProp(utf8("\x1B[31m")));
  EXPECT_EQ(to_text(tree).find('\x1B'), std::string::npos);
}

TEST(PropertyPlainTextTest, NumbersAndTextsStandAlone) {
  EXPECT_EQ(to_plain_text(VProp(0.5)), "0.5\n");
  EXPECT_EQ(to_plain_text(VProp(shaped({1, 3}))), "7 7 7\n");
  EXPECT_EQ(to_plain_text(VProp(utf8("\xC2\xB5 \"m\""))), "\xC2\xB5 \"m\"\n");
}

TEST(PropertyPlainTextTest, DecimalsHaveAsManyDigitsAsTellThemApart) {
  EXPECT_EQ(to_plain_text(VProp(0.1)), "0.1\n");
  EXPECT_EQ(to_plain_text(VProp(VProparray<float>{0.1F, 0.2F})), "0.1 0.2\n");
  EXPECT_EQ(to_plain_text(VProp(std::complex<float>(0.1F, 0.2F))), "(0.1,0.2)\n");
  EXPECT_EQ(to_plain_text(VProp(VProparray<float>())), "\n");
}

TEST(PropertyPlainTextTest, OtherValuesAreTrees) {
  VProp tree;
  tree["a"] = 1;
  EXPECT_EQ(to_plain_text(tree), to_text(tree));
  EXPECT_EQ(to_plain_text(VProp()), "empty\n");
}

TEST(PropertyJsonTest, ValuesAreThoseOfJson) {
  VProp tree;
  tree["z"] = 1;
  tree["a.b"] = utf8("\xC2\xB5");
  tree["on"] = true;
  tree["none"];
  tree["big"] = 18446744073709551615ULL;
  tree["half"] = 0.5F;
  EXPECT_EQ(to_json(tree),
            "{\"z\":1,\"a\":{\"b\":\"\xC2\xB5\"},\"on\":true,\"none\":null,"
            "\"big\":18446744073709551615,\"half\":0.5}\n");
}

TEST(PropertyJsonTest, WhatJsonHasNoNumberForIsNull) {
  EXPECT_EQ(to_json(VProp(std::numeric_limits<double>::infinity())), "null\n");
  EXPECT_EQ(to_json(VProp(std::numeric_limits<double>::quiet_NaN())), "null\n");
}

TEST(PropertyJsonTest, ComplexNumbersArePairs) {
  EXPECT_EQ(to_json(VProp(std::complex<double>(0.5, -2))), "[0.5,-2]\n");
  EXPECT_EQ(to_json(VProp(VProparray<std::complex<int>>{{1, 2}, {3, 4}})), "[[1,2],[3,4]]\n");
}

TEST(PropertyJsonTest, DecimalsHaveAsManyDigitsAsTellThemApart) {
  using Single = std::complex<float>;
  EXPECT_EQ(to_json(VProp(0.1)), "0.1\n");
  EXPECT_EQ(to_json(VProp(0.1F)), "0.1\n");
  EXPECT_EQ(to_json(VProp(VProparray<float>{0.1F, 1.0F / 3.0F})), "[0.1,0.33333334]\n");
  EXPECT_EQ(to_json(VProp(Single(0.1F, -0.2F))), "[0.1,-0.2]\n");
  EXPECT_EQ(to_json(VProp(VProparray<Single>{{0.1F, 1e20F}, {0.0F, INFINITY}})),
            "[[0.1,1e+20],[0,null]]\n");
}

TEST(PropertyJsonTest, RowsAreArraysAndOthersHaveTheirSize) {
  EXPECT_EQ(to_json(VProp(shaped({1, 3}))), "[7,7,7]\n");
  EXPECT_EQ(to_json(VProp(Numbers())), "[]\n");
  EXPECT_EQ(to_json(VProp(shaped({2, 1}))), "{\"size\":[2,1],\"values\":[7,7]}\n");
}

TEST(PropertyJsonTest, ArraysOfEveryKindAreShown) {
  VProp tree;
  tree["t"] = VProparray<VPropstring>{utf8("a"), utf8("b")};
  tree["b"] = VProparray<bool>{true, false};
  tree["c{1}"] = 1;
  tree["s(1).x"] = 2;
  EXPECT_EQ(to_json(tree),
            "{\"t\":[\"a\",\"b\"],\"b\":[true,false],\"c\":[null,1],\"s\":[{},{\"x\":2}]}\n");
}

TEST(PropertyJsonTest, OfFieldsOfOneNameTheFirstCounts) {
  VPropstruct fields;
  fields.emplace_back("a", VProp(1));
  fields.emplace_back("a", VProp(2));
  EXPECT_EQ(to_json(VProp(fields)), "{\"a\":1}\n");
}

}  // namespace
}  // namespace Vrel::tool
