#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>
#include <vrelio/prop/prop_cast.h>

#include <cmath>
#include <cstddef>
#include <limits>
#include <type_traits>

#include "prop/every_kind.h"
#include "support/expect_error.h"

namespace {

using namespace Vrel::testing;
using Vrel::prop_id;

using index_list = VProparrayBase::index_list;

const double nan_value = std::numeric_limits<double>::quiet_NaN();

template <class T>
T cast(const VProp& source) {
  T result{};
  vrel_prop_cast(source, &result, prop_id<T>);
  return result;
}

template <class T>
VProparray<T> shaped(const index_list& shape, std::initializer_list<T> elements) {
  VProparray<T> array(elements);
  array.set_size(shape, VProparrayBase::set_mode_checked);
  return array;
}

// --- The matrix

TEST(PropCastTest, ThereAre48Kinds) { EXPECT_EQ(48U, make_every_kind().size()); }

bool converts(const Kind& from, const Kind& to) {
  if (from.group == KindGroup::other || to.group == KindGroup::other) return false;
  return from.group == KindGroup::real || to.group == KindGroup::complex;
}

std::string expected_text(const Kind& from, const Kind& to) {
  const bool is_complex = to.group == KindGroup::complex;
  const std::string one = from.group == KindGroup::complex ? "(1,2)" : is_complex ? "(1,0)" : "1";
  return to.is_array ? one + (is_complex ? " (0,0)" : " 0") : one;
}

void expect_cell_of_matrix(const Kind& from, const Kind& to) {
  const auto run = [&from, &to] { vrel_prop_cast(from.sample, to.target.get(), to.id); };
  if (from.is_array && !to.is_array) {
    EXPECT_VREL_ERROR(run(), "Cannot cast from array to scalar!", -1);
  } else if (!converts(from, to)) {
    EXPECT_VREL_ERROR(run(), "Invalid cast!", -1);
  } else {
    run();
    EXPECT_EQ(expected_text(from, to), vrel_val2string(to.held(to.target.get())));
  }
}

TEST(PropCastTest, EveryKindBecomesEveryOtherAsTheMatrixSays) {
  const std::vector<Kind> sources = make_every_kind();
  for (const Kind& from : sources) {
    for (const Kind& to : make_every_kind()) {
      SCOPED_TRACE(::testing::Message() << std::hex << "from " << from.id << " to " << to.id);
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
  EXPECT_EQ(3, cast<int>(VProp(3.9)));
  EXPECT_EQ(-3, cast<int>(VProp(-3.9)));
}

TEST(PropCastTest, ADecimalOutOfRangeIsNotClamped) {
  EXPECT_EQ(44, cast<unsigned char>(VProp(300.0)));
  EXPECT_EQ(44, cast<char>(VProp(300.0F)));
  EXPECT_EQ(255, cast<unsigned char>(VProp(-1.0)));
  EXPECT_EQ(0xFFFFFFFFU, cast<unsigned int>(VProp(-1.5)));
}

TEST(PropCastTest, ADecimalBeyondAllIntegersGivesAFixedResult) {
  for (const double value : {1e300, -1e300, nan_value}) {
    EXPECT_EQ(0, cast<short>(VProp(value)));
    EXPECT_EQ(std::numeric_limits<int>::min(), cast<int>(VProp(value)));
    EXPECT_EQ(1ULL << 63, cast<unsigned long long>(VProp(value)));
  }
}

TEST(PropCastTest, AnIntegerOutOfRangeWrapsAround) {
  EXPECT_EQ(44, cast<unsigned char>(VProp(300)));
  EXPECT_EQ(-1, cast<short>(VProp(65535)));
  EXPECT_EQ(65535, cast<unsigned short>(VProp(-1)));
  EXPECT_EQ(18446744073709551615ULL, cast<unsigned long long>(VProp(-1)));
}

TEST(PropCastTest, ADoubleOutOfRangeOfAFloatIsInfinite) {
  EXPECT_EQ(std::numeric_limits<float>::infinity(), cast<float>(VProp(1e300)));
}

TEST(PropCastTest, WhatIsNotZeroIsTrue) {
  EXPECT_TRUE(cast<bool>(VProp(0.25)));
  EXPECT_TRUE(cast<bool>(VProp(-1)));
  EXPECT_TRUE(cast<bool>(VProp(256)));
  EXPECT_TRUE(cast<bool>(VProp(true)));
  EXPECT_FALSE(cast<bool>(VProp(0)));
  EXPECT_FALSE(cast<bool>(VProp(-0.0)));
  EXPECT_FALSE(cast<bool>(VProp(false)));
}

TEST(PropCastTest, NotANumberIsTrue) {
  EXPECT_TRUE(cast<bool>(VProp(nan_value)));
  EXPECT_TRUE(cast<bool>(VProp(std::numeric_limits<float>::quiet_NaN())));
}

TEST(PropCastTest, ABoolIsZeroOrOne) {
  EXPECT_EQ(1, cast<int>(VProp(true)));
  EXPECT_EQ(0.0, cast<double>(VProp(false)));
}

TEST(PropCastTest, ARealNumberGetsAnImaginaryPartOfZero) {
  EXPECT_EQ(std::complex<float>(2.5F, 0.0F), cast<std::complex<float>>(VProp(2.5)));
  EXPECT_EQ(std::complex<double>(1.0, 0.0), cast<std::complex<double>>(VProp(true)));
}

TEST(PropCastTest, BothPartsOfAComplexNumberAreConverted) {
  const VProp source(std::complex<double>(-3.9, 300.0));
  const auto result = cast<std::complex<unsigned char>>(source);
  EXPECT_EQ(253, result.real());
  EXPECT_EQ(44, result.imag());
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

// A number that every kind holds, as each kind.
template <class T>
T small(int number) {
  if constexpr (std::is_floating_point_v<T>) {
    return static_cast<T>(number) / 4;
  } else {
    return static_cast<T>(number);
  }
}

RC_GTEST_PROP(PropCastTest, IsThePlainCastOfTheLanguage, ()) {
  const int number = *rc::gen::inRange(0, 128);
  for_each_real_and_bool([number](auto from) {
    using From = typename decltype(from)::type;
    const From value = small<From>(number);
    for_each_real_and_bool([value](auto to) {
      using To = typename decltype(to)::type;
      RC_ASSERT(cast<To>(VProp(value)) == static_cast<To>(value));
    });
  });
}

RC_GTEST_PROP(PropCastTest, IntegersWrapAsInThePlainCastOfTheLanguage, (long long number)) {
  for_each_real_and_bool([number](auto to) {
    using To = typename decltype(to)::type;
    RC_ASSERT(cast<To>(VProp(number)) == static_cast<To>(number));
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
  const auto result = cast<VProparray<int>>(VProp(VProparray<double>{1.5, 2.5}));
  EXPECT_EQ((index_list{1, 2}), result.get_size(false));
}

TEST(PropCastTest, AShapeOfAnyRankIsTaken) {
  const VProp source(shaped<int>({1, 2, 1, 2, 1}, {1, 2, 3, 4}));
  EXPECT_EQ((index_list{1, 2, 1, 2, 1}), cast<VProparray<bool>>(source).get_size(true));
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
  EXPECT_EQ((VProparray<bool>{true, false, true}), cast<VProparray<bool>>(source));
}

RC_GTEST_PROP(PropCastTest, BoolsOfAnyNumberBecomeNumbersAndBack, ()) {
  const auto count = *rc::gen::inRange<std::size_t>(0, 10000);
  const auto period = *rc::gen::inRange<std::size_t>(1, 9);
  VProparray<bool> bools;
  for (std::size_t i = 0; i < count; ++i) bools.push_back(i % period == 0);
  const auto numbers = cast<VProparray<std::complex<short>>>(VProp(bools));
  RC_ASSERT(numbers.size() == count);
  for (std::size_t i = 0; i < count; ++i) {
    RC_ASSERT(numbers[i] == std::complex<short>(bools[i] ? 1 : 0, 0));
  }
  RC_ASSERT(cast<VProparray<bool>>(VProp(cast<VProparray<float>>(VProp(bools)))) == bools);
}

RC_GTEST_PROP(PropCastTest, EachElementIsConvertedAsAScalarIs, (std::vector<double> values)) {
  VProparray<double> source;
  source.assign(values.begin(), values.end());
  for_each_number([&source](auto tag) {
    using T = typename decltype(tag)::type;
    const auto result = cast<VProparray<T>>(VProp(source));
    RC_ASSERT(result.size() == source.size());
    for (std::size_t i = 0; i < source.size(); ++i) {
      RC_ASSERT(result[i] == cast<T>(VProp(source[i])));
    }
  });
}

}  // namespace
