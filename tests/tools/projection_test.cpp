#include "lib/projection.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "lib/png_output.h"
#include "lib/png_writer.h"
#include "support/expect_error.h"
#include "support/temporary_file.h"

namespace Vrel::tool {
namespace {

using ::testing::ElementsAre;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

std::vector<double> project(const PictureAxes& axes, const std::vector<double>& values) {
  MaximumProjection projection(axes);
  projection.add(values.data(), values.size());
  return projection.take_picture();
}

TEST(MaximumProjectionTest, APlaneIsItself) {
  EXPECT_THAT(project({{3, 2}, 0, 1}, {1, 2, 3, 4, 5, 6}), ElementsAre(1, 2, 3, 4, 5, 6));
}

TEST(MaximumProjectionTest, RowsAndColumnsCanBeAnyAxes) {
  const std::vector<double> values = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
  EXPECT_THAT(project({{3, 2, 2}, 0, 1}, values), ElementsAre(7, 8, 9, 10, 11, 12));
  EXPECT_THAT(project({{3, 2, 2}, 1, 2}, values), ElementsAre(3, 6, 9, 12));
  EXPECT_THAT(project({{3, 2, 2}, 1, 0}, values), ElementsAre(7, 10, 8, 11, 9, 12));
  EXPECT_THAT(project({{3, 2, 2}, 2, 9}, values), ElementsAre(6, 12));
  EXPECT_THAT(project({{}, 0, 1}, {5}), ElementsAre(5));
}

TEST(MaximumProjectionTest, NegativeValuesHaveTheirMaximum) {
  EXPECT_THAT(project({{1, 1, 3}, 0, 1}, {-5, -2, -9}), ElementsAre(-2));
}

TEST(MaximumProjectionTest, WhatIsNoNumberCountsOnlyAlone) {
  const std::vector<double> picture = project({{2, 1, 3}, 0, 1}, {nan, nan, 1, nan, nan, nan});
  EXPECT_EQ(picture[0], 1);
  EXPECT_TRUE(std::isnan(picture[1]));
}

TEST(MaximumProjectionTest, PiecesOfAnySizeGiveTheSamePicture) {
  constexpr unsigned seed = 9;
  std::mt19937 random(seed);
  std::vector<double> values(7 * 5 * 4 * 3);
  for (double& value : values) value = static_cast<double>(random() % 1000);
  const PictureAxes axes{{7, 5, 4, 3}, 2, 0};
  const std::vector<double> expected = project(axes, values);
  for (int number = 0; number < 50; ++number) {
    MaximumProjection projection(axes);
    for (std::size_t done = 0; done < values.size();) {
      const std::size_t piece = std::min<std::size_t>(values.size() - done, 1 + random() % 40);
      projection.add(values.data() + done, piece);
      done += piece;
    }
    EXPECT_EQ(projection.take_picture(), expected) << "seed " << seed << ", case " << number;
  }
}

TEST(PictureAxesTest, XAndYAreShownIfTheyHaveMoreThanOneIndex) {
  const auto choose = [](const std::vector<char>& letters, const std::vector<u64>& sizes) {
    Region region;
    for (const u64 size : sizes) region.push_back({0, size, false});
    const PictureAxes axes = choose_picture_axes(letters, region);
    return std::pair(axes.column, axes.row);
  };
  EXPECT_EQ(choose({'X', 'Y', 'Z'}, {5, 5, 5}), std::pair(std::size_t{0}, std::size_t{1}));
  EXPECT_EQ(choose({'Z', 'Y', 'X'}, {5, 5, 5}), std::pair(std::size_t{2}, std::size_t{1}));
  EXPECT_EQ(choose({'X', 'Y', 'Z'}, {1, 5, 5}), std::pair(std::size_t{1}, std::size_t{2}));
  EXPECT_EQ(choose({'X', 'Y', 'Z', 'T'}, {1, 5, 1, 5}), std::pair(std::size_t{1}, std::size_t{3}));
  EXPECT_EQ(choose({'X', 'Y', 'Z'}, {1, 1, 5}), std::pair(std::size_t{2}, std::size_t{0}));
}

TEST(PictureAxesTest, MissingAxesCountAsOneIndex) {
  const PictureAxes none = choose_picture_axes({}, {});
  EXPECT_EQ(none.width() * none.height(), 1u);
  const PictureAxes row = choose_picture_axes({'X'}, {{0, 7, false}});
  EXPECT_EQ(row.width(), 7u);
  EXPECT_EQ(row.height(), 1u);
}

TEST(PngOutputTest, SamplesThatAreNoNumbersAreRefused) {
  const Vrel::testing::TemporaryFile temporary;
  EXPECT_VREL_ERROR(PngOutput(temporary.path(), false, {{1}, 0, 1}, 0x400),
                    "Invalid on-the-fly conversion from 'none' to 'double'!", -1);
  EXPECT_FALSE(temporary.exists());
}

TEST(PngOutputTest, APictureThatIsTooWideForPngIsToldAndLeavesNothing) {
  const Vrel::testing::TemporaryFile temporary;
  const NewFile file(temporary.path(), false);
  const unsigned char pixel = 0;
  EXPECT_THROW(write_png(file, 0x80000000u, 1, &pixel), VrelError);
  EXPECT_FALSE(temporary.exists());
}

}  // namespace
}  // namespace Vrel::tool
