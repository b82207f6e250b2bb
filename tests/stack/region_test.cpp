#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>
#include <vrelio/stack/region.h>
#include <vrelio/stack/stack_info_imp.h>

#include <climits>
#include <cstddef>
#include <vector>

#include "stack/region_of.h"
#include "support/expect_error.h"

namespace {

using Bounds = std::vector<int>;
using Sizes = std::vector<unsigned int>;

constexpr int end_of_axis = VStackRegion::end_of_axis;

VStackInfoImp stack_of(const Sizes& sizes) {
  VStackInfoImp info(0);
  try {
    info.create(sizes, 4);
  } catch (const Json::BadCast&) {
    // The OME image has no place for the largest sizes; they are stored.
  }
  return info;
}

// All that `validate` tells.
struct Fit {
  Fit(const VStackRegion& region, const Sizes& sizes) {
    const VStackInfoImp info = stack_of(sizes);
    result = region.validate(&info, inside, source, destination);
  }

  Sizes result;
  bool inside = false;
  VStackRegion source;
  VStackRegion destination;
};

// --- Making regions

TEST(RegionTest, ANewOneIsEmpty) {
  const VStackRegion region;
  EXPECT_EQ(region.type, 0);
  EXPECT_TRUE(region.from.empty() && region.to.empty() && region.permutation.empty());
}

TEST(RegionTest, TheWholeOfAStackHasItsTypeAndAllElements) {
  const VStackInfoImp info = stack_of({3, 4});
  VStackRegion region;
  region.create(&info, 0);
  EXPECT_EQ(region.type, 4);
  EXPECT_EQ(region.from, (Bounds{0, 0}));
  EXPECT_EQ(region.to, (Bounds{3, 4}));
  EXPECT_EQ(region.permutation, (Sizes{0, 1}));
}

TEST(RegionTest, ATypeThatIsGivenCounts) {
  const VStackInfoImp info = stack_of({3, 4});
  VStackRegion region;
  region.create(&info, 64);
  EXPECT_EQ(region.type, 64);
  region.create(Sizes{2}, 0);
  EXPECT_EQ(region.type, 0);
}

TEST(RegionTest, ASizeThatNoIntHoldsEndsWithTheAxis) {
  VStackRegion region;
  region.create(Sizes{UINT_MAX, INT_MAX, 1}, 0);
  EXPECT_EQ(region.to, (Bounds{end_of_axis, end_of_axis, 1}));
}

// --- Questions

TEST(RegionTest, ARegionWithoutAxesIsNotEmptyAndHasOnePixel) {
  const VStackRegion region;
  EXPECT_FALSE(region.is_empty());
  EXPECT_EQ(region.get_num_pixels(), 1U);
}

TEST(RegionTest, AnAxisWithoutIndicesMakesARegionEmpty) {
  EXPECT_FALSE(region_of({0, -2}, {1, -1}, {}).is_empty());
  EXPECT_TRUE(region_of({0, 2}, {1, 2}, {}).is_empty());
  EXPECT_TRUE(region_of({3, 0}, {2, 2}, {}).is_empty());
}

TEST(RegionTest, PixelsAreCountedWhereverTheyLie) {
  EXPECT_EQ(region_of({-2, 0}, {3, 4}, {}).get_num_pixels(), 20U);
  EXPECT_EQ(region_of({0, 1}, {4, 1}, {}).get_num_pixels(), 0U);
  EXPECT_EQ(region_of({INT_MIN, 0}, {INT_MAX - 1, 4}, {}).get_num_pixels(),
            4ULL * (0xFFFFFFFFULL - 1));
}

TEST(RegionTest, ReversedBoundsHaveNoPixels) {
  EXPECT_VREL_ERROR(region_of({0, 2}, {4, 1}, {}).get_num_pixels(), "Invalid region!", -1);
  EXPECT_VREL_ERROR(region_of({0, 2}, {4}, {}).get_num_pixels(), "Invalid region!", -1);
}

TEST(RegionTest, PixelsThatCannotBeCountedAreRefused) {
  const Bounds low(3, INT_MIN);
  const Bounds high(3, INT_MAX);
  EXPECT_VREL_ERROR(region_of(low, high, {}).get_num_pixels(),
                    "The product exceeds the maximum size.", -1);
}

// --- Holding a region against a stack

TEST(RegionTest, ARegionReachesBeyondTheStackOnBothSides) {
  const Fit fit(region_of({-2}, {3}, {0}), {2});
  EXPECT_EQ(fit.result, Sizes{5});
  EXPECT_FALSE(fit.inside);
  EXPECT_EQ(fit.destination.from, Bounds{2});
  EXPECT_EQ(fit.destination.to, Bounds{4});
  EXPECT_EQ(fit.source.from, Bounds{0});
  EXPECT_EQ(fit.source.to, Bounds{2});
}

TEST(RegionTest, ThePartsBearTheTypeOfTheStackAndNone) {
  const Fit fit(region_of({0}, {1}, {0}), {2});
  EXPECT_EQ(fit.source.type, 4);
  EXPECT_EQ(fit.destination.type, 0);
}

TEST(RegionTest, ARegionWithinTheStackIsInside) {
  const Fit fit(region_of({1, 0}, {2, end_of_axis}, {0, 1}), {3, 4});
  EXPECT_EQ(fit.result, (Sizes{1, 4}));
  EXPECT_TRUE(fit.inside);
  EXPECT_EQ(fit.source.from, (Bounds{1, 0}));
  EXPECT_EQ(fit.source.to, (Bounds{2, 4}));
  EXPECT_EQ(fit.destination.from, (Bounds{0, 0}));
  EXPECT_EQ(fit.destination.to, (Bounds{1, 4}));
}

TEST(RegionTest, PartsPairTheAxesInTheOrderOfTheStack) {
  const Fit fit(region_of({0, 0, 0}, {2, 3, 4}, {2, 0, 1}), {2, 3, 4});
  EXPECT_EQ(fit.result, (Sizes{4, 2, 3}));
  EXPECT_EQ(fit.source.permutation, (Sizes{0, 1, 2}));
  EXPECT_EQ(fit.destination.permutation, (Sizes{1, 2, 0}));
  EXPECT_EQ(fit.destination.to, (Bounds{4, 2, 3}));
}

TEST(RegionTest, AnAxisThatIsNotNamedIsHeldAtItsBound) {
  const Fit fit(region_of({0, 2, 0}, {2, 3, 4}, {2, 0}), {2, 3, 4});
  EXPECT_EQ(fit.result, (Sizes{4, 2}));
  EXPECT_TRUE(fit.inside);
  EXPECT_EQ(fit.source.from, (Bounds{0, 2, 0}));
  EXPECT_EQ(fit.source.to, (Bounds{2, 3, 4}));
  EXPECT_EQ(fit.source.permutation, (Sizes{0, 2, 1}));
  EXPECT_EQ(fit.destination.permutation, (Sizes{1, 0}));
}

TEST(RegionTest, AnAxisWithoutBoundsIsHeldAtTheBeginning) {
  const Fit fit(region_of({1}, {2}, {0}), {2, 3});
  EXPECT_EQ(fit.source.from, (Bounds{1, 0}));
  EXPECT_EQ(fit.source.to, (Bounds{2, 1}));
  EXPECT_TRUE(fit.inside);
}

TEST(RegionTest, AnAxisThatIsHeldOutsideTheStackLeavesNothing) {
  for (const int index : {-1, 3, INT_MIN, INT_MAX - 2}) {
    const Fit fit(region_of({0, index}, {2, index + 1}, {0}), {2, 3});
    EXPECT_EQ(fit.source.from[1], 0) << index;
    EXPECT_EQ(fit.source.to[1], 0) << index;
    EXPECT_TRUE(fit.source.is_empty()) << index;
    EXPECT_TRUE(fit.inside) << index;
  }
}

TEST(RegionTest, AnAxisBeyondThoseOfTheStackHasOneIndex) {
  const Fit fit(region_of({0, -1}, {2, 2}, {1, 0}), {2});
  EXPECT_EQ(fit.result, (Sizes{3, 2}));
  EXPECT_FALSE(fit.inside);
  EXPECT_EQ(fit.destination.from, (Bounds{1, 0}));
  EXPECT_EQ(fit.destination.to, (Bounds{2, 2}));
  EXPECT_EQ(fit.source.permutation, Sizes{0});
  EXPECT_EQ(fit.destination.permutation, (Sizes{1, 0}));
}

TEST(RegionTest, TheEndOfAnAxisBeyondThoseOfTheStackIsOneIndexOn) {
  EXPECT_EQ(Fit(region_of({0, 0}, {2, end_of_axis}, {0, 1}), {2}).result, (Sizes{2, 1}));
  EXPECT_EQ(Fit(region_of({0, end_of_axis}, {2, end_of_axis}, {0, 1}), {2}).result, (Sizes{2, 1}));
}

TEST(RegionTest, AnAxisBeyondThoseOfTheStackWithoutItsOneIndexIsEmpty) {
  for (const Bounds& bounds : {Bounds{1, 3}, Bounds{-3, -1}, Bounds{-3, 0}, Bounds{0, 0}}) {
    const Fit fit(region_of({0, bounds[0]}, {2, bounds[1]}, {0, 1}), {2});
    EXPECT_TRUE(fit.destination.is_empty()) << bounds[0];
    EXPECT_FALSE(fit.inside) << bounds[0];
  }
}

TEST(RegionTest, APartThatLiesOutsideIsEmpty) {
  for (const Bounds& bounds : {Bounds{5, 7}, Bounds{-5, -2}, Bounds{-2, 0}, Bounds{2, 3}}) {
    const Fit fit(region_of({bounds[0]}, {bounds[1]}, {0}), {2});
    EXPECT_TRUE(fit.source.is_empty() && fit.destination.is_empty()) << bounds[0];
    EXPECT_FALSE(fit.inside) << bounds[0];
  }
}

TEST(RegionTest, TheShortFormTellsTheSameSizes) {
  const VStackInfoImp info = stack_of({2, 3});
  bool inside = true;
  EXPECT_EQ(region_of({-1, 0}, {1, 3}, {1, 0}).validate(&info, inside), (Sizes{3, 2}));
  EXPECT_FALSE(inside);
}

TEST(RegionTest, ListsOfBoundsOfDifferentLengthsAreRefused) {
  EXPECT_VREL_ERROR(Fit(region_of({0, 0}, {1}, {0}), {2}), "Called on invalid region!", -1);
}

TEST(RegionTest, ReversedBoundsAreRefusedAlsoOnHeldAxes) {
  EXPECT_VREL_ERROR(Fit(region_of({1}, {0}, {0}), {2}), "Called on invalid region!", -1);
  EXPECT_VREL_ERROR(Fit(region_of({0, 1}, {1, 0}, {0}), {2, 2}), "Called on invalid region!", -1);
  EXPECT_VREL_ERROR(Fit(region_of({5}, {end_of_axis}, {0}), {2}), "Called on invalid region!", -1);
}

TEST(RegionTest, ARepeatedAxisIsRefused) {
  EXPECT_VREL_ERROR(Fit(region_of({0, 0}, {1, 1}, {0, 0}), {2, 2}), "Invalid permutation!", -15);
}

TEST(RegionTest, AnAxisWithoutBoundsCannotBeNamed) {
  EXPECT_VREL_ERROR(Fit(region_of({0}, {1}, {1}), {2, 2}), "Invalid permutation!", -15);
}

TEST(RegionTest, PartsBeyondAnIntAreRefused) {
  EXPECT_VREL_ERROR(Fit(region_of({INT_MIN}, {1}, {0}), {2}), "Called on invalid region!", -1);
  EXPECT_VREL_ERROR(Fit(region_of({INT_MIN}, {end_of_axis}, {0}), {UINT_MAX}),
                    "Called on invalid region!", -1);
}

TEST(RegionTest, AnAxisLongerThanAnIntIsTakenToItsEnd) {
  const Fit fit(region_of({1}, {end_of_axis}, {0}), {UINT_MAX});
  EXPECT_EQ(fit.result, Sizes{UINT_MAX - 1});
  EXPECT_TRUE(fit.inside);
  EXPECT_EQ(fit.source.to, Bounds{end_of_axis});
}

RC_GTEST_PROP(RegionTest, BothPartsHaveTheSameShapeAndLieWithinTheirStacks, ()) {
  const auto rank = *rc::gen::inRange<std::size_t>(0, 5);
  const auto sizes = *rc::gen::container<Sizes>(rank, rc::gen::inRange(0U, 6U));
  VStackRegion region;
  region.create(sizes, 0);
  region.permutation.clear();
  for (std::size_t axis = 0; axis < rank; ++axis) {
    region.from[axis] = *rc::gen::inRange(-4, 9);
    region.to[axis] = region.from[axis] + *rc::gen::inRange(0, 7);
    if (*rc::gen::arbitrary<bool>())
      region.permutation.insert(region.permutation.begin(), static_cast<unsigned int>(axis));
  }
  VStackInfoImp info(0);
  info.create(sizes, 1);
  bool inside = false;
  VStackRegion source;
  VStackRegion destination;
  const Sizes result = region.validate(&info, inside, source, destination);
  RC_ASSERT(source.from.size() == rank);
  RC_ASSERT(destination.from.size() == result.size());
  for (std::size_t i = 0; i < result.size(); ++i) {
    const std::size_t from = source.permutation[i];
    const std::size_t to = destination.permutation[i];
    const int count = source.to[from] - source.from[from];
    RC_ASSERT(destination.to[to] - destination.from[to] == count);
    RC_ASSERT(count <= 0 ||
              (source.from[from] >= 0 && source.to[from] <= static_cast<int>(sizes[from])));
    RC_ASSERT(count <= 0 ||
              (destination.from[to] >= 0 && destination.to[to] <= static_cast<int>(result[to])));
  }
  RC_ASSERT(!inside || destination.from == Bounds(result.size(), 0));
}

}  // namespace
