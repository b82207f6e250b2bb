#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>
#include <vrelio/si/fraction.h>

#include <climits>
#include <cstdint>
#include <string>

#include "si/print_values.h"

namespace {

using si::fraction;

// As stored, without reducing.
fraction raw(int num, int den) {
  fraction stored;
  stored.num = num;
  stored.den = den;
  return stored;
}

fraction reduced(int num, int den) {
  fraction stored = raw(num, den);
  stored.reduce();
  return stored;
}

TEST(FractionTest, StartsAsZero) { EXPECT_EQ(fraction(), raw(0, 1)); }

TEST(FractionTest, AWholeNumberHasDenominatorOne) {
  EXPECT_EQ(fraction(-7), raw(-7, 1));
  EXPECT_EQ(fraction(INT_MIN), raw(INT_MIN, 1));
}

TEST(FractionTest, IsReducedWhenMadeOfTwoNumbers) {
  EXPECT_EQ(fraction(2, 4), raw(1, 2));
  EXPECT_EQ(fraction(-2, 4), raw(1, -2));
  EXPECT_EQ(fraction(0, 5), raw(0, 1));
  EXPECT_EQ(fraction(0, 0), raw(0, 1));
}

TEST(FractionTest, ADenominatorOfZeroIsKept) {
  EXPECT_EQ(fraction(3, 0), raw(1, 0));
  EXPECT_EQ(fraction(-3, 0), raw(1, 0));
}

TEST(FractionTest, TheSignStaysWhereReducingLeavesIt) {
  EXPECT_EQ(reduced(-1, 2), raw(1, -2));
  EXPECT_EQ(reduced(-3, 2), raw(3, -2));
  EXPECT_EQ(reduced(-5, 3), raw(-5, 3));
  EXPECT_EQ(reduced(5, -3), raw(-5, 3));
  EXPECT_EQ(reduced(-4, 2), raw(-2, 1));
}

TEST(FractionTest, TheLeastNumberIsReducedWithoutOverflow) {
  EXPECT_EQ(reduced(INT_MIN, -1), raw(INT_MIN, 1));
  EXPECT_EQ(reduced(-1, INT_MIN), raw(1, INT_MIN));
  EXPECT_EQ(reduced(1, INT_MIN), raw(1, INT_MIN));
  EXPECT_EQ(reduced(INT_MIN, INT_MIN), raw(1, 1));
  EXPECT_EQ(reduced(INT_MIN, 6), raw(1073741824, -3));
}

TEST(FractionTest, EqualityComparesTheFields) {
  EXPECT_FALSE(raw(1, 2) == raw(2, 4));
  EXPECT_TRUE(raw(1, 2) != raw(2, 4));
  EXPECT_FALSE(raw(-1, 2) == raw(1, -2));
  EXPECT_TRUE(raw(2, 4) == raw(2, 4));
}

TEST(FractionTest, FractionsAreMultipliedAndDivided) {
  EXPECT_EQ(fraction(2, 3) *= fraction(3, 4), raw(1, 2));
  EXPECT_EQ(fraction(2, 3) /= fraction(4, 3), raw(1, 2));
  EXPECT_EQ(fraction(2, 3) /= fraction(), raw(1, 0));
}

TEST(FractionTest, FractionsAreAddedAndSubtracted) {
  EXPECT_EQ(fraction(1, 2) += fraction(1, 3), raw(5, 6));
  EXPECT_EQ(fraction(1, 2) -= fraction(1, 3), raw(1, 6));
  EXPECT_EQ(fraction(1, 2) -= fraction(1, 2), raw(0, 1));
  EXPECT_EQ(fraction(1) -= fraction(3), raw(-2, 1));
}

TEST(FractionTest, AFractionCanBeTreatedByItself) {
  fraction treated(2, 3);
  EXPECT_EQ(treated += treated, raw(4, 3));
  EXPECT_EQ(treated *= treated, raw(16, 9));
  EXPECT_EQ(treated /= treated, raw(1, 1));
  EXPECT_EQ(treated -= treated, raw(0, 1));
}

TEST(FractionTest, ArithmeticWrapsAroundAt32Bits) {
  EXPECT_EQ(fraction(INT_MAX) += fraction(1), raw(INT_MIN, 1));
  EXPECT_EQ(fraction(INT_MIN) -= fraction(1), raw(INT_MAX, 1));
  EXPECT_EQ(fraction(65536) *= fraction(65537), raw(65536, 1));
  EXPECT_EQ(raw(INT_MIN, INT_MIN) += raw(INT_MIN, INT_MIN), raw(0, 1));
  EXPECT_EQ(raw(INT_MIN, INT_MIN) -= raw(INT_MIN, INT_MIN), raw(0, 1));
}

struct Text {
  const char* text;
  fraction expected;
};

TEST(FractionTest, TextsAreReadWithoutReducing) {
  for (const auto& [text, expected] :
       {Text{"1/2", raw(1, 2)}, Text{"(1/2)", raw(1, 2)}, Text{"-3", raw(-3, 1)},
        Text{"(-3/4)", raw(-3, 4)}, Text{"2/4", raw(2, 4)}, Text{"007", raw(7, 1)},
        Text{"-2/1", raw(-2, 1)}}) {
    fraction read;
    EXPECT_TRUE(read.parse(text)) << text;
    EXPECT_EQ(read, expected) << text;
  }
}

TEST(FractionTest, MissingDigitsStandForZero) {
  for (const auto& [text, expected] :
       {Text{"", raw(0, 1)}, Text{"-", raw(0, 1)}, Text{"/", raw(0, 0)}, Text{"(/)", raw(0, 0)},
        Text{"3/", raw(3, 0)}, Text{"/4", raw(0, 4)}, Text{"(-/4)", raw(0, 4)}}) {
    fraction read(9, 7);
    EXPECT_TRUE(read.parse(text)) << text;
    EXPECT_EQ(read, expected) << text;
  }
}

TEST(FractionTest, AParenthesisMayCloseAlone) {
  fraction read;
  EXPECT_TRUE(read.parse("1/2)"));
  EXPECT_EQ(read, raw(1, 2));
}

TEST(FractionTest, OtherTextsAreNone) {
  for (const char* const text :
       {"(3)", "(", ")", "()", "(1/2", "1/-2", "+1", "1.5", " 1", "1 ", "1/2 ", "1/2/3", "1/2))",
        "((1/2))", "--1", "a", "(1/2)x", "1)", "0x1"}) {
    EXPECT_FALSE(fraction().parse(text)) << text;
  }
}

TEST(FractionTest, ATextThatIsNoneLeavesTheDenominator) {
  fraction read(9, 7);
  EXPECT_FALSE(read.parse("1/2x"));
  EXPECT_EQ(read, raw(1, 7));
}

TEST(FractionTest, DigitsWrapAroundAt32Bits) {
  fraction read;
  EXPECT_TRUE(read.parse("2147483648/4294967297"));
  EXPECT_EQ(read, raw(INT_MIN, 1));
  EXPECT_TRUE(read.parse("-2147483648"));
  EXPECT_EQ(read, raw(INT_MIN, 1));
  EXPECT_TRUE(read.parse("-" + std::string(1000000, '9')));
}

TEST(FractionTest, AZeroByteIsNoDigit) { EXPECT_FALSE(fraction().parse(std::string("1\0", 2))); }

// Steps on the rule by hand, one subtraction of a multiple at a time.
fraction reduced_by_hand(std::int64_t num, std::int64_t den) {
  if (num == 0) return raw(0, 1);
  std::int64_t first = num, second = den;
  while (second != 0) {
    const std::int64_t rest = first - first / second * second;
    first = second;
    second = rest;
  }
  return raw(static_cast<int>(num / first), static_cast<int>(den / first));
}

RC_GTEST_PROP(FractionPropertyTest, ReducingFollowsTheRemaindersOfTheSignedFields, ()) {
  const int num = *rc::gen::inRange(-100000, 100000);
  const int den = *rc::gen::inRange(-100000, 100000);
  RC_ASSERT(reduced(num, den) == reduced_by_hand(num, den));
}

RC_GTEST_PROP(FractionPropertyTest, FractionsOfEqualWorthAreEqualOnceReduced, ()) {
  const int num = *rc::gen::inRange(-1000, 1000);
  const int den = *rc::gen::distinctFrom(rc::gen::inRange(-1000, 1000), 0);
  const int factor = *rc::gen::distinctFrom(rc::gen::inRange(-1000, 1000), 0);
  RC_ASSERT(reduced(num * factor, den * factor) == reduced(num, den));
}

RC_GTEST_PROP(FractionPropertyTest, ReducingTwiceIsReducingOnce, (int num, int den)) {
  fraction once = reduced(num, den);
  const fraction before = once;
  once.reduce();
  RC_ASSERT(once == before);
}

RC_GTEST_PROP(FractionPropertyTest, WhatIsAddedCanBeSubtracted, ()) {
  const fraction first(*rc::gen::inRange(-99, 99), *rc::gen::inRange(1, 99));
  const fraction second(*rc::gen::inRange(-99, 99), *rc::gen::inRange(1, 99));
  fraction sum = first;
  RC_ASSERT(((sum += second) -= second) == first);
}

RC_GTEST_PROP(FractionPropertyTest, ProductsAndSumsCommute, (int a, int b, int c, int d)) {
  fraction product = raw(a, b), swapped_product = raw(c, d);
  RC_ASSERT((product *= raw(c, d)) == (swapped_product *= raw(a, b)));
  fraction sum = raw(a, b), swapped_sum = raw(c, d);
  RC_ASSERT((sum += raw(c, d)) == (swapped_sum += raw(a, b)));
}

RC_GTEST_PROP(FractionPropertyTest, WhatIsWrittenIsRead, (int num)) {
  const int den = *rc::gen::inRange(0, INT_MAX);
  const std::string text = std::to_string(num) + '/' + std::to_string(den);
  fraction read;
  RC_ASSERT(read.parse(text) && read == raw(num, den));
  RC_ASSERT(read.parse('(' + text + ')') && read == raw(num, den));
}

}  // namespace
