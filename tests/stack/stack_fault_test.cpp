// Stacks on a system without memory.
#include <gtest/gtest.h>
#include <vrelio/stack/stack_imp.h>

#include <boost/interprocess/exceptions.hpp>
#include <cerrno>
#include <vector>

#include "support/expect_error.h"
#include "support/system_fault.h"

namespace {

using Sizes = std::vector<unsigned int>;
using Vrel::testing::ScopedSystemFault;
using Vrel::testing::SystemCall;

TEST(StackFaultTest, WithoutMemoryTheBufferStaysAsItWas) {
  VStackImp stack(Ome::type_uint8, {2}, Ome::order_XYZTC);
  stack.get_data_ptr()[1] = 7;
  {
    const ScopedSystemFault fault({SystemCall::allocate, 1, ENOMEM});
    EXPECT_VREL_ERROR(stack.create(Sizes{1000}, 1), "Out of memory", -1);
    EXPECT_TRUE(fault.happened());
  }
  EXPECT_EQ(stack.get_sizes(), Sizes{1000});
  ASSERT_EQ(stack.get_data_size(), 2U);
  EXPECT_EQ(stack.get_data_ptr()[1], 7);
  stack.create(Sizes{3}, 1);
  EXPECT_EQ(stack.get_data_ptr()[1], 7);
}

TEST(StackFaultTest, WithoutMemoryACopyLeavesTheBufferAsItWas) {
  const VStackImp source(Ome::type_uint8, {1000}, Ome::order_XYZTC);
  VStackImp stack(Ome::type_uint8, {2}, Ome::order_XYZTC);
  stack.get_data_ptr()[1] = 7;
  const ScopedSystemFault fault({SystemCall::allocate, 1, ENOMEM});
  EXPECT_VREL_ERROR(stack.copy(&source, 0), "Out of memory", -1);
  EXPECT_TRUE(fault.happened());
  ASSERT_EQ(stack.get_data_size(), 2U);
  EXPECT_EQ(stack.get_data_ptr()[1], 7);
}

TEST(StackFaultTest, WithoutABlockTheStackKeepsItsBuffer) {
  VStackImp stack(Ome::type_uint8, {2}, Ome::order_XYZTC);
  stack.get_data_ptr()[1] = 7;
  const unsigned char* const data = stack.get_data_ptr();
  {
    const ScopedSystemFault fault({SystemCall::open_shared, 1, EACCES});
    EXPECT_THROW(stack.share(), boost::interprocess::interprocess_exception);
    EXPECT_TRUE(fault.happened());
  }
  EXPECT_FALSE(stack.is_shared());
  EXPECT_EQ(stack.get_data_ptr(), data);
  EXPECT_EQ(data[1], 7);
  stack.share();
  EXPECT_EQ(stack.get_data_ptr()[1], 7);
}

}  // namespace
