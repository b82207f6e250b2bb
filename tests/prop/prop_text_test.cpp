#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>
#include <vrelio/foundation/data_type.h>
#include <vrelio/foundation/propstring.h>
#include <vrelio/prop/prop_array.h>
#include <vrelio/prop/prop_cast.h>
#include <vrelio/prop/prop_struct.h>

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "foundation/scoped_codeset.h"
#include "prop/every_kind.h"
#include "prop/generators.h"
#include "si/comma_locale.h"
#include "support/expect_error.h"

namespace {

using namespace Vrel::testing;
using si::testing::CommaLocale;
using Vrel::prop_id;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nan_value = std::numeric_limits<double>::quiet_NaN();

VProp read(std::string text, int id) { return vrel_string2val(text, id); }

testing::AssertionResult reads_value(const std::string& text, const VProp& expected) {
  const VProp value = read(text, expected.get_id());
  if (value == expected) return testing::AssertionSuccess();
  return testing::AssertionFailure()
         << '"' << text << "\" as " << kind_of(expected.get_id()) << " reads "
         << vrel_val2string(value) << ", not " << vrel_val2string(expected);
}

template <class T>
testing::AssertionResult reads(const std::string& text, const T& expected) {
  return reads_value(text, expected);
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
  for (const Kind& kind : every_numeric_kind()) {
    EXPECT_EQ(kind.id, read("1", kind.id).get_id()) << kind;
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
  EXPECT_TRUE(reads<double>("Inf", infinity));
  EXPECT_TRUE(reads<double>("-Inf", -infinity));
  EXPECT_EQ("NaN", vrel_val2string(read("NaN", prop_id<double>)));
  EXPECT_EQ("NaN", vrel_val2string(read("NaN", prop_id<float>)));
  EXPECT_TRUE(reads<float>("-Inf", -std::numeric_limits<float>::infinity()));
}

TEST(PropTextTest, OtherNamesOfWhatIsNotFiniteAreNotRead) {
  for (const char* const text :
       {"nan", "inf", "-inf", "INF", "-NaN", "+Inf", "-In", "-InF", "In", " Inf"}) {
    EXPECT_TRUE(reads<double>(text, 0.0));
  }
}

TEST(PropTextTest, AnIntegerKnowsNoInfinity) { EXPECT_TRUE(reads<int>("Inf", 0)); }

TEST(PropTextTest, WhatFollowsANumberStaysUnread) {
  EXPECT_TRUE(reads<int>("1.9", 1));
  EXPECT_TRUE(reads<int>("0x10", 0));
  EXPECT_TRUE(reads<double>("1.5.3", 1.5));
  EXPECT_TRUE(reads<short>("2 3", 2));
  EXPECT_TRUE(reads<double>("Infinity", infinity));
}

TEST(PropTextTest, WhiteSpaceInFrontOfANumberIsSkipped) {
  EXPECT_TRUE(reads<int>(" \t\n\v\f\r5", 5));
  EXPECT_TRUE(reads<double>("\n.5", 0.5));
}

TEST(PropTextTest, APlusIsRead) {
  EXPECT_TRUE(reads<unsigned char>("+5", 5));
  EXPECT_TRUE(reads<double>("+.5", 0.5));
}

TEST(PropTextTest, ATextThatIsNoNumberGivesZero) {
  for (const char* const text :
       {"", " ", "x", "-", "+", ".", "e5", "--1", "1e", "1e+", ",", "\xFF"}) {
    EXPECT_TRUE(reads<double>(text, 0.0));
  }
  EXPECT_TRUE(reads<int>("x", 0));
  EXPECT_TRUE(reads<bool>("true", false));
}

TEST(PropTextTest, ANumberOutOfRangeGivesZero) {
  EXPECT_TRUE(reads<unsigned char>("256", 0));
  EXPECT_TRUE(reads<char>("128", 0));
  EXPECT_TRUE(reads<char>("-129", 0));
  EXPECT_TRUE(reads<short>("32768", 0));
  EXPECT_TRUE(reads<unsigned int>("4294967296", 0U));
  EXPECT_TRUE(reads<long long>("9223372036854775808", 0));
  EXPECT_TRUE(reads<double>("1e400", 0.0));
  EXPECT_TRUE(reads<float>("-1e39", 0.0F));
}

TEST(PropTextTest, ADecimalThatIsTooSmallIsZeroOrNearIt) {
  EXPECT_TRUE(reads<double>("1e-400", 0.0));
  EXPECT_TRUE(reads<double>("5e-324", 5e-324));
}

TEST(PropTextTest, ABoolIsReadFromItsDigit) {
  EXPECT_TRUE(reads<bool>("1", true));
  EXPECT_TRUE(reads<bool>("+01", true));
  EXPECT_TRUE(reads<bool>("0", false));
  EXPECT_TRUE(reads<bool>("2", false));
}

TEST(PropTextTest, AComplexNumberIsReadFromItsBrackets) {
  EXPECT_TRUE(reads<std::complex<double>>("(0.5,-Inf)", {0.5, -infinity}));
  EXPECT_TRUE(reads<std::complex<int>>("( 1, -2)", {1, -2}));
}

TEST(PropTextTest, AComplexNumberThatIsNotWholeGivesZero) {
  for (const char* const text : {"", "1", "(", "(1", "(1,", "(1,2", "(1 ,2)", "(1,2 )", "(1;2)",
                                 " (1,2)", "1,2)", "(x,2)", "(1,x)"}) {
    EXPECT_TRUE(reads<std::complex<double>>(text, {}));
  }
}

TEST(PropTextTest, AnEmptyTextIsAnArrayWithoutElements) {
  EXPECT_TRUE(reads<VProparray<double>>("", {}));
}

TEST(PropTextTest, SeveralBlanksSeparateAsOneDoes) {
  EXPECT_TRUE(reads<VProparray<int>>("1   2 3", {1, 2, 3}));
}

TEST(PropTextTest, AnArrayEndsWithTheElementThatHasNoBlankBehindIt) {
  EXPECT_TRUE(reads<VProparray<int>>("1 2,3 4", {1, 2}));
  EXPECT_TRUE(reads<VProparray<int>>("1\n2", {1}));
  EXPECT_TRUE(reads<VProparray<int>>("1.5 2.5", {1}));
}

TEST(PropTextTest, AnElementThatCannotBeReadLeavesNoElements) {
  EXPECT_TRUE(reads<VProparray<int>>("1 2 x", {}));
  EXPECT_TRUE(reads<VProparray<int>>("1 2 ", {}));
  EXPECT_TRUE(reads<VProparray<unsigned char>>("1 256 3", {}));
}

TEST(PropTextTest, AnArrayThatIsReadHasNoShape) {
  EXPECT_EQ((VProparrayBase::index_list{1, 3}),
            read("1 2 3", prop_id<VProparray<int>>).get_arr(true)->get_size(false));
}

TEST(PropTextTest, ATextIsReadAsUtf8) {
  EXPECT_TRUE(reads<VPropstring>("10 \xC2\xB5m", L"10 \u00B5m"));
}

// --- Both

TEST(PropTextTest, ATextIsUtf8WhateverTheEncodingOfTheLocale) {
  const ScopedCodeset local("ISO-8859-1");
  EXPECT_EQ("10 \xC2\xB5m", text_of(VPropstring(L"10 \u00B5m")));
  EXPECT_TRUE(reads<VPropstring>("10 \xC2\xB5m", L"10 \u00B5m"));
}

TEST(PropTextTest, ADecimalCommaInTheLocaleChangesNothing) {
  const CommaLocale locale;
  EXPECT_EQ("1234.5 0.10000000000000000555", text_of(VProparray<double>{1234.5, 0.1}));
  EXPECT_EQ("1234567", text_of(1234567));
  EXPECT_TRUE(reads<double>("1234.5", 1234.5));
  EXPECT_TRUE(reads<double>("1,5", 1.0));
  EXPECT_TRUE(reads<double>("+1234.5", 1234.5));
  EXPECT_TRUE(reads<int>("+1.234", 1));
}

std::vector<std::uint64_t> bits_of_any_numbers(int count) {
  std::vector<std::uint64_t> bits;
  for (int i = 0; i < 2 * count; ++i) bits.push_back(any_bits());
  return bits;
}

void require_to_come_back(const Kind& kind, const VProp& value) {
  const std::string text = vrel_val2string(value);
  if (read(text, kind.id) == value) return;
  RC_FAIL((testing::Message() << kind << ": " << text).GetString());
}

RC_GTEST_PROP(PropTextTest, EveryNumberIsReadAsItWasWritten, ()) {
  const std::vector<std::uint64_t> bits = bits_of_any_numbers(1);
  for (const Kind& kind : every_numeric_kind()) {
    if (!kind.is_array) require_to_come_back(kind, kind.of_bits(bits));
  }
}

RC_GTEST_PROP(PropTextTest, EveryArrayIsReadAsItWasWritten, ()) {
  const std::vector<std::uint64_t> bits = bits_of_any_numbers(number_between(0, 19));
  for (const Kind& kind : every_numeric_kind()) {
    if (kind.is_array) require_to_come_back(kind, kind.of_bits(bits));
  }
}

RC_GTEST_PROP(PropTextTest, AnyTextIsReadAsSomethingThatIsWrittenAndReadAgain, ()) {
  const std::string text = any_text();
  for (const Kind& kind : every_numeric_kind()) {
    const std::string written = vrel_val2string(read(text, kind.id));
    if (vrel_val2string(read(written, kind.id)) == written) continue;
    RC_FAIL((testing::Message() << kind << ": " << written).GetString());
  }
}

}  // namespace
