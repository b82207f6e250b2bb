#include <gtest/gtest.h>
#include <vrelio/stack/position.h>
#include <vrelio/stack/stack_info_imp.h>

#include <string>
#include <vector>

#include "support/expect_error.h"

namespace {

using Sizes = std::vector<unsigned int>;

const std::vector<double>& values(const VProparray<double>& array) { return array; }

VStackInfoImp labelled(const std::vector<std::string>& labels) {
  VStackInfoImp info(static_cast<unsigned int>(labels.size()));
  info.set_labels(labels);
  return info;
}

TEST(PositionTest, ANewOneHasNoGlobalAxes) {
  const VStackPosition position;
  EXPECT_EQ(position.axes.count(), 0U);
  EXPECT_EQ(position.offset.count(), 0U);
  EXPECT_EQ(position.projection.get_size(true), (Sizes{0, 0}));
}

TEST(PositionTest, ACopyIsIndependent) {
  VStackPosition position;
  position.create(Sizes{4}, 0);
  VStackPosition copy(position);
  copy.offset[0] = 5;
  copy.axes[0] = VPropstring(L"copy");
  EXPECT_EQ(position.offset[0], 0);
  EXPECT_EQ(position.axes[0], VPropstring());
  position = copy;
  copy.projection[0] = 2;
  EXPECT_EQ(position.offset[0], 5);
  EXPECT_EQ(position.projection[0], 1);
}

TEST(PositionTest, EachAxisRunsAlongTheGlobalAxisOfItsNumber) {
  VStackPosition position;
  position.create(Sizes{4, 5}, 3);
  EXPECT_EQ(position.axes.get_size(true), Sizes{3});
  EXPECT_EQ(position.offset.get_size(true), Sizes{3});
  EXPECT_EQ(values(position.offset), (std::vector<double>{0, 0, 0}));
  EXPECT_EQ(position.projection.get_size(true), (Sizes{3, 2}));
  EXPECT_EQ(values(position.projection), (std::vector<double>{1, 0, 0, 0, 1, 0}));
}

TEST(PositionTest, ARankOfZeroIsThatOfTheStack) {
  VStackPosition position;
  position.create(Sizes{4, 5}, 0);
  EXPECT_EQ(position.projection.get_size(true), (Sizes{2, 2}));
}

TEST(PositionTest, AStackOfMoreAxesThanTheGlobalOnesIsRefused) {
  VStackPosition position;
  position.create(Sizes{7}, 0);
  EXPECT_VREL_ERROR(position.create(Sizes{4, 4}, 1),
                    "Rank cannot be larger than the number of global axes!", -1);
  EXPECT_EQ(position.axes.count(), 1U);
}

TEST(PositionTest, TheFirstGlobalAxesAreNamedAsThoseOfTheStack) {
  const VStackInfoImp info = labelled({"X", "\xC2\xB5"});
  VStackPosition position;
  position.create(&info, 3);
  EXPECT_EQ(position.axes[0], VPropstring(L"X"));
  EXPECT_EQ(position.axes[1], VPropstring(L"\u00B5"));
  EXPECT_EQ(position.axes[2], VPropstring());
}

TEST(PositionTest, WhatWasCreatedForAStackIsValidForIt) {
  for (unsigned int rank = 0; rank < 4; ++rank) {
    const VStackInfoImp info(rank);
    VStackPosition position;
    position.create(&info, rank == 0 ? 0 : rank + 1);
    EXPECT_TRUE(position.is_valid_for(&info)) << rank;
  }
}

TEST(PositionTest, AListOfTwoDimensionsIsNotValid) {
  const VStackInfoImp info(2);
  VStackPosition position;
  position.create(&info, 0);
  position.axes.set_size({1, 2}, VProparrayBase::set_mode_checked);
  EXPECT_FALSE(position.is_valid_for(&info));
  position.create(&info, 0);
  position.offset.set_size({2, 1}, VProparrayBase::set_mode_checked);
  EXPECT_FALSE(position.is_valid_for(&info));
}

TEST(PositionTest, ListsOfDifferentLengthsAreNotValid) {
  const VStackInfoImp info(2);
  VStackPosition position;
  position.create(&info, 0);
  position.offset.set_size({3}, VProparrayBase::set_mode_resize);
  EXPECT_FALSE(position.is_valid_for(&info));
}

TEST(PositionTest, AProjectionOfAnotherShapeIsNotValid) {
  const VStackInfoImp info(2);
  for (const Sizes& shape : {Sizes{4}, Sizes{1, 4}, Sizes{4, 1}, Sizes{2, 2, 1}, Sizes{2, 3}}) {
    VStackPosition position;
    position.create(&info, 0);
    position.projection.set_size(shape, VProparrayBase::set_mode_clear);
    EXPECT_FALSE(position.is_valid_for(&info)) << shape.size();
  }
}

TEST(PositionTest, ElementsThatFitNoShapeAreNotValid) {
  const VStackInfoImp info(2);
  VStackPosition position;
  position.create(&info, 0);
  position.projection.resize(5);
  EXPECT_FALSE(position.is_valid_for(&info));
}

TEST(PositionTest, AStackOfAnotherRankHasAnother) {
  VStackPosition position;
  position.create(Sizes{1, 1}, 0);
  const VStackInfoImp info(3);
  EXPECT_FALSE(position.is_valid_for(&info));
}

}  // namespace
