// What linked programs rely on: the order of virtual functions, and what an object holds.
#include <gtest/gtest.h>
#include <vrelio/remote/file.h>
#include <vrelio/remote/stack_object.h>

#include <cstddef>

#include "support/slot_of.h"

namespace {

using Remote::Stack;

// The destructor, which is slot 0, takes two places.
template <class Member>
std::size_t slot(Member member) {
  return Vrel::testing::slot_of(member) - 1;
}

TEST(RemoteLayoutTest, TheFunctionsOfAStackStandInTheirOrder) {
  EXPECT_EQ(slot(&Stack::name), 1U);
  EXPECT_EQ(slot(&Stack::set_name), 2U);
  EXPECT_EQ(slot(&Stack::description), 3U);
  EXPECT_EQ(slot(&Stack::set_description), 4U);
  EXPECT_EQ(slot(&Stack::type), 5U);
  EXPECT_EQ(slot(&Stack::number_of_elements), 6U);
  EXPECT_EQ(slot(&Stack::number_of_dimensions), 7U);
  EXPECT_EQ(slot(&Stack::size), 8U);
  EXPECT_EQ(slot(&Stack::sizes), 9U);
  EXPECT_EQ(slot(&Stack::label), 10U);
  EXPECT_EQ(slot(&Stack::set_label), 11U);
  EXPECT_EQ(slot(&Stack::labels), 12U);
  EXPECT_EQ(slot(&Stack::set_labels), 13U);
  EXPECT_EQ(slot(&Stack::length), 14U);
  EXPECT_EQ(slot(&Stack::set_length), 15U);
  EXPECT_EQ(slot(&Stack::lengths), 16U);
  EXPECT_EQ(slot(&Stack::set_lengths), 17U);
  EXPECT_EQ(slot(&Stack::offset), 18U);
  EXPECT_EQ(slot(&Stack::set_offset), 19U);
  EXPECT_EQ(slot(&Stack::offsets), 20U);
  EXPECT_EQ(slot(&Stack::set_offsets), 21U);
  EXPECT_EQ(slot(&Stack::meta_data), 22U);
  EXPECT_EQ(slot(&Stack::share), 23U);
}

TEST(RemoteLayoutTest, ObjectsHoldOneHandleEach) {
  constexpr std::size_t table = sizeof(void*);
  constexpr std::size_t handle = sizeof(boost::shared_ptr<void>);
  EXPECT_EQ(sizeof(Stack), table + handle);
  EXPECT_EQ(sizeof(Remote::StackObject), sizeof(Stack) + handle);
  EXPECT_EQ(sizeof(Remote::File), sizeof(VBFFile));
}

}  // namespace
