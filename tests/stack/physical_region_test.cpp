#include <gtest/gtest.h>
#include <vrelio/stack/physical_region.h>

#include <vector>

TEST(PhysicalRegionTest, ANewOneHasNoExtentAndStandsAlongTheAxes) {
  const VStackPhysicalRegion region(2);
  EXPECT_EQ(region.type, 0);
  EXPECT_EQ(region.from, std::vector<double>(2));
  EXPECT_EQ(region.to, std::vector<double>(2));
  EXPECT_EQ(region.axes.get_size(true), (std::vector<unsigned int>{2, 2}));
  EXPECT_EQ(static_cast<const std::vector<double>&>(region.axes),
            (std::vector<double>{1, 0, 0, 1}));
}

TEST(PhysicalRegionTest, ACopyIsIndependent) {
  const VStackPhysicalRegion region(1);
  VStackPhysicalRegion copy(region);
  copy.from[0] = 3;
  copy.axes[0] = 2;
  EXPECT_EQ(region.from[0], 0);
  EXPECT_EQ(region.axes[0], 1);
  VStackPhysicalRegion other(2);
  other = copy;
  copy.to[0] = 4;
  EXPECT_EQ(other.from, std::vector<double>{3});
  EXPECT_EQ(other.to, std::vector<double>{0});
  EXPECT_EQ(other.axes.get_size(true), (std::vector<unsigned int>{1, 1}));
}
