#include "lib/description.h"

#include <gtest/gtest.h>

#include "support/expect_error.h"

namespace Vrel::tool {
namespace {

Description with_stacks(unsigned count) {
  Description description;
  description.file.stacks.resize(count);
  return description;
}

TEST(DescriptionTest, StacksAreCountedFromZero) {
  const Description description = with_stacks(2);
  EXPECT_EQ(&choose_stack(description, 1), &description.file.stacks[1]);
}

TEST(DescriptionTest, AStackThatIsNotThereIsNamed) {
  EXPECT_VREL_ERROR(choose_stack(with_stacks(2), 2), "Invalid stack index 2!", -6);
  EXPECT_VREL_ERROR(choose_stack(with_stacks(0), 18446744073709551615ull),
                    "Invalid stack index 18446744073709551615!", -6);
}

TEST(DescriptionTest, DamageBehindAStackDoesNotHideIt) {
  Description description = with_stacks(1);
  description.error = VrelError()("Stack header not in vbf format!")(-4);
  EXPECT_NO_THROW(choose_stack(description, 0));
  EXPECT_VREL_ERROR(choose_stack(description, 1), "Stack header not in vbf format!", -4);
}

}  // namespace
}  // namespace Vrel::tool
