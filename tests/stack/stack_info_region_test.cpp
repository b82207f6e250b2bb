// Descriptions that are made from a region of another stack.
#include <gtest/gtest.h>
#include <vrelio/stack/region.h>
#include <vrelio/stack/stack_info_imp.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "stack/region_of.h"
#include "support/expect_error.h"

namespace {

using Bounds = std::vector<int>;
using Sizes = std::vector<unsigned int>;
using Numbers = std::vector<double>;
using Texts = std::vector<std::string>;

VStackInfoImp info_of(const Sizes& sizes) {
  VStackInfoImp info(0);
  info.create(sizes, 4);
  return info;
}

VStackInfoImp part_of(const VStackInfoImp& source, const VStackRegion& region) {
  VStackInfoImp info(0);
  info.create(&source, region);
  return info;
}

const Numbers& values(const VProparray<double>& array) { return array; }

TEST(StackInfoRegionTest, TheTypeIsThatOfTheRegionOrOfTheStack) {
  const VStackInfoImp source = info_of({3});
  VStackRegion region = region_of({0}, {2}, {0});
  EXPECT_EQ(part_of(source, region).get_dt(), 4);
  region.type = 64;
  EXPECT_EQ(part_of(source, region).get_dt(), 64);
}

TEST(StackInfoRegionTest, TheSizesAreThoseOfTheResult) {
  const VStackInfoImp source = info_of({3, 4});
  EXPECT_EQ(part_of(source, region_of({-1, 1}, {5, 3}, {1, 0})).get_sizes(), (Sizes{2, 6}));
}

TEST(StackInfoRegionTest, NameAndDescriptionAreThoseOfTheStack) {
  VStackInfoImp source = info_of({3});
  source.set_name("name");
  source.set_description("text");
  const VStackInfoImp part = part_of(source, region_of({0}, {1}, {0}));
  EXPECT_EQ(part.get_name(), "name");
  EXPECT_EQ(part.get_description(), "text");
}

TEST(StackInfoRegionTest, LabelsFollowTheirAxes) {
  VStackInfoImp source = info_of({3, 4});
  source.set_labels({"X", "Y"});
  EXPECT_EQ(part_of(source, region_of({0, 0}, {1, 1}, {1, 0})).get_labels(), (Texts{"Y", "X"}));
}

TEST(StackInfoRegionTest, TheLengthIsThatOfThePixels) {
  VStackInfoImp source = info_of({4});
  source.set_len(0, 8);
  EXPECT_EQ(part_of(source, region_of({-1}, {5}, {0})).get_length(0), 12);
  EXPECT_EQ(part_of(source, region_of({1}, {VStackRegion::end_of_axis}, {0})).get_length(0), 6);
}

TEST(StackInfoRegionTest, TheOffsetGrowsByWholePixelsOfNoLength) {
  VStackInfoImp source = info_of({4});
  source.set_len(0, 8);
  source.set_off(0, 100);
  // 3 * 1 / 4 in whole numbers, then from the beginning of the stack to the middle of the result.
  EXPECT_EQ(part_of(source, region_of({3}, {4}, {0})).get_offset(0), 0 + 96 + 1);
  EXPECT_EQ(part_of(source, region_of({2}, {4}, {0})).get_offset(0), 1 + 96 + 2);
  EXPECT_EQ(part_of(source, region_of({0}, {4}, {0})).get_offset(0), 100);
}

TEST(StackInfoRegionTest, TheFirstTermOfTheOffsetWrapsIn32Bits) {
  VStackInfoImp source = info_of({4});
  source.set_len(0, 4);
  const double first = (4294967296.0 - 5) / 4;  // -1 * 5 in 32 bits
  const double expected = static_cast<double>(static_cast<unsigned int>(first)) - 2 + 2.5;
  EXPECT_EQ(part_of(source, region_of({-1}, {4}, {0})).get_offset(0), expected);
}

TEST(StackInfoRegionTest, AnAxisWithoutElementsHasDefaults) {
  VStackInfoImp source = info_of({0});
  source.set_len(0, 8);
  source.set_off(0, 3);
  const VStackInfoImp part = part_of(source, region_of({0}, {2}, {0}));
  EXPECT_EQ(part.get_length(0), 1);
  EXPECT_EQ(part.get_offset(0), 0);
}

TEST(StackInfoRegionTest, PositionsOfPixelsKeepTheirPlaces) {
  VStackInfoImp source = info_of({3});
  source.set_col_positions(0, {1, 2, 4});
  const VStackInfoImp part = part_of(source, region_of({-1}, {4}, {0}));
  EXPECT_FALSE(part.is_equidistant(0));
  EXPECT_EQ(part.get_col_positions(0), (Numbers{0, 1, 2, 4, 0}));
  EXPECT_EQ(part.get_length(0), 1);
  EXPECT_EQ(part.get_offset(0), 0);
  EXPECT_EQ(part_of(source, region_of({1}, {VStackRegion::end_of_axis}, {0})).get_col_positions(0),
            (Numbers{2, 4}));
  EXPECT_EQ(part_of(source, region_of({7}, {9}, {0})).get_col_positions(0), (Numbers{0, 0}));
  EXPECT_EQ(part_of(source, region_of({-4}, {-2}, {0})).get_col_positions(0), (Numbers{0, 0}));
}

TEST(StackInfoRegionTest, LabelsOfPixelsKeepTheirPlaces) {
  VStackInfoImp source = info_of({3});
  source.set_col_labels(0, {"a", "b", "c"});
  EXPECT_EQ(part_of(source, region_of({-1}, {2}, {0})).get_col_labels(0), (Texts{"", "a", "b"}));
  EXPECT_EQ(part_of(source, region_of({2}, {4}, {0})).get_col_labels(0), (Texts{"c", ""}));
  EXPECT_EQ(part_of(source, region_of({1}, {VStackRegion::end_of_axis}, {0})).get_col_labels(0),
            (Texts{"b", "c"}));
}

TEST(StackInfoRegionTest, OfLabelsAndPositionsThatNoLongerFitThoseThatThereAreAreShown) {
  VStackInfoImp source = info_of({2});
  source.set_col_labels(0, {"a", "b"});
  source.set_col_positions(0, {1, 2});
  source.create(Sizes{500}, 4);
  const VStackInfoImp part = part_of(source, region_of({0}, {400}, {0}));
  Texts labels(400);
  labels[0] = "a";
  labels[1] = "b";
  EXPECT_EQ(part.get_col_labels(0), labels);
  EXPECT_EQ(part.get_col_positions(0), Numbers(400));
}

TEST(StackInfoRegionTest, WhatTheResultHadBeforeDoesNotStay) {
  VStackInfoImp result = info_of({2});
  result.set_col_positions(0, {5, 6});
  result.set_col_labels(0, {"old", "old"});
  const VStackInfoImp source = info_of({3});
  result.create(&source, region_of({0}, {2}, {0}));
  EXPECT_TRUE(result.is_equidistant(0));
  EXPECT_TRUE(result.get_col_labels(0).empty());
}

TEST(StackInfoRegionTest, AnAxisThatTheStackDoesNotHaveHasDefaults) {
  VStackInfoImp source = info_of({3});
  source.set_label(0, "X");
  const VStackInfoImp part = part_of(source, region_of({0, 0}, {3, 2}, {1, 0}));
  EXPECT_EQ(part.get_sizes(), (Sizes{2, 3}));
  EXPECT_EQ(part.get_labels(), (Texts{"", "X"}));
  EXPECT_EQ(part.get_length(0), 1);
}

TEST(StackInfoRegionTest, FiveAxesCanBeTaken) {
  const VStackInfoImp source = info_of({2, 2, 2, 2, 2});
  VStackRegion region;
  region.create(&source, 0);
  region.permutation = {4, 3, 2, 1, 0};
  EXPECT_EQ(part_of(source, region).get_rank(), 5U);
}

// --- The place of the result

TEST(StackInfoRegionTest, TheColumnsOfTheProjectionFollowTheirAxes) {
  VStackInfoImp source = info_of({2, 3});
  VStackPosition position;
  position.create(Sizes{2, 3}, 3);
  position.axes[0] = VPropstring(L"a");
  position.axes[2] = VPropstring(L"c");
  static_cast<Numbers&>(position.offset) = {10, 20, 30};
  static_cast<Numbers&>(position.projection) = {1, 2, 3, 4, 5, 6};
  source.set_stack_position(position);
  const VStackPosition part =
      part_of(source, region_of({0, 0}, {2, 3}, {1, 0})).get_stack_position();
  EXPECT_EQ(values(part.projection), (Numbers{4, 5, 6, 1, 2, 3}));
  EXPECT_EQ(values(part.offset), (Numbers{10, 20, 30}));
  EXPECT_EQ(part.axes[0], VPropstring(L"a"));
  EXPECT_EQ(part.axes[2], VPropstring(L"c"));
}

TEST(StackInfoRegionTest, ThePositionMovesByTheOffsetOfAHeldAxis) {
  VStackInfoImp source = info_of({2, 3});
  source.set_off(1, 5);
  VStackPosition position;
  position.create(Sizes{2, 3}, 0);
  static_cast<Numbers&>(position.offset) = {10, 20};
  static_cast<Numbers&>(position.projection) = {1, 0, 0.5, 2};
  source.set_stack_position(position);
  const VStackPosition part = part_of(source, region_of({0, 1}, {2, 2}, {0})).get_stack_position();
  EXPECT_EQ(values(part.offset), (Numbers{12.5, 30}));
  EXPECT_EQ(values(part.projection), (Numbers{1, 0}));
}

TEST(StackInfoRegionTest, ThePositionMovesToThePixelOfAHeldAxis) {
  VStackInfoImp source = info_of({2, 3});
  source.set_off(1, 5);
  source.set_col_positions(1, {1, 2, 4});
  EXPECT_EQ(values(part_of(source, region_of({0, 2}, {2, 3}, {0})).get_stack_position().offset),
            (Numbers{0, 4}));
  EXPECT_EQ(values(part_of(source, region_of({0}, {2}, {0})).get_stack_position().offset),
            (Numbers{0, 1}));
}

TEST(StackInfoRegionTest, AHeldPixelHasToExist) {
  VStackInfoImp source = info_of({2, 3});
  source.set_col_positions(1, {1, 2, 4});
  for (const int index : {-1, 3})
    EXPECT_VREL_ERROR(part_of(source, region_of({0, index}, {2, index + 1}, {0})),
                      "Invalid pixel position!", -15);
}

TEST(StackInfoRegionTest, ThereAreAtLeastAsManyGlobalAxesAsAxes) {
  const VStackInfoImp source = info_of({2});
  const VStackInfoImp part = part_of(source, region_of({0, 0, 0}, {2, 1, 1}, {1, 0, 2}));
  const VStackPosition position = part.get_stack_position();
  EXPECT_TRUE(position.is_valid_for(&part));
  EXPECT_EQ(values(position.projection), (Numbers{1, 0, 0, 1, 1, 0, 0, 0, 1}));
}

TEST(StackInfoRegionTest, GlobalAxesStayThoughThereAreFewerAxes) {
  VStackInfoImp source = info_of({2, 3});
  VStackPosition position;
  position.create(Sizes{2, 3}, 4);
  source.set_stack_position(position);
  const VStackPosition part = part_of(source, region_of({0, 0}, {2, 3}, {1})).get_stack_position();
  EXPECT_EQ(part.axes.count(), 4U);
  EXPECT_EQ(values(part.projection), (Numbers{0, 1, 0, 0}));
}

TEST(StackInfoRegionTest, ATypeWithoutPixelTypeIsRefused) {
  const VStackInfoImp source = info_of({2});
  VStackRegion region = region_of({0}, {1}, {0});
  region.type = 0x2000;
  VStackInfoImp info(0);
  EXPECT_STANDARD_ERROR(info.create(&source, region), std::invalid_argument,
                        "Unsupported data type");
  EXPECT_EQ(info.get_dt(), 0x2000);
  EXPECT_EQ(info.get_sizes(), Sizes{1});
}

// A description of another kind, whose position is what somebody made of it.
class Misplaced : public VStackInfoImp {
 public:
  using VStackInfoImp::VStackInfoImp;
  VStackPosition get_stack_position() const override { return VStackPosition(); }
};

TEST(StackInfoRegionTest, APositionThatDoesNotFitItsStackIsRefused) {
  const Misplaced source(Ome::type_uint16, {2}, Ome::order_XYZTC);
  VStackInfoImp info(0);
  EXPECT_VREL_ERROR(info.create(&source, region_of({0}, {1}, {0})),
                    "Invalid global stack position!", -1);
  EXPECT_EQ(info.get_rank(), 0U);
}

TEST(StackInfoRegionTest, AnInvalidRegionIsRefused) {
  const VStackInfoImp source = info_of({2});
  VStackInfoImp info(0);
  EXPECT_VREL_ERROR(info.create(&source, region_of({0}, {1}, {1})), "Invalid permutation!", -15);
  EXPECT_EQ(info.get_rank(), 0U);
}

TEST(StackInfoRegionTest, ADescriptionCanTakeARegionOfItself) {
  VStackInfoImp info = info_of({4, 3});
  info.set_labels({"X", "Y"});
  info.create(&info, region_of({1, 0}, {3, 3}, {1, 0}));
  EXPECT_EQ(info.get_sizes(), (Sizes{3, 2}));
  EXPECT_EQ(info.get_labels(), (Texts{"Y", "X"}));
}

}  // namespace
