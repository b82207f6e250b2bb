// Stacks on a system without memory.
#include <gtest/gtest.h>
#include <vrelio/stack/stack_imp.h>

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

}  // namespace
