#include "lib/file_extents.h"

#include <gtest/gtest.h>

#include <string>

namespace Vrel::tool {
namespace {

std::string text_of(const std::vector<Extent>& extents) {
  std::string text;
  for (const Extent& extent : extents) {
    text += std::to_string(extent.begin) + '-' + std::to_string(extent.end) + ' ';
  }
  return text;
}

TEST(FileExtentsTest, WhatIsNotAddedIsAGap) {
  FileExtents extents;
  EXPECT_EQ(text_of(extents.gaps(10)), "0-10 ");
  EXPECT_EQ(text_of(extents.gaps(0)), "");
  extents.add({5, 7});
  extents.add({0, 2});
  EXPECT_EQ(text_of(extents.gaps(10)), "2-5 7-10 ");
  extents.add({7, 10});
  extents.add({2, 5});
  EXPECT_EQ(text_of(extents.gaps(10)), "");
}

TEST(FileExtentsTest, AnEmptyStretchTakesNothing) {
  FileExtents extents;
  extents.add({5, 5});
  EXPECT_EQ(text_of(extents.gaps(10)), "0-10 ");
  EXPECT_FALSE(extents.overlaps({5, 5}));
}

TEST(FileExtentsTest, AStretchGoesNoFurtherThanToTheNext) {
  FileExtents extents;
  extents.add({10, 20});
  extents.add({5, 15});
  EXPECT_EQ(text_of(extents.gaps(30)), "0-5 20-30 ");
}

TEST(FileExtentsTest, StretchesOverlapWhereTheyShareAByte) {
  FileExtents extents;
  extents.add({10, 20});
  extents.add({30, 40});
  for (const Extent& extent : {Extent{10, 11}, {19, 25}, {5, 11}, {15, 15}, {10, 10}, {0, 50}}) {
    EXPECT_TRUE(extents.overlaps(extent)) << extent.begin;
  }
  for (const Extent& extent : {Extent{0, 10}, {20, 30}, {20, 20}, {40, 41}, {9, 9}}) {
    EXPECT_FALSE(extents.overlaps(extent)) << extent.begin;
  }
}

}  // namespace
}  // namespace Vrel::tool
