// Copies of values that are locked, and that hold others.
#include <gtest/gtest.h>
#include <vrelio/prop/prop.h>
#include <vrelio/prop/prop_array.h>
#include <vrelio/prop/prop_struct.h>

#include <utility>

namespace {

// The place of what is held, without making the handle its sole owner.
const void* place(const VProp& value) { return value.value_ptr(); }

VProp locked(VProp value) {
  EXPECT_TRUE(value.lock());
  return value;
}

// As deep as no stack is.
constexpr int levels = 200000;

VProp struct_around(VProp inner) {
  VProp outer;
  outer.get<VPropstruct>().emplace_back("a", std::move(inner));
  return outer;
}

VProp cell_around(VProp inner) {
  VProp outer;
  outer.get<VProparray<VProp>>().push_back(std::move(inner));
  return outer;
}

VProp struct_array_around(VProp inner) {
  VProp outer;
  outer.get<VProparray<VPropstruct>>().emplace_back().emplace_back("a", std::move(inner));
  return outer;
}

template <class Wrap>
VProp nested(Wrap wrap) {
  VProp tree = locked(VProp(1));
  for (int i = 0; i < levels; ++i) tree = locked(wrap(std::move(tree)));
  return tree;
}

TEST(PropLockTest, AssigningFromALockedValueCopiesIt) {
  const VProp value = locked(VProp(1));
  VProp target = 2;
  target = value;
  EXPECT_EQ(target, VProp(1));
  EXPECT_NE(place(target), place(value));
  EXPECT_TRUE(target.lock());
}

TEST(PropLockTest, LockedValuesOfAnyDepthAreCopied) {
  for (const auto wrap : {struct_around, cell_around, struct_array_around}) {
    const VProp tree = nested(wrap);
    const VProp copy(tree);
    EXPECT_TRUE(copy == tree);
    EXPECT_NE(place(copy), place(tree));
  }
}

TEST(PropLockTest, BecomingTheSoleOwnerCopiesLockedValuesOfAnyDepth) {
  VProp tree = struct_around(nested(struct_around));
  const VProp shared(tree);
  tree.own();
  EXPECT_NE(place(tree), place(shared));
  EXPECT_TRUE(tree == shared);
}

TEST(PropLockTest, ACopyOfLockedValuesIsLockedNowhere) {
  const VProp tree = locked(struct_around(locked(VProp(1))));
  VProp copy(tree);
  const VProp shared(copy);
  EXPECT_EQ(place(shared), place(copy));
  const VProp& field = std::as_const(copy)["a"];
  EXPECT_NE(place(field), place(tree["a"]));
  EXPECT_EQ(place(VProp(field)), place(field));
}

TEST(PropLockTest, WhatIsNotLockedBelowALockedValueIsShared) {
  VProp tree;
  tree["a.b"] = 1;
  tree["c"] = 2;
  tree["c"].lock();
  tree.lock();
  const VProp& source = tree;
  const VProp copy(source);
  EXPECT_NE(place(copy), place(source));
  EXPECT_EQ(place(copy["a"]), place(source["a"]));
  EXPECT_NE(place(copy["c"]), place(source["c"]));
}

TEST(PropLockTest, ACopyOfALockedStructKeepsTheOrderOfItsFields) {
  VProp tree;
  for (const char* const name : {"z", "a", "m"}) tree[name] = name;
  tree.lock();
  const VProp copy(tree);
  EXPECT_EQ(copy, std::as_const(tree));
  EXPECT_EQ(copy.get<VPropstruct>()[0U].first, "z");
}

template <class T>
void expect_shape_is_copied() {
  VProparray<T> array(6);
  array.set_size({2, 3}, VProparrayBase::set_mode_checked);
  array.userbits = 6;
  const VProp tree = locked(VProp(array));
  const VProp copy(tree);
  EXPECT_NE(place(copy), place(tree));
  EXPECT_EQ(copy.get<VProparray<T>>().size(), 6U);
  EXPECT_EQ(copy.get_arr(true)->get_size(false), (VProparrayBase::index_list{2, 3}));
  EXPECT_EQ(copy.get_arr(true)->userbits, 6U);
}

TEST(PropLockTest, ACopyOfALockedArrayHasItsShapeAndBits) {
  expect_shape_is_copied<VProp>();
  expect_shape_is_copied<VPropstruct>();
  expect_shape_is_copied<int>();
}

TEST(PropLockTest, ACopyOfALockedArrayWithoutAShapeHasNone) {
  const VProp tree = locked(VProp(VProparray<VProp>(3)));
  const VProp copy(tree);
  EXPECT_EQ(copy.get_arr(true)->get_pos(2), (VProparrayBase::index_list{1, 2}));
}

}  // namespace
