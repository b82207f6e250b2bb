#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>
#include <vrelio/foundation/propstring.h>
#include <vrelio/prop/prop_array.h>
#include <vrelio/prop/prop_cast.h>
#include <vrelio/prop/prop_struct.h>

#include <cmath>
#include <cstddef>
#include <limits>
#include <string>
#include <typeinfo>
#include <vector>

#include "prop/each_type.h"
#include "prop/every_kind.h"
#include "prop/generators.h"
#include "support/expect_error.h"

namespace {

using namespace Vrel::testing;
using Vrel::prop_id;

using index_list = VProparrayBase::index_list;

const double nan_value = std::numeric_limits<double>::quiet_NaN();

VProp cast_to(const Kind& kind, VProp destination, const VProp& source) {
  destination.own();
  vrel_prop_cast(source, destination.value_ptr(), kind.id);
  return destination;
}

template <class T>
VProp cast(const VProp& source) {
  const Kind& kind = kind_of(prop_id<T>);
  return cast_to(kind, kind.plain, source);
}

testing::AssertionResult gives_value(const VProp& source, const VProp& expected) {
  const Kind& kind = kind_of(expected.get_id());
  const VProp result = cast_to(kind, kind.plain, source);
  if (result == expected) return testing::AssertionSuccess();
  return testing::AssertionFailure()
         << vrel_val2string(source) << " gives " << kind << ' ' << vrel_val2string(result)
         << ", not " << vrel_val2string(expected);
}

template <class T>
testing::AssertionResult gives(const VProp& source, const T& expected) {
  return gives_value(source, expected);
}

template <class T>
VProparray<T> shaped(const index_list& shape, std::initializer_list<T> elements) {
  VProparray<T> array(elements);
  array.set_size(shape, VProparrayBase::set_mode_checked);
  return array;
}

// --- The matrix

// An array has to have room for the elements of its source.
VProp zero_of(const Kind& kind) {
  return kind.is_numeric() ? kind.of_numbers({0, 0}) : kind.changed;
}

bool converts(const Kind& from, const Kind& to) {
  if (!from.is_numeric() || !to.is_numeric()) return false;
  return from.group != KindGroup::complex || to.group == KindGroup::complex;
}

std::string expected_text(const Kind& from, const Kind& to) {
  const bool is_complex = to.group == KindGroup::complex;
  const std::string one = from.group == KindGroup::complex ? "(1,2)" : is_complex ? "(1,0)" : "1";
  return to.is_array ? one + (is_complex ? " (0,0)" : " 0") : one;
}

void expect_cell_of_matrix(const Kind& from, const Kind& to) {
  const auto run = [&from, &to] { return cast_to(to, zero_of(to), from.sample); };
  if (from.is_array && !to.is_array) {
    EXPECT_VREL_ERROR(run(), "Cannot cast from array to scalar!", -1);
  } else if (!converts(from, to)) {
    EXPECT_VREL_ERROR(run(), "Invalid cast!", -1);
  } else {
    EXPECT_EQ(expected_text(from, to), vrel_val2string(run()));
  }
}

TEST(PropCastTest, EveryKindBecomesEveryOtherAsTheMatrixSays) {
  for (const Kind& from : every_kind()) {
    for (const Kind& to : every_kind()) {
      SCOPED_TRACE(testing::Message() << "from " << from << " to " << to);
      expect_cell_of_matrix(from, to);
    }
  }
}

TEST(PropCastTest, IdsThatNothingIsHeldUnderAreNoDestinations) {
  constexpr int array = Vrel::prop_array_flag;
  double untouched = 4;
  for (const int id : {0, 0x100, 0x200, 0x400, 0x800, 0x4000, 0x10001, 0x40010000, 0x40000000, 0x81,
                       array, 0x400 | array, 0x800 | array, 0x40010000 | array, -1}) {
    EXPECT_VREL_ERROR(vrel_prop_cast(VProp(1), &untouched, id), "Invalid cast!", -1);
  }
  EXPECT_EQ(4, untouched);
}

TEST(PropCastTest, NothingBecomesNothingElse) {
  EXPECT_VREL_ERROR(cast<double>(VProp()), "Invalid cast!", -1);
  EXPECT_VREL_ERROR(cast<VProparray<double>>(VProp()), "Invalid cast!", -1);
}

// --- Numbers

TEST(PropCastTest, ADecimalIsCutTowardsZero) {
  EXPECT_TRUE(gives<int>(VProp(3.9), 3));
  EXPECT_TRUE(gives<int>(VProp(-3.9), -3));
}

TEST(PropCastTest, ADecimalOutOfRangeIsNotClamped) {
  EXPECT_TRUE(gives<unsigned char>(VProp(300.0), 44));
  EXPECT_TRUE(gives<char>(VProp(300.0F), 44));
  EXPECT_TRUE(gives<unsigned char>(VProp(-1.0), 255));
  EXPECT_TRUE(gives<unsigned int>(VProp(-1.5), 0xFFFFFFFFU));
}

TEST(PropCastTest, ADecimalBeyondAllIntegersGivesAFixedResult) {
  for (const double value : {1e300, -1e300, nan_value}) {
    EXPECT_TRUE(gives<short>(VProp(value), 0));
    EXPECT_TRUE(gives<int>(VProp(value), std::numeric_limits<int>::min()));
    EXPECT_TRUE(gives<unsigned long long>(VProp(value), 1ULL << 63));
  }
}

TEST(PropCastTest, AnIntegerOutOfRangeWrapsAround) {
  EXPECT_TRUE(gives<unsigned char>(VProp(300), 44));
  EXPECT_TRUE(gives<short>(VProp(65535), -1));
  EXPECT_TRUE(gives<unsigned short>(VProp(-1), 65535));
  EXPECT_TRUE(gives<unsigned long long>(VProp(-1), 18446744073709551615ULL));
}

TEST(PropCastTest, ADoubleOutOfRangeOfAFloatIsInfinite) {
  EXPECT_TRUE(gives<float>(VProp(1e300), std::numeric_limits<float>::infinity()));
}

TEST(PropCastTest, WhatIsNotZeroIsTrue) {
  EXPECT_TRUE(gives<bool>(VProp(0.25), true));
  EXPECT_TRUE(gives<bool>(VProp(-1), true));
  EXPECT_TRUE(gives<bool>(VProp(256), true));
  EXPECT_TRUE(gives<bool>(VProp(true), true));
  EXPECT_TRUE(gives<bool>(VProp(0), false));
  EXPECT_TRUE(gives<bool>(VProp(-0.0), false));
  EXPECT_TRUE(gives<bool>(VProp(false), false));
}

TEST(PropCastTest, NotANumberIsTrue) {
  EXPECT_TRUE(gives<bool>(VProp(nan_value), true));
  EXPECT_TRUE(gives<bool>(VProp(std::numeric_limits<float>::quiet_NaN()), true));
}

TEST(PropCastTest, ABoolIsZeroOrOne) {
  EXPECT_TRUE(gives<int>(VProp(true), 1));
  EXPECT_TRUE(gives<double>(VProp(false), 0.0));
}

TEST(PropCastTest, ARealNumberGetsAnImaginaryPartOfZero) {
  EXPECT_TRUE(gives<std::complex<float>>(VProp(2.5), {2.5F, 0.0F}));
  EXPECT_TRUE(gives<std::complex<double>>(VProp(true), {1.0, 0.0}));
}

TEST(PropCastTest, BothPartsOfAComplexNumberAreConverted) {
  const VProp source(std::complex<double>(-3.9, 300.0));
  EXPECT_TRUE(gives<std::complex<unsigned char>>(source, {253, 44}));
}

TEST(PropCastTest, AComplexNumberBecomesNoRealOne) {
  const VProp source(std::complex<double>(1.0, 0.0));
  EXPECT_VREL_ERROR(cast<double>(source), "Invalid cast!", -1);
  EXPECT_VREL_ERROR(cast<bool>(source), "Invalid cast!", -1);
  EXPECT_VREL_ERROR(cast<VProparray<double>>(source), "Invalid cast!", -1);
}

TEST(PropCastTest, ATextBecomesNothing) {
  EXPECT_VREL_ERROR(cast<int>(VProp("1")), "Invalid cast!", -1);
  EXPECT_VREL_ERROR(cast<VPropstring>(VProp("1")), "Invalid cast!", -1);
  EXPECT_VREL_ERROR(cast<VProparray<int>>(VProp("1")), "Invalid cast!", -1);
}

TEST(PropCastTest, NothingBecomesAText) {
  VPropstring text(L"as it was");
  EXPECT_VREL_ERROR(vrel_prop_cast(VProp(1), &text, prop_id<VPropstring>), "Invalid cast!", -1);
  EXPECT_EQ(L"as it was", text);
}

std::vector<Kind> every_real_scalar() {
  std::vector<Kind> kinds;
  for (const Kind& kind : every_numeric_kind()) {
    if (!kind.is_array && kind.group != KindGroup::complex) kinds.push_back(kind);
  }
  return kinds;
}

// As the plain cast of the language gives it for a number that is not negative.
double plain_cast(double number, const Kind& to) {
  if (to.group == KindGroup::integer) return std::floor(number);
  if (to.group == KindGroup::logical) return number == 0.0 ? 0.0 : 1.0;
  return number;
}

// From 0 to 31.75, which every kind holds in its way.
RC_GTEST_PROP(PropCastTest, IsThePlainCastOfTheLanguage, ()) {
  const double number = number_between(0, 127) / 4.0;
  for (const Kind& from : every_real_scalar()) {
    const double held = plain_cast(number, from);
    for (const Kind& to : every_real_scalar()) {
      const VProp result = cast_to(to, to.plain, from.of_numbers({held}));
      if (result == to.of_numbers({plain_cast(held, to)})) continue;
      RC_FAIL((testing::Message() << "from " << from << " to " << to).GetString());
    }
  }
}

RC_GTEST_PROP(PropCastTest, IntegersWrapAsInThePlainCastOfTheLanguage, ()) {
  const long long number = any_integer();
  for_each_real_and_bool([number](auto to) {
    using To = typename decltype(to)::type;
    if (cast<To>(number) != VProp(static_cast<To>(number))) RC_FAIL(typeid(To).name());
  });
}

// --- Arrays

TEST(PropCastTest, AnArrayTakesTheShapeOfItsSource) {
  VProparray<float> result{9.0F};
  vrel_prop_cast(VProp(shaped<short>({2, 3}, {1, -2, 3, -4, 5, -6})), &result,
                 prop_id<VProparray<float>>);
  EXPECT_EQ((index_list{2, 3}), result.get_size(true));
  EXPECT_EQ((VProparray<float>{1, -2, 3, -4, 5, -6}), result);
}

TEST(PropCastTest, AnArrayWithoutAShapeBecomesARow) {
  const VProp result = cast<VProparray<int>>(VProp(VProparray<double>{1.5, 2.5}));
  EXPECT_EQ((index_list{1, 2}), result.get_arr(true)->get_size(false));
}

TEST(PropCastTest, AShapeOfAnyRankIsTaken) {
  const VProp source(shaped<int>({1, 2, 1, 2, 1}, {1, 2, 3, 4}));
  EXPECT_EQ((index_list{1, 2, 1, 2, 1}),
            cast<VProparray<bool>>(source).get_arr(true)->get_size(true));
}

TEST(PropCastTest, AnArrayWithoutElementsTakesThoseOfItsDestination) {
  VProparray<bool> result{true};
  vrel_prop_cast(VProp(VProparray<int>()), &result, prop_id<VProparray<bool>>);
  EXPECT_TRUE(result.empty());
}

TEST(PropCastTest, AnArrayThatLostItsShapeIsRefused) {
  auto broken = shaped<int>({2, 2}, {1, 2, 3, 4});
  broken.push_back(5);
  VProparray<int> result{7};
  EXPECT_VREL_ERROR(vrel_prop_cast(VProp(broken), &result, prop_id<VProparray<int>>),
                    "Invalid size vector in property array!", -1);
  EXPECT_EQ((VProparray<int>{7}), result);
}

TEST(PropCastTest, AnArrayOfOneElementBecomesNoScalar) {
  EXPECT_VREL_ERROR(cast<int>(VProp(VProparray<int>{1})), "Cannot cast from array to scalar!", -1);
}

TEST(PropCastTest, AnArrayBecomesNoScalarWhateverItsElementsAre) {
  constexpr const char* message = "Cannot cast from array to scalar!";
  EXPECT_VREL_ERROR(cast<int>(VProp(VProparray<VPropstring>(1))), message, -1);
  EXPECT_VREL_ERROR(cast<VPropstring>(VProp(VProparray<VProp>(1))), message, -1);
  EXPECT_VREL_ERROR(cast<double>(VProp(VProparray<std::complex<double>>(1))), message, -1);
}

TEST(PropCastTest, AScalarChangesTheFirstElementOnly) {
  auto result = shaped<int>({3, 1}, {7, 8, 9});
  vrel_prop_cast(VProp(1.5), &result, prop_id<VProparray<int>>);
  EXPECT_EQ((VProparray<int>{1, 8, 9}), result);
  EXPECT_EQ((index_list{3, 1}), result.get_size(true));
}

TEST(PropCastTest, AScalarChangesTheFirstBoolOnly) {
  VProparray<bool> result{false, false, true};
  vrel_prop_cast(VProp(1.5), &result, prop_id<VProparray<bool>>);
  EXPECT_EQ((VProparray<bool>{true, false, true}), result);
}

TEST(PropCastTest, AScalarFindsNoPlaceInAnArrayWithoutElements) {
  EXPECT_VREL_ERROR(cast<VProparray<int>>(VProp(1)), "Invalid cast!", -1);
  EXPECT_VREL_ERROR(cast<VProparray<bool>>(VProp(1)), "Invalid cast!", -1);
}

TEST(PropCastTest, ADestinationKeepsTheShapeThatAFailedCastGaveIt) {
  VProparray<double> result{7.0};
  const VProp source(shaped<std::complex<double>>({1, 1, 2}, {1.0, 2.0}));
  EXPECT_VREL_ERROR(vrel_prop_cast(source, &result, prop_id<VProparray<double>>), "Invalid cast!",
                    -1);
  EXPECT_EQ((index_list{1, 1, 2}), result.get_size(true));
  EXPECT_EQ((VProparray<double>{0.0, 0.0}), result);
}

TEST(PropCastTest, ComplexNumbersBecomeNoRealOnesAlsoWhereThereAreNone) {
  const VProp source{VProparray<std::complex<double>>()};
  EXPECT_VREL_ERROR(cast<VProparray<double>>(source), "Invalid cast!", -1);
}

TEST(PropCastTest, ADestinationIsLeftAloneByTextsAndCells) {
  VProparray<double> result{7.0};
  for (const VProp& source : {VProp(VProparray<VPropstring>(2)), VProp(VProparray<VProp>(2)),
                              VProp(VProparray<VPropstruct>(2))}) {
    EXPECT_VREL_ERROR(vrel_prop_cast(source, &result, prop_id<VProparray<double>>), "Invalid cast!",
                      -1);
  }
  EXPECT_EQ((VProparray<double>{7.0}), result);
}

TEST(PropCastTest, AnArrayThatIsItsOwnDestinationStaysAsItIs) {
  VProp source(VProparray<int>{1, 2, 3});
  vrel_prop_cast(source, source.value_ptr(), prop_id<VProparray<int>>);
  EXPECT_EQ((VProparray<int>{1, 2, 3}), source.get<VProparray<int>>());
}

TEST(PropCastTest, NotANumberIsTrueInAnArray) {
  const VProp source(VProparray<double>{nan_value, 0.0, 0.5});
  EXPECT_TRUE(gives<VProparray<bool>>(source, {true, false, true}));
}

RC_GTEST_PROP(PropCastTest, BoolsOfAnyNumberBecomeNumbersAndBack, ()) {
  const int count = number_between(0, 9999);
  const int period = number_between(1, 8);
  VProparray<bool> bools;
  for (int i = 0; i < count; ++i) bools.push_back(i % period == 0);
  const VProp numbers = cast<VProparray<std::complex<short>>>(bools);
  const auto& elements = numbers.get<VProparray<std::complex<short>>>();
  RC_ASSERT(elements.size() == bools.size());
  for (std::size_t i = 0; i < elements.size(); ++i) {
    if (elements[i] != std::complex<short>(bools[i] ? 1 : 0, 0)) RC_FAIL(std::to_string(i));
  }
  RC_ASSERT(cast<VProparray<bool>>(cast<VProparray<float>>(bools)) == VProp(bools));
}

std::string texts_of_scalars(const Kind& kind, const std::vector<double>& values) {
  std::string all;
  for (const double value : values) {
    const std::string text = vrel_val2string(cast_to(kind, kind.plain, VProp(value)));
    all += (all.empty() ? "" : " ") + text;
  }
  return all;
}

RC_GTEST_PROP(PropCastTest, EachElementIsConvertedAsAScalarIs, ()) {
  const std::vector<double> values = any_doubles();
  VProparray<double> source;
  source.assign(values.begin(), values.end());
  for (const Kind& kind : every_numeric_kind()) {
    if (!kind.is_array) continue;
    const VProp result = cast_to(kind, kind.plain, source);
    const Kind& element = kind_of(kind.id & ~Vrel::prop_array_flag);
    RC_ASSERT(result.get_arr(true)->count() == values.size());
    if (vrel_val2string(result) == texts_of_scalars(element, values)) continue;
    RC_FAIL((testing::Message() << kind).GetString());
  }
}

}  // namespace
