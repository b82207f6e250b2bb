// Trees of which the same parts are met in several ways.
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>
#include <vrelio/foundation/error.h>
#include <vrelio/prop/prop.h>
#include <vrelio/prop/prop_array.h>
#include <vrelio/prop/prop_struct.h>

#include <array>
#include <limits>
#include <map>
#include <string>
#include <utility>

#include "prop/generators.h"

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

// --- Handles that share, beside trees that never do

using Plain_tree = std::map<std::string, int>;  // numbers by their paths

const std::array<std::string, 6> paths = {"a.x", "a.y", "b{0}.x", "b{1}.x", "c(0).x", "c(1).y"};

struct Pair {
  VProp shared;
  Plain_tree plain;
};

bool holds(const VProp& tree, const std::string& path, const Plain_tree& plain) {
  const auto expected = plain.find(path);
  try {
    const VProp& found = tree[path];
    return expected == plain.end() ? found.empty() : found == VProp(expected->second);
  } catch (const VrelError&) {
    return expected == plain.end();
  }
}

void change(Pair& pair, Pair& other) {
  using Vrel::testing::number_between;
  const std::string& path = paths[static_cast<std::size_t>(number_between(0, 5))];
  const int number = number_between(0, 999);
  switch (number_between(0, 7)) {
    case 0:
      pair.shared = VProp(std::as_const(other.shared));
      pair.plain = Plain_tree(other.plain);
      break;
    case 1:
      pair.shared.swap(other.shared);
      pair.plain.swap(other.plain);
      break;
    case 2:
      pair.shared.own();
      break;
    case 3:
      pair.shared.lock();
      break;
    case 4:
      if (pair.plain.count(path) != 0) pair.shared[path].lock();
      break;
    default:
      pair.shared[path] = number;
      pair.plain[path] = number;
  }
}

RC_GTEST_PROP(PropSharingTest, WhatIsDoneToOneHandleShowsInNoOther, ()) {
  using Vrel::testing::number_between;
  std::array<Pair, 3> pairs;
  for (int i = number_between(0, 60); i > 0; --i) {
    const auto one = static_cast<std::size_t>(number_between(0, 2));
    const auto other = static_cast<std::size_t>(number_between(0, 2));
    change(pairs[one], pairs[other]);
    for (const Pair& pair : pairs) {
      for (const std::string& path : paths) RC_ASSERT(holds(pair.shared, path, pair.plain));
    }
  }
}

}  // namespace
