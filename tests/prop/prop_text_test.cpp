#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>
#include <vrelio/prop/prop_cast.h>

#include <cmath>
#include <limits>
#include <string>
#include <type_traits>
#include <vector>

#include "prop/every_kind.h"
#include "si/comma_locale.h"
#include "support/expect_error.h"

namespace {

using namespace Vrel::testing;
using si::testing::CommaLocale;
using Vrel::prop_id;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nan_value = std::numeric_limits<double>::quiet_NaN();

VProp read(std::string text, int id) { return vrel_string2val(text, id); }

template <class T>
T read(const std::string& text) {
  const VProp value = read(text, prop_id<T>);
  return value.get<T>();
}

template <class T>
std::string text_of(const T& value) {
  return vrel_val2string(VProp(value));
}

// --- Writing

TEST(PropTextTest, ADoubleHasTwentyDigits) {
  EXPECT_EQ("0.10000000000000000555", text_of(0.1));
  EXPECT_EQ("-2.7182818284590450908", text_of(-2.718281828459045));
}

TEST(PropTextTest, AFloatHasTwentyDigits) { EXPECT_EQ("0.10000000149011611938", text_of(0.1F)); }

TEST(PropTextTest, ADecimalHasNoDigitsThatMeanNothing) {
  EXPECT_EQ("0.5", text_of(0.5));
  EXPECT_EQ("-0", text_of(-0.0));
  EXPECT_EQ("100000", text_of(100000.0F));
}

TEST(PropTextTest, ADecimalHasAnExponentWhereItsDigitsEnd) {
  EXPECT_EQ("10000000000000000000", text_of(1e19));
  EXPECT_EQ("1e+20", text_of(1e20));
  EXPECT_EQ("6.103515625e-05", text_of(0.00006103515625));
  EXPECT_EQ("0.0001220703125", text_of(0.0001220703125));
}

TEST(PropTextTest, WhatIsNotFiniteHasAName) {
  EXPECT_EQ("Inf", text_of(infinity));
  EXPECT_EQ("-Inf", text_of(-infinity));
  EXPECT_EQ("NaN", text_of(nan_value));
  EXPECT_EQ("NaN", text_of(-nan_value));
  EXPECT_EQ("-Inf", text_of(-std::numeric_limits<float>::infinity()));
}

TEST(PropTextTest, AnIntegerIsDecimal) {
  EXPECT_EQ("-32768", text_of(std::numeric_limits<short>::min()));
  EXPECT_EQ("4294967295", text_of(4294967295U));
  EXPECT_EQ("18446744073709551615", text_of(18446744073709551615ULL));
  EXPECT_EQ("-9223372036854775808", text_of(std::numeric_limits<long long>::min()));
}

TEST(PropTextTest, AnIntegerOf8BitsIsANumberAndNoCharacter) {
  EXPECT_EQ("65", text_of('A'));
  EXPECT_EQ("-128", text_of('\x80'));
  EXPECT_EQ("200", text_of(static_cast<unsigned char>(200)));
  EXPECT_EQ("(65,66)", text_of(std::complex<char>('A', 'B')));
}

TEST(PropTextTest, ABoolIsADigit) {
  EXPECT_EQ("1", text_of(true));
  EXPECT_EQ("0", text_of(false));
}

TEST(PropTextTest, AComplexNumberStandsInBrackets) {
  EXPECT_EQ("(0.5,-Inf)", text_of(std::complex<double>(0.5, -infinity)));
  EXPECT_EQ("(-1,2)", text_of(std::complex<int>(-1, 2)));
}

TEST(PropTextTest, ElementsHaveOneBlankBetweenThem) {
  EXPECT_EQ("1 -2 3", text_of(VProparray<int>{1, -2, 3}));
  EXPECT_EQ("1 0 1", text_of(VProparray<bool>{true, false, true}));
  EXPECT_EQ("(1,2) (3,4)", text_of(VProparray<std::complex<short>>{{1, 2}, {3, 4}}));
  EXPECT_EQ("NaN 0.5", text_of(VProparray<double>{nan_value, 0.5}));
}

TEST(PropTextTest, AnArrayWithoutElementsIsAnEmptyText) {
  EXPECT_EQ("", text_of(VProparray<int>()));
}

TEST(PropTextTest, AShapeIsNotWritten) {
  VProparray<int> array{1, 2, 3, 4};
  array.set_size({2, 2}, VProparrayBase::set_mode_checked);
  EXPECT_EQ("1 2 3 4", text_of(array));
}

TEST(PropTextTest, ATextIsWrittenInUtf8) {
  EXPECT_EQ("10 \xC2\xB5m", text_of(VPropstring(L"10 \u00B5m")));
}

TEST(PropTextTest, WhatIsNoNumberAndNoTextHasNoText) {
  constexpr const char* message = "Conversion of unknown type to string!";
  EXPECT_VREL_ERROR(vrel_val2string(VProp()), message, -1);
  EXPECT_VREL_ERROR(text_of(VPropstruct()), message, -1);
  EXPECT_VREL_ERROR(text_of(_s_vrel_RGB{1, 2, 3}), message, -1);
  EXPECT_VREL_ERROR(text_of(VProparray<VPropstruct>()), message, -1);
  EXPECT_VREL_ERROR(text_of(VProparray<VProp>()), message, -1);
  EXPECT_VREL_ERROR(text_of(VProparray<VPropstring>(1)), message, -1);
}

// --- Reading

TEST(PropTextTest, ATextIsNotChangedByReading) {
  std::string text = " 12 13";
  vrel_string2val(text, prop_id<int>);
  EXPECT_EQ(" 12 13", text);
}

TEST(PropTextTest, AValueIsOfTheKindThatIsAskedFor) {
  for (const Kind& kind : make_every_kind()) {
    if (kind.group == KindGroup::other) continue;
    EXPECT_EQ(kind.id, read("1", kind.id).get_id());
  }
  EXPECT_EQ(prop_id<VPropstring>, read("1", prop_id<VPropstring>).get_id());
}

TEST(PropTextTest, AKindThatHasNoTextIsNotRead) {
  constexpr const char* message = "Conversion of string to invalid type!";
  constexpr int array = Vrel::prop_array_flag;
  for (const int id : {0, array, 0x400, 0x800, 0x4000, 0x4000 | array, 0x8000, 0x8000 | array,
                       0x20000 | array, 0x40010000, 0x40010000 | array, 3, -1}) {
    EXPECT_VREL_ERROR(read("1", id), message, -1);
  }
}

TEST(PropTextTest, NamesOfWhatIsNotFiniteAreRead) {
  EXPECT_EQ(infinity, read<double>("Inf"));
  EXPECT_EQ(-infinity, read<double>("-Inf"));
  EXPECT_TRUE(std::isnan(read<double>("NaN")));
  EXPECT_EQ(-std::numeric_limits<float>::infinity(), read<float>("-Inf"));
}

TEST(PropTextTest, OtherNamesOfWhatIsNotFiniteAreNotRead) {
  for (const char* const text :
       {"nan", "inf", "-inf", "INF", "-NaN", "+Inf", "-In", "-InF", "In", " Inf"}) {
    EXPECT_EQ(0.0, read<double>(text)) << text;
  }
}

TEST(PropTextTest, AnIntegerKnowsNoInfinity) { EXPECT_EQ(0, read<int>("Inf")); }

TEST(PropTextTest, WhatFollowsANumberStaysUnread) {
  EXPECT_EQ(1, read<int>("1.9"));
  EXPECT_EQ(0, read<int>("0x10"));
  EXPECT_EQ(1.5, read<double>("1.5.3"));
  EXPECT_EQ(2, read<short>("2 3"));
  EXPECT_EQ(infinity, read<double>("Infinity"));
}

TEST(PropTextTest, WhiteSpaceInFrontOfANumberIsSkipped) {
  EXPECT_EQ(5, read<int>(" \t\n\v\f\r5"));
  EXPECT_EQ(0.5, read<double>("\n.5"));
}

TEST(PropTextTest, APlusIsRead) {
  EXPECT_EQ(5, read<unsigned char>("+5"));
  EXPECT_EQ(0.5, read<double>("+.5"));
}

TEST(PropTextTest, ATextThatIsNoNumberGivesZero) {
  for (const char* const text :
       {"", " ", "x", "-", "+", ".", "e5", "--1", "1e", "1e+", ",", "\xFF"}) {
    EXPECT_EQ(0.0, read<double>(text)) << text;
  }
  EXPECT_EQ(0, read<int>("x"));
  EXPECT_FALSE(read<bool>("true"));
}

TEST(PropTextTest, ANumberOutOfRangeGivesZero) {
  EXPECT_EQ(0, read<unsigned char>("256"));
  EXPECT_EQ(0, read<char>("128"));
  EXPECT_EQ(0, read<char>("-129"));
  EXPECT_EQ(0, read<short>("32768"));
  EXPECT_EQ(0U, read<unsigned int>("4294967296"));
  EXPECT_EQ(0, read<long long>("9223372036854775808"));
  EXPECT_EQ(0.0, read<double>("1e400"));
  EXPECT_EQ(0.0F, read<float>("-1e39"));
}

TEST(PropTextTest, ADecimalThatIsTooSmallIsZeroOrNearIt) {
  EXPECT_EQ(0.0, read<double>("1e-400"));
  EXPECT_EQ(5e-324, read<double>("5e-324"));
}

TEST(PropTextTest, ABoolIsReadFromItsDigit) {
  EXPECT_TRUE(read<bool>("1"));
  EXPECT_TRUE(read<bool>("+01"));
  EXPECT_FALSE(read<bool>("0"));
  EXPECT_FALSE(read<bool>("2"));
}

TEST(PropTextTest, AComplexNumberIsReadFromItsBrackets) {
  EXPECT_EQ(std::complex<double>(0.5, -infinity), read<std::complex<double>>("(0.5,-Inf)"));
  EXPECT_EQ(std::complex<int>(1, -2), read<std::complex<int>>("( 1, -2)"));
}

TEST(PropTextTest, AComplexNumberThatIsNotWholeGivesZero) {
  for (const char* const text : {"", "1", "(", "(1", "(1,", "(1,2", "(1 ,2)", "(1,2 )", "(1;2)",
                                 " (1,2)", "1,2)", "(x,2)", "(1,x)"}) {
    EXPECT_EQ(std::complex<double>(), read<std::complex<double>>(text)) << text;
  }
}

TEST(PropTextTest, AnEmptyTextIsAnArrayWithoutElements) {
  EXPECT_TRUE(read<VProparray<double>>("").empty());
}

TEST(PropTextTest, SeveralBlanksSeparateAsOneDoes) {
  EXPECT_EQ((VProparray<int>{1, 2, 3}), read<VProparray<int>>("1   2 3"));
}

TEST(PropTextTest, AnArrayEndsWithTheElementThatHasNoBlankBehindIt) {
  EXPECT_EQ((VProparray<int>{1, 2}), read<VProparray<int>>("1 2,3 4"));
  EXPECT_EQ((VProparray<int>{1}), read<VProparray<int>>("1\n2"));
  EXPECT_EQ((VProparray<int>{1}), read<VProparray<int>>("1.5 2.5"));
}

TEST(PropTextTest, AnElementThatCannotBeReadLeavesNoElements) {
  EXPECT_TRUE(read<VProparray<int>>("1 2 x").empty());
  EXPECT_TRUE(read<VProparray<int>>("1 2 ").empty());
  EXPECT_TRUE(read<VProparray<unsigned char>>("1 256 3").empty());
}

TEST(PropTextTest, AnArrayThatIsReadHasNoShape) {
  EXPECT_EQ((VProparrayBase::index_list{1, 3}), read<VProparray<int>>("1 2 3").get_size(false));
}

TEST(PropTextTest, ATextIsReadAsUtf8) {
  EXPECT_EQ(VPropstring(L"10 \u00B5m"), std::wstring(read<VPropstring>("10 \xC2\xB5m")));
}

// --- Both

TEST(PropTextTest, ADecimalCommaInTheLocaleChangesNothing) {
  const CommaLocale locale;
  EXPECT_EQ("1234.5 0.10000000000000000555", text_of(VProparray<double>{1234.5, 0.1}));
  EXPECT_EQ("1234567", text_of(1234567));
  EXPECT_EQ(1234.5, read<double>("1234.5"));
  EXPECT_EQ(1.0, read<double>("1,5"));
  EXPECT_EQ(1234.5, read<double>("+1234.5"));
  EXPECT_EQ(1, read<int>("+1.234"));
}

template <class T>
T any_number() {
  if constexpr (std::is_floating_point_v<T>) {
    return *rc::gen::weightedOneOf<T>(
        {{8, rc::gen::arbitrary<T>()},
         {1,
          rc::gen::element(std::numeric_limits<T>::infinity(), -std::numeric_limits<T>::infinity(),
                           std::numeric_limits<T>::denorm_min(), std::numeric_limits<T>::max(),
                           std::numeric_limits<T>::lowest(), T{-0.0})}});
  } else {
    return *rc::gen::arbitrary<T>();
  }
}

template <class T>
struct any {
  static T make() { return any_number<T>(); }
};

template <class T>
struct any<std::complex<T>> {
  static std::complex<T> make() {
    const T real = any_number<T>();
    return {real, any_number<T>()};
  }
};

RC_GTEST_PROP(PropTextTest, EveryNumberIsReadAsItWasWritten, ()) {
  for_each_number([](auto tag) {
    using T = typename decltype(tag)::type;
    const T value = any<T>::make();
    RC_ASSERT(read<T>(text_of(value)) == value);
  });
}

RC_GTEST_PROP(PropTextTest, EveryArrayIsReadAsItWasWritten, ()) {
  const auto count = *rc::gen::inRange(0, 20);
  for_each_number([count](auto tag) {
    using T = typename decltype(tag)::type;
    VProparray<T> array;
    for (int i = 0; i < count; ++i) array.push_back(any<T>::make());
    RC_ASSERT(read<VProparray<T>>(text_of(array)) == array);
  });
}

RC_GTEST_PROP(PropTextTest, AnyTextIsReadAsSomethingThatIsWrittenAndReadAgain, (std::string text)) {
  for (const Kind& kind : make_every_kind()) {
    if (kind.group == KindGroup::other) continue;
    const std::string written = vrel_val2string(read(text, kind.id));
    RC_ASSERT(vrel_val2string(read(written, kind.id)) == written);
  }
}

}  // namespace
