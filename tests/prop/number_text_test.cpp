#include "prop/number_text_internal.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <locale>
#include <sstream>
#include <string>
#include <string_view>
#include <typeinfo>
#include <vector>

#include "prop/each_type.h"
#include "prop/generators.h"

namespace {

using namespace Vrel::testing;
using Vrel::detail::append_number;
using Vrel::detail::append_text;
using Vrel::detail::NumberInput;

template <class T>
std::string text_of(const T& value) {
  std::string text;
  append_text(text, value);
  return text;
}

// What a stream writes. It knows numbers of 8 bits as characters alone.
template <class T>
std::string written_by_stream(T value) {
  std::ostringstream stream;
  stream.imbue(std::locale::classic());
  stream.precision(20);
  stream << +value;
  return stream.str();
}

template <class T>
struct Taken {
  bool is_taken;
  T value;
  std::string rest;
};

template <class T>
bool operator==(const Taken<T>& left, const Taken<T>& right) {
  return left.is_taken == right.is_taken &&
         std::memcmp(&left.value, &right.value, sizeof(T)) == 0 && left.rest == right.rest;
}

template <class T>
Taken<T> take(const std::string& text) {
  NumberInput input(text);
  T value{};
  const bool is_taken = input.take(value);
  return {is_taken, value, std::string(input.rest())};
}

template <class T>
Taken<T> take_by_stream(const std::string& text) {
  std::istringstream stream(text);
  stream.imbue(std::locale::classic());
  T value{};
  if (!(stream >> value)) return {false, T{}, text};
  stream.clear();
  return {true, value, text.substr(static_cast<std::size_t>(stream.tellg()))};
}

// The kinds that a stream takes as numbers.
template <class Call>
void for_each_streamed(Call call) {
  for_each_type<unsigned short, short, unsigned int, int, float, double, unsigned long long,
                long long, bool>(call);
}

const char* const texts[] = {"",
                             "0",
                             "-0",
                             "+0",
                             "007",
                             "1",
                             "2",
                             "-1",
                             "-",
                             "+",
                             "+-5",
                             "--5",
                             "5-",
                             "5+3",
                             "1e5",
                             "1E5",
                             "1e+5",
                             "1e-5",
                             "e5",
                             "-e5",
                             ".",
                             "-.",
                             ".5",
                             "-.5",
                             "5.",
                             "1.5.3",
                             "1e",
                             "1e+",
                             "1e5.5",
                             "1,5",
                             "1,234",
                             "1.234,5",
                             "0x10",
                             "0X1p3",
                             "1 2",
                             "1  2",
                             "1\t2",
                             "1\n2",
                             " 1",
                             "\t-1",
                             " \n 1.5",
                             "1)",
                             "1,",
                             "(1",
                             "inf",
                             "-inf",
                             "nan",
                             "nan(1)",
                             "infinit",
                             "infinity",
                             "1x",
                             "1f",
                             "1d5",
                             "1'000",
                             "01",
                             "true",
                             "32767",
                             "32768",
                             "-32768",
                             "-32769",
                             "65535",
                             "65536",
                             "-65535",
                             "-65536",
                             "1e308",
                             "1e309",
                             "-1e309",
                             "1e-308",
                             "1e-330",
                             "5e-324",
                             "2e-324",
                             "1e39",
                             "1e-46",
                             "1e-400 ",
                             "4294967295",
                             "4294967296",
                             "-4294967296",
                             "18446744073709551615",
                             "18446744073709551616",
                             "-18446744073709551615",
                             "9223372036854775808",
                             "0.1000000000000000055511151231257827",
                             "00000000000000000000000000000000000000000000000001",
                             "1e0000000000000000000000000001",
                             "1e99999999999999999999",
                             "1e-99999999999999999999",
                             "\xFF",
                             "1\xFF",
                             "0e99999"};

// --- Writing

void require_same(const std::string& ours, const std::string& expected, const char* type) {
  if (ours != expected) RC_FAIL(ours + " is not " + expected + " of type " + type);
}

RC_GTEST_PROP(PropNumberTextTest, EveryIntegerIsWrittenAsAStreamWritesIt, ()) {
  const long long number = any_integer();
  for_each_real_and_bool([number](auto tag) {
    using T = typename decltype(tag)::type;
    const T value = static_cast<T>(number);
    require_same(text_of(value), written_by_stream(value), typeid(T).name());
  });
}

template <class Real>
void require_written_as_stream(std::uint64_t bits) {
  Real value;
  std::memcpy(&value, &bits, sizeof value);
  if (!std::isfinite(value)) return;
  require_same(text_of(value), written_by_stream(value), typeid(Real).name());
}

RC_GTEST_PROP(PropNumberTextTest, DecimalsOfAllSizesAreWrittenAsAStreamWritesThem, ()) {
  const std::uint64_t bits = any_bits();
  require_written_as_stream<float>(bits);
  require_written_as_stream<double>(bits);
}

TEST(PropNumberTextTest, TextIsAppended) {
  std::string text = "a";
  append_number(text, 1);
  append_number(text, 0.5);
  EXPECT_EQ("a10.5", text);
}

TEST(PropNumberTextTest, TheLongestNumbersAreWrittenWhole) {
  EXPECT_EQ("-2.2250738585072013831e-308", text_of(-std::numeric_limits<double>::min()));
  EXPECT_EQ("-0.0001234567890123456713", text_of(-0.00012345678901234567));
}

// --- Reading

TEST(PropNumberTextTest, EveryTextIsTakenAsAStreamTakesIt) {
  for_each_streamed([](auto tag) {
    using T = typename decltype(tag)::type;
    for (const char* const text : texts) {
      const Taken<T> ours = take<T>(text);
      const Taken<T> expected = take_by_stream<T>(text);
      EXPECT_TRUE(ours == expected) << typeid(T).name() << " from \"" << text << '"';
    }
  });
}

RC_GTEST_PROP(PropNumberTextTest, AnyTextIsTakenAsAStreamTakesIt, ()) {
  const auto text =
      *rc::gen::container<std::string>(rc::gen::elementOf(std::string("0123456789+-.eE ,)x\t")));
  for_each_streamed([&text](auto tag) {
    using T = typename decltype(tag)::type;
    if (!(take<T>(text) == take_by_stream<T>(text))) RC_FAIL(typeid(T).name());
  });
}

TEST(PropNumberTextTest, ANumberOf8BitsIsTakenAsANumber) {
  EXPECT_EQ(7, take<char>("7").value);
  EXPECT_EQ(7, take<unsigned char>("+7").value);
  EXPECT_EQ(-128, take<char>(" -128").value);
  EXPECT_EQ(255, take<unsigned char>(" 255").value);
}

TEST(PropNumberTextTest, ANumberBeyond8BitsIsNotTaken) {
  for (const char* const text : {"256", " 256", "-256", "99999999999"}) {
    EXPECT_FALSE(take<unsigned char>(text).is_taken) << text;
  }
  for (const char* const text : {"128", "+128", "-129", "-99999999999"}) {
    EXPECT_FALSE(take<char>(text).is_taken) << text;
  }
}

TEST(PropNumberTextTest, ANegativeNumberWrapsAroundInAnUnsignedKind) {
  EXPECT_EQ(255, take<unsigned char>("-1").value);
  EXPECT_EQ(1, take<unsigned char>("-255").value);
  EXPECT_EQ(65535, take<unsigned short>("-1").value);
}

TEST(PropNumberTextTest, WhatCannotBeTakenLeavesTextAndNumber) {
  NumberInput input(" -Inx");
  double number = 4;
  EXPECT_FALSE(input.take(number));
  EXPECT_EQ(4, number);
  EXPECT_EQ(" -Inx", input.rest());
}

TEST(PropNumberTextTest, NamesOfWhatIsNotFiniteAreTakenWholeAndNoMore) {
  EXPECT_EQ("inity", take<double>("Infinity").rest);
  EXPECT_EQ("f", take<double>("-Inff").rest);
  EXPECT_EQ("N", take<float>("NaNN").rest);
}

TEST(PropNumberTextTest, ANameBehindWhiteSpaceIsNotTaken) {
  EXPECT_FALSE(take<double>(" Inf").is_taken);
  EXPECT_FALSE(take<double>("\tNaN").is_taken);
}

TEST(PropNumberTextTest, AComplexNumberIsTakenOrNothing) {
  NumberInput input("(1,2)(3,x)");
  std::complex<double> number;
  EXPECT_TRUE(input.take(number));
  EXPECT_FALSE(input.take(number));
  EXPECT_EQ(std::complex<double>(1.0, 2.0), number);
  EXPECT_EQ("(3,x)", input.rest());
}

TEST(PropNumberTextTest, PartsOfAComplexNumberMayHaveWhiteSpaceInFront) {
  EXPECT_TRUE(take<std::complex<int>>("( 1,\n2)").is_taken);
  EXPECT_FALSE(take<std::complex<int>>("(1 ,2)").is_taken);
  EXPECT_FALSE(take<std::complex<int>>("(1,2 )").is_taken);
}

TEST(PropNumberTextTest, AnArrayKeepsTheElementsInFrontOfWhatCannotBeTaken) {
  NumberInput input("1 2 x 4");
  VProparray<int> array;
  EXPECT_FALSE(input.take(array));
  EXPECT_EQ((VProparray<int>{1, 2}), array);
  EXPECT_EQ("x 4", input.rest());
}

TEST(PropNumberTextTest, AnArrayNeedsAnElementBehindEachBlank) {
  NumberInput input("1 2 ");
  VProparray<int> array;
  EXPECT_FALSE(input.take(array));
}

TEST(PropNumberTextTest, AnArrayIsAppendedTo) {
  NumberInput input("3");
  VProparray<int> array{1, 2};
  EXPECT_TRUE(input.take(array));
  EXPECT_EQ((VProparray<int>{1, 2, 3}), array);
}

TEST(PropNumberTextTest, AnArrayLeavesWhatFollowsItsLastElement) {
  NumberInput input("1 2;3");
  VProparray<double> array;
  EXPECT_TRUE(input.take(array));
  EXPECT_EQ(";3", input.rest());
}

// Each of these is taken by a stream of its own.
TEST(PropNumberTextTest, ALongTextOfUnusualNumbersIsTakenWhole) {
  std::string text = "+0";
  for (int i = 1; i < 200000; ++i) text += " +" + std::to_string(i);
  NumberInput input(text);
  VProparray<int> array;
  EXPECT_TRUE(input.take(array));
  EXPECT_EQ(200000U, array.size());
  EXPECT_EQ(199999, array.back());
}

}  // namespace
