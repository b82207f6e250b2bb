#include <gtest/gtest.h>
#include <malloc.h>
#include <vrelio/stack/shared_memory.h>
#include <vrelio/stack/stack_imp.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/expect_error.h"

namespace {

using Sizes = std::vector<unsigned int>;
using Bytes = std::vector<unsigned char>;

VStackImp bytes_stack(const Sizes& sizes) {
  return VStackImp(Ome::type_uint8, sizes, Ome::order_XYZTC);
}

Bytes bytes_of(const VStackImp& stack) {
  return Bytes(stack.get_data_ptr(), stack.get_data_ptr() + stack.get_data_size());
}

void fill(VStackImp& stack, const Bytes& bytes) {
  ASSERT_EQ(stack.get_data_size(), bytes.size());
  std::copy(bytes.begin(), bytes.end(), stack.get_data_ptr());
}

// --- Making stacks

TEST(StackImpTest, ARankMakesAStackWithoutBytes) {
  const VStackImp stack(3);
  EXPECT_EQ(stack.get_rank(), 3U);
  EXPECT_EQ(stack.get_data_size(), 0U);
  EXPECT_FALSE(stack.is_shared());
}

TEST(StackImpTest, TheElementsOfANewStackAreZero) {
  const VStackImp stack(Ome::type_double_complex, {3, 2}, Ome::order_XYZCT);
  EXPECT_EQ(bytes_of(stack), Bytes(96));
  EXPECT_EQ(stack.get_dt(), 0x40000080);
}

TEST(StackImpTest, BitIsNoTypeOfAStack) {
  EXPECT_STANDARD_ERROR(VStackImp(Ome::type_bit, {1}, Ome::order_XYZCT), std::invalid_argument,
                        "Unsupported stack type");
  VStackImp stack(1);
  EXPECT_STANDARD_ERROR(stack.resize(Ome::type_bit, {1}), std::invalid_argument,
                        "Unsupported stack type");
}

TEST(StackImpTest, AStackIsUsedAsItsDescription) {
  VStackImp stack = bytes_stack({2});
  VStackInterface& interface = stack;
  VStackInfoInterface& info = stack;
  EXPECT_EQ(static_cast<VStackInfoInterface*>(&interface), &info);
  info.set_name("name");
  EXPECT_EQ(interface.get_name(), "name");
}

TEST(StackImpTest, NoSizesAreOneElement) { EXPECT_EQ(bytes_of(bytes_stack({})), Bytes(1)); }

// --- Sizes

TEST(StackImpTest, CreatingSizesTheBuffer) {
  VStackImp stack(0);
  stack.create(Sizes{2, 3}, 4);
  EXPECT_EQ(bytes_of(stack), Bytes(12));
  VStackImp other(0);
  other.create(&stack, 128);
  EXPECT_EQ(bytes_of(other), Bytes(48));
  VStackRegion region;
  region.create(&stack, 1);
  other.create(&stack, region);
  EXPECT_EQ(other.get_data_size(), 6U);
}

TEST(StackImpTest, ElementsStayInTheirPlacesInTheBuffer) {
  VStackImp stack = bytes_stack({3});
  fill(stack, {1, 2, 3});
  stack.resize(Ome::type_uint16, {2});
  EXPECT_EQ(bytes_of(stack), (Bytes{1, 2, 3, 0}));
  stack.resize(Ome::type_uint8, {2});
  EXPECT_EQ(bytes_of(stack), (Bytes{1, 2}));
  stack.resize(Ome::type_uint8, {3});
  EXPECT_EQ(bytes_of(stack), (Bytes{1, 2, 0}));
}

TEST(StackImpTest, WithoutElementsThereAreNoBytesUntilThereAreElementsAgain) {
  VStackImp stack = bytes_stack({2});
  fill(stack, {1, 2});
  stack.resize(Ome::type_uint8, {0});
  EXPECT_EQ(stack.get_data_size(), 0U);
  stack.resize(Ome::type_uint8, {2});
  EXPECT_EQ(bytes_of(stack), Bytes(2));
}

TEST(StackImpTest, ElementsNeedAType) {
  VStackImp stack(0);
  EXPECT_VREL_ERROR(stack.create(Sizes{2}, 0), "Unknown type of elements", -1);
  EXPECT_EQ(stack.get_sizes(), Sizes{2});
  EXPECT_EQ(stack.get_data_size(), 0U);
}

TEST(StackImpTest, NoElementsNeedNoType) {
  VStackImp stack(0);
  stack.create(Sizes{2, 0}, 0);
  EXPECT_EQ(stack.get_data_size(), 0U);
}

TEST(StackImpTest, MoreBytesThan32BitsHoldAreRefused) {
  VStackImp stack = bytes_stack({2});
  fill(stack, {1, 2});
  EXPECT_VREL_ERROR(stack.create(Sizes{1U << 30}, 64), "The size increases the maximum size", -1);
  EXPECT_EQ(bytes_of(stack), (Bytes{1, 2}));
  EXPECT_EQ(stack.get_number_of_elements(), 1U << 30);
}

TEST(StackImpTest, AStackOfMoreBytesThan32BitsHoldIsNotMade) {
  EXPECT_VREL_ERROR(VStackImp(Ome::type_float, {1U << 30}, Ome::order_XYZTC),
                    "The size increases the maximum size", -1);
}

TEST(StackImpTest, ATypeIsSetBeforeSizesAreRefused) {
  VStackImp stack = bytes_stack({2});
  fill(stack, {1, 2});
  EXPECT_VREL_ERROR(stack.resize(Ome::type_double, {65536, 65536}),
                    "The product exceeds the maximum size.", -1);
  EXPECT_EQ(stack.get_dt(), 128);
  EXPECT_EQ(stack.get_sizes(), Sizes{2});
  EXPECT_EQ(bytes_of(stack), (Bytes{1, 2}));
}

TEST(StackImpTest, DestroyingLeavesOneElementOfNoType) {
  VStackImp stack = bytes_stack({2, 2});
  stack.share();
  stack.destroy();
  EXPECT_EQ(stack.get_rank(), 0U);
  EXPECT_EQ(stack.get_number_of_elements(), 1U);
  EXPECT_EQ(stack.get_dt(), 0);
  EXPECT_EQ(stack.get_data_size(), 0U);
  EXPECT_FALSE(stack.is_shared());
  stack.create(Sizes{2}, 1);
  EXPECT_EQ(bytes_of(stack), Bytes(2));
}

// --- Stacks on the same elements

TEST(StackImpTest, AWriteThroughOneIsSeenThroughTheOther) {
  VStackImp stack = bytes_stack({2});
  VStackImp other(stack);
  stack.get_data_ptr()[1] = 7;
  EXPECT_EQ(bytes_of(other), (Bytes{0, 7}));
  other.set_name("other");
  EXPECT_EQ(stack.get_name(), "");
}

TEST(StackImpTest, ACopyMadeByCopyHasElementsOfItsOwn) {
  const VStackImp stack = bytes_stack({2});
  VStackImp other(0);
  other.copy(&stack, 0);
  other.get_data_ptr()[1] = 7;
  EXPECT_EQ(bytes_of(stack), (Bytes{0, 0}));
}

TEST(StackImpTest, AnotherSizeOfOneLeavesTheOtherItsElements) {
  VStackImp stack = bytes_stack({2});
  fill(stack, {1, 2});
  const VStackImp other(stack);
  stack.resize(Ome::type_uint8, {3});
  EXPECT_EQ(bytes_of(other), (Bytes{1, 2}));
  EXPECT_EQ(bytes_of(stack), (Bytes{1, 2, 0}));
}

TEST(StackImpTest, TheElementsLiveAsLongAsOneOfTheirStacks) {
  VStackImp other(0);
  {
    VStackImp stack = bytes_stack({2});
    fill(stack, {1, 2});
    VStackImp copy(stack);
    stack.destroy();
    EXPECT_EQ(bytes_of(copy), (Bytes{1, 2}));
  }
}

// --- Shared memory

TEST(StackImpTest, SharingMovesTheBytesIntoABlock) {
  VStackImp stack = bytes_stack({2});
  fill(stack, {1, 2});
  const std::string id = stack.share();
  EXPECT_EQ(id.size(), 36U);
  EXPECT_TRUE(stack.is_shared());
  EXPECT_EQ(bytes_of(stack), (Bytes{1, 2}));
  Vrel::SharedMemory block(id);
  ASSERT_EQ(block.size(), 2U);
  static_cast<unsigned char*>(block.data())[0] = 9;
  EXPECT_EQ(bytes_of(stack), (Bytes{9, 2}));
}

// The allocator has the system map a block above 32 MiB for itself alone, and counts those.
TEST(StackImpTest, SharingGivesTheOrdinaryMemoryBack) {
  constexpr unsigned int size = 33U << 20U;
  const std::size_t before = ::mallinfo2().hblkhd;
  const VStackImp stack = bytes_stack({size});
  if (::mallinfo2().hblkhd < before + size) GTEST_SKIP() << "this allocator does not count";
  stack.share();
  EXPECT_LT(::mallinfo2().hblkhd, before + size);
}

TEST(StackImpTest, SharingAgainGivesTheSameBlock) {
  const VStackImp stack = bytes_stack({2});
  const char* const id = stack.share();
  EXPECT_EQ(stack.share(), id);
}

TEST(StackImpTest, AStackWithoutElementsCanBeShared) {
  const VStackImp stack(2);
  EXPECT_EQ(std::strlen(stack.share()), 36U);
  EXPECT_EQ(stack.get_data_size(), 0U);
}

TEST(StackImpTest, SharedDataCannotBeResized) {
  VStackImp stack = bytes_stack({2});
  fill(stack, {1, 2});
  stack.share();
  EXPECT_STANDARD_ERROR(stack.resize(Ome::type_uint8, {3}), std::runtime_error,
                        "Cannot resize shared data");
  EXPECT_EQ(stack.get_sizes(), Sizes{3});
  EXPECT_EQ(bytes_of(stack), (Bytes{1, 2}));
  EXPECT_STANDARD_ERROR(stack.create(Sizes{2}, 1), std::runtime_error, "Cannot resize shared data");
}

TEST(StackImpTest, StacksOnTheSameBlockShareIt) {
  VStackImp stack = bytes_stack({2});
  stack.share();
  VStackImp other(stack);
  EXPECT_TRUE(other.is_shared());
  other.get_data_ptr()[0] = 5;
  EXPECT_EQ(bytes_of(stack), (Bytes{5, 0}));
  EXPECT_STREQ(other.share(), stack.share());
}

TEST(StackImpTest, SharingOneLeavesTheOtherItsElements) {
  VStackImp stack = bytes_stack({2});
  fill(stack, {1, 2});
  const VStackImp other(stack);
  stack.share();
  EXPECT_FALSE(other.is_shared());
  stack.get_data_ptr()[0] = 5;
  EXPECT_EQ(bytes_of(other), (Bytes{1, 2}));
}

TEST(StackImpTest, ABlockIsGoneWithItsLastStack) {
  std::string id;
  {
    const VStackImp stack = bytes_stack({2});
    id = stack.share();
  }
  EXPECT_THROW(Vrel::SharedMemory{id}, boost::interprocess::interprocess_exception);
}

}  // namespace
