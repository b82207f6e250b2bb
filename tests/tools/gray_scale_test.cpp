#include "lib/gray_scale.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <numeric>

namespace Vrel::tool {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

TEST(GrayScaleTest, LeastIsBlackAndGreatestWhite) {
  EXPECT_THAT(to_gray({10, 20, 15, 12.5}), ElementsAre(0, 255, 128, 64));
  EXPECT_THAT(to_gray({-1, 0, 1}), ElementsAre(0, 128, 255));
}

TEST(GrayScaleTest, AConstantPictureIsBlack) {
  EXPECT_THAT(to_gray({7, 7, 7}), Each(0));
  EXPECT_THAT(to_gray({0}), Each(0));
  EXPECT_THAT(to_gray({}), IsEmpty());
}

TEST(GrayScaleTest, InfiniteValuesSaturateAndCountForNothing) {
  EXPECT_THAT(to_gray({0, 1, infinity, -infinity, nan, 0.5}), ElementsAre(0, 255, 255, 0, 0, 128));
  EXPECT_THAT(to_gray({nan, nan}), Each(0));
  EXPECT_THAT(to_gray({infinity, -infinity}), ElementsAre(255, 0));
}

TEST(GrayScaleTest, AConstantPictureWithInfiniteValuesShowsThem) {
  EXPECT_THAT(to_gray({3, infinity, 3, -infinity}), ElementsAre(0, 255, 0, 0));
}

TEST(GrayScaleTest, TheWholeRangeOfDoublesIsNotTooWide) {
  constexpr double most = std::numeric_limits<double>::max();
  EXPECT_THAT(to_gray({-most, most, 0}), ElementsAre(0, 255, 128));
}

TEST(GrayScaleTest, OneInAThousandSaturatesAtEitherEnd) {
  std::vector<double> values(2001);
  std::iota(values.begin(), values.end(), 0.0);
  values[2000] = 1e9;
  values[1999] = 1e8;
  values[0] = -1e9;
  const std::vector<unsigned char> shades = to_gray(values);
  EXPECT_EQ(shades[2000], 255);
  EXPECT_EQ(shades[1998], 255);
  EXPECT_EQ(shades[1000], 128);
  EXPECT_EQ(shades[0], 0);
}

TEST(GrayScaleTest, AFewBrightSpotsOnAConstantGroundAreSeen) {
  std::vector<double> values(5000, 2.0);
  values[77] = 4.0;
  values[78] = 3.0;
  const std::vector<unsigned char> shades = to_gray(values);
  EXPECT_EQ(shades[77], 255);
  EXPECT_EQ(shades[78], 128);
  EXPECT_EQ(shades[0], 0);
}

}  // namespace
}  // namespace Vrel::tool
