#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>
#include <vrelio/foundation/propstring.h>
#include <vrelio/prop/prop_array.h>
#include <vrelio/prop/prop_struct.h>

#include <algorithm>
#include <boost/make_shared.hpp>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "prop/generators.h"
#include "support/expect_error.h"

class VPropInfo {};

namespace {

using Base = VProparrayBase;
using Sizes = Base::index_list;
using Numbers = VProparray<int>;

constexpr unsigned int none = Base::not_given;

// The elements are 0, 1, 2 and so on.
Numbers numbers(unsigned int count) {
  Numbers array(count);
  std::iota(array.begin(), array.end(), 0);
  return array;
}

Numbers numbers(const Sizes& shape) {
  Numbers array = numbers(Base::size(shape));
  array.set_size(shape, Base::set_mode_checked);
  return array;
}

// --- Lists of sizes and indices

TEST(ProparrayTest, ASingleSizeIsThatOfARow) {
  EXPECT_EQ(Base::val2size(3, none, none, none), (Sizes{1, 3}));
  EXPECT_EQ(Base::val2size(0, none, none, none), (Sizes{0, 0}));
}

TEST(ProparrayTest, ASingleIndexIsAlongARow) {
  EXPECT_EQ(Base::val2pos(3, none, none, none), (Sizes{0, 3}));
  EXPECT_EQ(Base::val2pos(0, none, none, none), (Sizes{0, 0}));
}

TEST(ProparrayTest, SeveralSizesAndIndicesAreTakenAsTheyAre) {
  EXPECT_EQ(Base::val2size(none, 1, 2, 3), Sizes{});
  EXPECT_EQ(Base::val2pos(none, none, none, none), Sizes{});
  EXPECT_EQ(Base::val2size(0, 1, none, none), (Sizes{0, 1}));
  EXPECT_EQ(Base::val2pos(4, 5, none, 6), (Sizes{4, 5}));
  EXPECT_EQ(Base::val2size(4, 5, 6, none), (Sizes{4, 5, 6}));
  EXPECT_EQ(Base::val2pos(4, 5, 6, 7), (Sizes{4, 5, 6, 7}));
  EXPECT_EQ(Base::val2pos(4, 0, 0, 7), (Sizes{4, 0, 0, 7}));
  EXPECT_EQ(Base::val2size(0, 0, 0, 0), (Sizes{0, 0, 0, 0}));
}

TEST(ProparrayTest, ListsFromPointersAreTakenAsTheyAre) {
  const unsigned int values[] = {7, none, 9};
  EXPECT_EQ(Base::ptr2size(3, values), (Sizes{7, none, 9}));
  EXPECT_EQ(Base::ptr2pos(3, values), (Sizes{7, none, 9}));
  EXPECT_EQ(Base::ptr2size(1, values), Sizes{7});
  EXPECT_EQ(Base::ptr2pos(1, values), Sizes{7});
  EXPECT_EQ(Base::ptr2size(0, nullptr), Sizes{});
  EXPECT_EQ(Base::ptr2pos(0, nullptr), Sizes{});
}

TEST(ProparrayTest, TheSizeOfAShapeIsItsProduct) {
  EXPECT_EQ(Base::size({2, 3, 4}), 24U);
  EXPECT_EQ(Base::size({}), 0U);
  EXPECT_EQ(Base::size({0, 1}), 0U);
  EXPECT_EQ(Base::size({65536, 65536, 0}), 0U);
  EXPECT_EQ(Base::size({65535, 65537}), 0xFFFFFFFFU);
}

TEST(ProparrayTest, AShapeOfMoreElementsThanCanBeCountedIsRefused) {
  EXPECT_VREL_ERROR(Base::size({65536, 65536}), "Property array too large!", -1);
  EXPECT_VREL_ERROR(Base::size({65536, 65536, 65536, 65536}), "Property array too large!", -1);
  EXPECT_VREL_ERROR(Base::size({0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF}),
                    "Property array too large!", -1);
}

// --- The shape

TEST(ProparrayTest, ANewArrayIsEmpty) {
  const Numbers array;
  EXPECT_EQ(array.get_size(true), (Sizes{0, 0}));
  EXPECT_EQ(array.get_rank(), 2U);
  EXPECT_EQ(array.userbits, 0U);
}

TEST(ProparrayTest, ElementsWithoutAShapeAreARow) {
  EXPECT_EQ(numbers(5).get_size(true), (Sizes{1, 5}));
  EXPECT_EQ(numbers(5).get_size(false), (Sizes{1, 5}));
}

TEST(ProparrayTest, CopiesKeepShapeAndBits) {
  Numbers array = numbers({2, 3});
  array.userbits = 5;
  const Numbers copy(array);
  Numbers assigned;
  assigned = array;
  for (const Numbers& other : {copy, assigned}) {
    EXPECT_EQ(other.get_size(true), (Sizes{2, 3}));
    EXPECT_EQ(other.userbits, 5U);
    EXPECT_EQ(std::vector<int>(other), std::vector<int>(array));
  }
}

TEST(ProparrayTest, ACheckedShapeFitsTheElements) {
  Numbers array = numbers(6);
  array.set_size({2, 3}, Base::set_mode_checked);
  EXPECT_EQ(array.get_size(true), (Sizes{2, 3}));
}

TEST(ProparrayTest, ACheckedShapeThatDoesNotFitChangesNothing) {
  Numbers array = numbers(5);
  EXPECT_VREL_ERROR(array.set_size({2, 3}, Base::set_mode_checked), "Invalid size set!", -1);
  EXPECT_EQ(array.get_size(true), (Sizes{1, 5}));
  Numbers nothing;
  EXPECT_VREL_ERROR(nothing.set_size({65536, 65536}, Base::set_mode_checked), "Invalid size set!",
                    -1);
}

TEST(ProparrayTest, AShapeCanBeStoredThatDoesNotFit) {
  Numbers array = numbers(5);
  array.set_size({2, 2}, Base::set_mode_shape);
  EXPECT_VREL_ERROR(array.get_size(true), "Invalid size vector in property array!", -1);
  EXPECT_VREL_ERROR(array.get_rank(), "Invalid size vector in property array!", -1);
  EXPECT_EQ(array.get_size(false), (Sizes{2, 2}));
  EXPECT_EQ(array.count(), 5U);
}

TEST(ProparrayTest, AStoredShapeOfMoreElementsThanCanBeCountedFitsNoArray) {
  Numbers nothing;
  nothing.set_size({65536, 65536}, Base::set_mode_shape);
  EXPECT_VREL_ERROR(nothing.get_size(true), "Invalid size vector in property array!", -1);
}

TEST(ProparrayTest, AStoredRowThatDoesNotFitIsCorrected) {
  Numbers array = numbers(3);
  array.set_size({1, 7}, Base::set_mode_shape);
  EXPECT_EQ(array.get_size(true), (Sizes{1, 3}));
  array.set_size({0, 0}, Base::set_mode_shape);
  EXPECT_EQ(array.get_size(true), (Sizes{1, 3}));
}

TEST(ProparrayTest, AStoredShapeThatIsNoRowIsNotCorrected) {
  for (const Sizes& shape : {Sizes{1, 7, 1}, Sizes{7, 1}, Sizes{0, 1}, Sizes{0, 0, 0}}) {
    Numbers array = numbers(3);
    array.set_size(shape, Base::set_mode_shape);
    EXPECT_VREL_ERROR(array.get_size(true), "Invalid size vector in property array!", -1);
    EXPECT_EQ(array.get_size(false), shape);
  }
}

TEST(ProparrayTest, AStoredShapeOfOneDimensionThatDoesNotFitIsCorrected) {
  Numbers array = numbers(3);
  array.set_size(Sizes{7}, Base::set_mode_shape);
  EXPECT_EQ(array.get_size(true), Sizes{3});
}

TEST(ProparrayTest, AnEmptyShapeIsARow) {
  Numbers array = numbers({2, 3});
  array.set_size(Sizes{}, Base::set_mode_checked);
  EXPECT_EQ(array.get_size(true), (Sizes{1, 6}));
}

TEST(ProparrayTest, TheModesHaveTheirNumbers) {
  EXPECT_EQ(Base::set_mode_shape, 0);
  EXPECT_EQ(Base::set_mode_checked, 1);
  EXPECT_EQ(Base::set_mode_resize, 2);
  EXPECT_EQ(Base::set_mode_clear, 3);
}

TEST(ProparrayTest, AnEmptyShapeTakesElementsAwayOnlyByClearing) {
  Numbers array = numbers({2, 3});
  array.set_size(Sizes{}, Base::set_mode_resize);
  EXPECT_EQ(array.get_size(true), (Sizes{1, 6}));
  array.set_size(Sizes{}, Base::set_mode_clear);
  EXPECT_EQ(array.get_size(true), (Sizes{0, 0}));
}

TEST(ProparrayTest, AShapeThatFitsIsTakenWhateverWasStored) {
  for (const auto mode : {Base::set_mode_checked, Base::set_mode_resize}) {
    Numbers array = numbers(6);
    array.set_size({5, 5}, Base::set_mode_shape);
    array.set_size({3, 2}, mode);
    EXPECT_EQ(array.get_size(true), (Sizes{3, 2}));
    EXPECT_EQ(std::vector<int>(array), (std::vector<int>{0, 1, 2, 3, 4, 5}));
  }
}

TEST(ProparrayTest, ClearingReplacesAShapeThatFitsNothing) {
  Numbers array = numbers(6);
  array.set_size({5, 5}, Base::set_mode_shape);
  array.set_size({2, 1}, Base::set_mode_clear);
  EXPECT_EQ(array.get_size(true), (Sizes{2, 1}));
  EXPECT_EQ(std::vector<int>(array), (std::vector<int>{0, 0}));
}

TEST(ProparrayTest, ResizingKeepsTheSequence) {
  Numbers array = numbers({2, 2});
  array.set_size({3, 2}, Base::set_mode_resize);
  EXPECT_EQ(std::vector<int>(array), (std::vector<int>{0, 1, 2, 3, 0, 0}));
  array.set_size(2, none, none, none, Base::set_mode_resize);
  EXPECT_EQ(std::vector<int>(array), (std::vector<int>{0, 1}));
  EXPECT_EQ(array.get_size(true), (Sizes{1, 2}));
}

TEST(ProparrayTest, AShapeThatFitsNothingIsNotResizedUnseen) {
  Numbers array = numbers(5);
  array.set_size({2, 2}, Base::set_mode_shape);
  EXPECT_VREL_ERROR(array.set_size({3, 3}, Base::set_mode_resize),
                    "Invalid size vector in property array!", -1);
  EXPECT_EQ(array.count(), 5U);
}

TEST(ProparrayTest, ClearingReplacesAllElements) {
  Numbers array = numbers({2, 2});
  array.set_size({2, 2}, Base::set_mode_clear);
  EXPECT_EQ(std::vector<int>(array), std::vector<int>(4, 0));
  VProparray<VProp> cells;
  cells.emplace_back(1);
  cells.set_size(2, none, none, none, Base::set_mode_clear);
  EXPECT_TRUE(cells[0].empty());
  EXPECT_TRUE(cells[1].empty());
}

TEST(ProparrayTest, AShapeThatCannotBeCountedChangesNothing) {
  Numbers array = numbers({2, 2});
  for (const auto mode : {Base::set_mode_resize, Base::set_mode_clear}) {
    EXPECT_VREL_ERROR(array.set_size({65536, 65536}, mode), "Property array too large!", -1);
    EXPECT_EQ(std::vector<int>(array), (std::vector<int>{0, 1, 2, 3}));
    EXPECT_EQ(array.get_size(true), (Sizes{2, 2}));
  }
}

// --- From positions to places

TEST(ProparrayTest, TheFirstIndexRunsFastest) {
  const Numbers array = numbers({2, 3, 4});
  EXPECT_EQ(array.get_idx({1, 0, 0}), 1U);
  EXPECT_EQ(array.get_idx({0, 1, 0}), 2U);
  EXPECT_EQ(array.get_idx(0, 0, 1, none), 6U);
  EXPECT_EQ(array.get_idx({1, 2, 3}), 23U);
}

TEST(ProparrayTest, AnEmptyArrayGrowsToAPosition) {
  Numbers array;
  EXPECT_EQ(array.get_idx({0, 3}, true), 3U);
  EXPECT_EQ(array.get_size(true), (Sizes{1, 4}));
  EXPECT_EQ(array.count(), 4U);
}

TEST(ProparrayTest, AnEmptyArrayGrowsInAllDimensions) {
  Numbers array;
  EXPECT_EQ(array.get_idx(1, 2, 3, none, true), 1U + 2 * 2 + 3 * 6);
  EXPECT_EQ(array.get_size(true), (Sizes{2, 3, 4}));
}

TEST(ProparrayTest, OnlyTheLastDimensionGrows) {
  Numbers array = numbers({2, 2});
  EXPECT_VREL_ERROR(array.get_idx({2, 1}, true), "Index 0 out of bounds! (2 >= 2)!", -1);
  EXPECT_EQ(array.get_idx({1, 5}, true), 11U);
  EXPECT_EQ(array.get_size(true), (Sizes{2, 6}));
  EXPECT_EQ(array[3], 3);
}

TEST(ProparrayTest, AFurtherDimensionHasOneElement) {
  Numbers array = numbers({2, 3});
  EXPECT_EQ(array.get_idx({1, 2, 0}, true), 5U);
  EXPECT_EQ(array.get_size(true), (Sizes{2, 3, 1}));
  EXPECT_EQ(array.count(), 6U);
}

TEST(ProparrayTest, AFurtherDimensionOfARowHasOneElement) {
  Numbers array = numbers(3);
  EXPECT_EQ(array.get_idx({0, 2, 0}, true), 2U);
  EXPECT_EQ(array.get_size(true), (Sizes{1, 3, 1}));
}

TEST(ProparrayTest, AFurtherDimensionComesWithTheGrowthOfTheOldOnes) {
  Numbers array = numbers({2, 3});
  EXPECT_EQ(array.get_idx({1, 3, 0}, true), 7U);
  EXPECT_EQ(array.get_size(true), (Sizes{2, 4, 1}));
  EXPECT_EQ(std::vector<int>(array), (std::vector<int>{0, 1, 2, 3, 4, 5, 0, 0}));
}

TEST(ProparrayTest, AFurtherDimensionIsNotAddedByWhatIsRefused) {
  Numbers array = numbers({2, 3});
  EXPECT_VREL_ERROR(array.get_idx({1, 2, 1}, true), "Index 2 out of bounds! (1 >= 1)!", -1);
  EXPECT_VREL_ERROR(array.get_idx({1, 2, 0}, false), "Input rank '3' too high (> '2')!", -1);
  EXPECT_VREL_ERROR(array.get_idx({1, 2, 0}), "Input rank '3' too high (> '2')!", -1);
  EXPECT_EQ(array.get_size(true), (Sizes{2, 3}));
}

TEST(ProparrayTest, ElementsWithoutAStoredShapeGrowInEveryDimension) {
  Numbers array{1, 2, 3, 4, 5};
  EXPECT_EQ(array.get_idx({1, 0}, true), 1U);
  EXPECT_EQ(array.get_size(true), (Sizes{2, 5}));
  EXPECT_EQ(std::vector<int>(array), (std::vector<int>{1, 2, 3, 4, 5, 0, 0, 0, 0, 0}));
}

TEST(ProparrayTest, WithoutGrowingAPositionHasToExist) {
  const Numbers array = numbers({2, 2});
  EXPECT_VREL_ERROR(array.get_idx({0, 2}), "Index 1 out of bounds! (2 >= 2)!", -1);
  Numbers writable = array;
  EXPECT_VREL_ERROR(writable.get_idx({0, 2}, false), "Index 1 out of bounds! (2 >= 2)!", -1);
  EXPECT_VREL_ERROR(Numbers().get_idx({0, 0}), "Index 0 out of bounds! (0 >= 0)!", -1);
}

TEST(ProparrayTest, APositionHasTheRankOfTheArray) {
  Numbers array = numbers({2, 3, 1});
  EXPECT_VREL_ERROR(array.get_idx({0, 0, 0, 0}), "Input rank '4' too high (> '3')!", -1);
  EXPECT_VREL_ERROR(array.get_idx({0, 0}), "Input rank '2' too low (< '3')!", -1);
  EXPECT_VREL_ERROR(array.get_idx({0, 0}, true), "Input rank '2' too low (< '3')!", -1);
  EXPECT_VREL_ERROR(array.get_idx({}, true), "Input rank '0' too low (< '3')!", -1);
}

TEST(ProparrayTest, WhatIsRefusedChangesNothing) {
  Numbers array = numbers({2, 2});
  EXPECT_VREL_ERROR(array.get_idx({2, 5}, true), "Index 0 out of bounds! (2 >= 2)!", -1);
  EXPECT_VREL_ERROR(array.get_idx({1, 0xFFFFFFFF}, true), "Property array too large!", -1);
  EXPECT_VREL_ERROR(array.get_idx({1, 0x80000000}, true), "Property array too large!", -1);
  EXPECT_EQ(array.get_size(true), (Sizes{2, 2}));
  EXPECT_EQ(array.count(), 4U);
}

TEST(ProparrayTest, AnEmptyArrayDoesNotGrowBeyondWhatCanBeCounted) {
  Numbers array;
  for (const Sizes& pos :
       {Sizes{65535, 65535}, Sizes{65535, 65535, 65535, 65535}, Sizes{0, none}}) {
    EXPECT_VREL_ERROR(array.get_idx(pos, true), "Property array too large!", -1);
    EXPECT_EQ(array.get_size(true), (Sizes{0, 0}));
  }
  EXPECT_EQ(array.count(), 0U);
}

TEST(ProparrayTest, AShapeWithoutElementsHasNoPositions) {
  Numbers array;
  array.set_size({65536, 65536, 0}, Base::set_mode_checked);
  EXPECT_VREL_ERROR(array.get_idx({0, 0, 0}), "Index 2 out of bounds! (0 >= 0)!", -1);
  EXPECT_VREL_ERROR(array.get_idx({0, 0, 0}, true), "Property array too large!", -1);
  array.set_size({0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, 0}, Base::set_mode_checked);
  const unsigned int last = 0xFFFFFFFE;
  EXPECT_VREL_ERROR(array.get_idx({last, last, last, 0}), "Index 3 out of bounds! (0 >= 0)!", -1);
  EXPECT_VREL_ERROR(array.get_idx({last, last, last, 0}, true), "Property array too large!", -1);
}

// What a position gives, reckoned dimension by dimension: where it is and the shape that the array has then,
// or the message.
struct Located {
  unsigned int idx;
  Sizes shape;
  std::string message;
};

bool operator==(const Located& left, const Located& right) {
  return left.idx == right.idx && left.shape == right.shape && left.message == right.message;
}

std::string message_of_rank(const char* relation, std::size_t found, const char* sign,
                            std::size_t limit) {
  return std::string("Input rank '") + std::to_string(found) + "' too " + relation + " (" + sign +
         " '" + std::to_string(limit) + "')!";
}

Located reckoned(const Sizes& shape, const Sizes& pos, bool grow) {
  const std::size_t rank = shape.size();
  if (pos.size() < rank) return {0, shape, message_of_rank("low", pos.size(), "<", rank)};
  if (pos.size() > rank && !grow) return {0, shape, message_of_rank("high", pos.size(), ">", rank)};
  Located located{0, shape, ""};
  located.shape.resize(pos.size(), 1);
  unsigned int stride = 1;
  for (std::size_t d = 0; d < pos.size(); ++d) {
    unsigned int& size = located.shape[d];
    const bool may_grow = grow && (Base::size(shape) == 0 || d + 1 == rank);
    if (pos[d] >= size && !may_grow) {
      return {0, shape,
              "Index " + std::to_string(d) + " out of bounds! (" + std::to_string(pos[d]) +
                  " >= " + std::to_string(size) + ")!"};
    }
    size = std::max(size, pos[d] + 1);
    located.idx += pos[d] * stride;
    stride *= size;
  }
  return located;
}

Located located(Numbers& array, const Sizes& pos, bool grow) {
  Located found{0, {}, ""};
  try {
    found.idx = array.get_idx(pos, grow);
  } catch (const VrelError& error) {
    found.message = error.get_msg();
  }
  found.shape = array.get_size(true);
  return found;
}

Sizes any_sizes(int highest) {
  using Vrel::testing::number_between;
  Sizes sizes(static_cast<std::size_t>(number_between(1, 4)));
  for (unsigned int& size : sizes) size = static_cast<unsigned int>(number_between(0, highest));
  return sizes;
}

RC_GTEST_PROP(ProparrayTest, APositionIsReckonedDimensionByDimension, ()) {
  const Sizes shape = any_sizes(4);
  Numbers array = numbers(shape);
  const std::vector<int> before(array);
  const Sizes pos = any_sizes(5);
  const bool grow = Vrel::testing::chance(2);
  const Located expected = reckoned(shape, pos, grow);
  RC_CLASSIFY(expected.message.empty(), "found");
  RC_ASSERT(located(array, pos, grow) == expected);
  RC_ASSERT(array.count() == Base::size(expected.shape));
  RC_ASSERT(std::equal(before.begin(), before.end(), array.begin()));
}

// --- From places to positions

TEST(ProparrayTest, APositionWithoutAShapeHasAOneInFront) {
  EXPECT_EQ(numbers(5).get_pos(3), (Sizes{1, 3}));
  EXPECT_EQ(numbers(5).get_pos(0), (Sizes{0, 0}));
}

TEST(ProparrayTest, APlaceThatIsTooLargeShowsInTheLastIndex) {
  EXPECT_EQ(numbers({2, 3}).get_pos(5), (Sizes{1, 2}));
  EXPECT_EQ(numbers({2, 3}).get_pos(7), (Sizes{1, 3}));
  EXPECT_EQ(numbers(Sizes{4}).get_pos(9), Sizes{9});
}

TEST(ProparrayTest, AShapeWithoutElementsHasPositionsToo) {
  Numbers array;
  array.set_size({0, 3}, Base::set_mode_checked);
  EXPECT_EQ(array.get_pos(2), (Sizes{0, 2}));
}

RC_GTEST_PROP(ProparrayTest, PositionAndPlaceAreInverse, ()) {
  const auto shape =
      *rc::gen::nonEmpty(rc::gen::resize(4, rc::gen::container<Sizes>(rc::gen::inRange(1U, 7U))));
  RC_PRE(Base::size(shape) < 100000U);
  const Numbers array = numbers(shape);
  const unsigned int idx = *rc::gen::inRange(0U, Base::size(shape));
  RC_ASSERT(array.get_idx(array.get_pos(idx)) == idx);
}

// --- Elements

TEST(ProparrayTest, CallingGivesElements) {
  Numbers array;
  array(1, 1) = 7;
  EXPECT_EQ(array.get_size(true), (Sizes{2, 2}));
  EXPECT_EQ(std::as_const(array)(1, 1), 7);
  EXPECT_EQ(array[3], 7);
}

TEST(ProparrayTest, BitsAreElementsToo) {
  VProparray<bool> array;
  array(2) = true;
  EXPECT_EQ(std::vector<bool>(array), (std::vector<bool>{false, false, true}));
  EXPECT_TRUE(std::as_const(array)(2));
}

TEST(ProparrayTest, ResizingAndClearingLeavesNoElement) {
  VProparray<bool> bits(2, true);
  bits.resize(std::size_t{3}, true);
  EXPECT_EQ(std::vector<bool>(bits), (std::vector<bool>{false, false, false}));
  bits.resize(3U, true);
  EXPECT_EQ(std::vector<bool>(bits), (std::vector<bool>{false, false, false}));
}

TEST(ProparrayTest, ResizingKeepsElementsAndShape) {
  Numbers array = numbers({2, 2});
  array.resize(std::size_t{5});
  EXPECT_EQ(std::vector<int>(array), (std::vector<int>{0, 1, 2, 3, 0}));
  array.resize(2U, false);
  EXPECT_EQ(std::vector<int>(array), (std::vector<int>{0, 1}));
  EXPECT_EQ(array.get_size(false), (Sizes{2, 2}));
}

template <class T, class V, class = void>
constexpr bool can_fill = false;
template <class T, class V>
constexpr bool
    can_fill<T, V, std::void_t<decltype(std::declval<T&>().resize(1U, std::declval<V>()))>> = true;

TEST(ProparrayTest, ResizingTakesNoValueToFillWith) {
  EXPECT_FALSE((can_fill<Numbers, int>));
  EXPECT_TRUE((can_fill<Numbers, bool>));
}

TEST(ProparrayTest, GrowingMovesValuesAndStructs) {
  VProparray<VProp> cells;
  cells(0) = "text";
  cells[0].lock();
  const void* const held = std::as_const(cells)[0].value_ptr();
  for (unsigned int i = 1; i < 100; ++i) cells(i) = 1;
  EXPECT_EQ(std::as_const(cells)[0].value_ptr(), held);
  VProparray<VPropstruct> structs;
  structs(0)["x"] = 1;
  structs[0]["x"].lock();
  const void* const field = std::as_const(structs)[0]["x"].value_ptr();
  for (unsigned int i = 1; i < 100; ++i) structs(i);
  EXPECT_EQ(std::as_const(structs)[0]["x"].value_ptr(), field);
}

TEST(ProparrayTest, GrowingKeepsTheAnnotations) {
  const auto info = boost::make_shared<VPropInfo>();
  VProparray<VProp> cells;
  cells(0).set_info(info);
  VPropstruct fields;
  fields["x"].set_info(info);
  for (unsigned int i = 1; i < 100; ++i) {
    cells(i) = 1;
    fields["x" + std::to_string(i)] = 1;
  }
  EXPECT_EQ(cells[0].get_info(), info);
  EXPECT_EQ(fields["x"].get_info(), info);
  EXPECT_EQ(info.use_count(), 3);
}

TEST(ProparrayTest, ElementsOfAShapeThatNoLongerFitsAreRefused) {
  Numbers array = numbers({2, 3});
  array.pop_back();
  EXPECT_VREL_ERROR(array(0, 0), "Invalid size vector in property array!", -1);
  EXPECT_VREL_ERROR(std::as_const(array)(0, 0), "Invalid size vector in property array!", -1);
  array.set_size(Sizes{}, Base::set_mode_shape);
  EXPECT_EQ(array(4), 4);
}

TEST(ProparrayTest, ReservingMovesWithoutCopies) {
  std::vector<VProp> values(2);
  values[0] = 5;
  values[0].lock();
  const void* const held = std::as_const(values)[0].value_ptr();
  vrel_prop_reserve(values, 100);
  EXPECT_GE(values.capacity(), 100U);
  EXPECT_EQ(values.size(), 2U);
  EXPECT_EQ(std::as_const(values)[0].value_ptr(), held);
}

TEST(ProparrayTest, ReservingAsMuchAsThereIsRoomTakesANewPlace) {
  std::vector<VProp> values;
  values.reserve(10);
  values.emplace_back(5);
  const VProp* const place = values.data();
  vrel_prop_reserve(values, 10);
  EXPECT_NE(values.data(), place);
  EXPECT_EQ(values.at(0), VProp(5));
}

TEST(ProparrayTest, ReservingLessThanThereIsRoomDoesNothing) {
  std::vector<VProp> values;
  values.reserve(10);
  const VProp* const place = values.data();
  vrel_prop_reserve(values, 9);
  EXPECT_EQ(values.data(), place);
}

}  // namespace
