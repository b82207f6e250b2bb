// Trees of which the same parts are met in several ways.
#include <gtest/gtest.h>
#include <vrelio/prop/prop.h>
#include <vrelio/prop/prop_array.h>
#include <vrelio/prop/prop_struct.h>

#include <limits>

namespace {

// More than could be gone through if each level doubled the work.
constexpr int levels = 100;

VProp cell_with_two(const VProp& left, const VProp& right) {
  VProp outer;
  outer(0U) = left;
  outer(1U) = right;
  return outer;
}

VProp struct_with_two(const VProp& left, const VProp& right) {
  VProp outer;
  outer["a"] = left;
  outer["b"] = right;
  return outer;
}

VProp struct_array_with_two(const VProp& left, const VProp& right) {
  VProp outer;
  outer["(0).a"] = left;
  outer["(1).a"] = right;
  return outer;
}

// Each level holds the next one twice.
template <class Wrap>
VProp doubled(VProp innermost, Wrap wrap) {
  for (int i = 0; i < levels; ++i) innermost = wrap(innermost, innermost);
  return innermost;
}

// The level below twice, or once and a copy that is not shared in its first level.
VProp half_doubled(VProp innermost, int twice_at) {
  for (int i = 0; i < levels; ++i) {
    VProp other(innermost);
    if (i % 2 != twice_at) other.own();
    innermost = cell_with_two(innermost, other);
  }
  return innermost;
}

TEST(PropSharingTest, SharedPartsAreComparedOnce) {
  for (const auto wrap : {cell_with_two, struct_with_two, struct_array_with_two}) {
    const VProp tree = doubled(VProp(1), wrap);
    EXPECT_TRUE(tree == VProp(tree));
    EXPECT_TRUE(tree == doubled(VProp(1), wrap));
    EXPECT_FALSE(tree == doubled(VProp(2), wrap));
  }
}

TEST(PropSharingTest, PartsThatAreSharedOnOneSideAreComparedOnce) {
  EXPECT_TRUE(half_doubled(VProp(1), 0) == half_doubled(VProp(1), 1));
  EXPECT_TRUE(half_doubled(VProp(1), 0) == doubled(VProp(1), cell_with_two));
  EXPECT_FALSE(half_doubled(VProp(1), 0) == half_doubled(VProp(2), 1));
}

TEST(PropSharingTest, NotANumberInASharedPartEqualsNothing) {
  const VProp tree = doubled(VProp(std::numeric_limits<double>::quiet_NaN()), cell_with_two);
  EXPECT_FALSE(tree == tree);
  EXPECT_FALSE(tree == VProp(tree));
}

TEST(PropSharingTest, ASharedPartIsComparedWithEachThatItStandsFor) {
  const VProp one = cell_with_two(VProp(1), VProp(1));
  const VProp other = cell_with_two(VProp(1), VProp(2));
  EXPECT_FALSE(cell_with_two(one, one) == cell_with_two(one, other));
  EXPECT_FALSE(cell_with_two(one, other) == cell_with_two(one, one));
  EXPECT_FALSE(cell_with_two(one, other) == cell_with_two(other, one));
  EXPECT_TRUE(cell_with_two(one, other) == cell_with_two(one, other));
}

}  // namespace
