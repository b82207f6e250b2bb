// What an error does without memory.
#include <gtest/gtest.h>
#include <vrelio/foundation/error.h>

#include <cerrno>
#include <string>

#include "support/system_fault.h"

namespace {

using Vrel::testing::ScopedSystemFault;
using Vrel::testing::SystemCall;

// Too long to be held without memory.
const std::string before(100, 'b');
const std::string after(100, 'a');

TEST(VrelErrorFaultTest, AReportWithoutMemoryKeepsItsIdentifierAndTheTextOfTheOneBefore) {
  const VrelError error = VrelError(after, "f", "a.x", 12)(-4);
  const std::string report = "a.x(12): ERROR\nin function 'f':\n" + after;
  int failures = 0;
  for (bool happened = true; happened; failures += happened ? 1 : 0) {
    VrelError(before, nullptr, nullptr, 0)(77).process();
    {
      const ScopedSystemFault fault({SystemCall::allocate_object, failures + 1, ENOMEM});
      EXPECT_EQ(error.process(), -4);
      happened = fault.happened();
    }
    EXPECT_EQ(vrel_get_last_error(), -4);
    EXPECT_EQ(vrel_get_last_error_string(), happened ? before : report);
    ASSERT_LT(failures, 100);
  }
  EXPECT_GT(failures, 2);
}

TEST(VrelErrorFaultTest, AWarningThatDiesWithoutMemoryLetsNothingOut) {
  VrelError(before, nullptr, nullptr, 0)(77).process();
  testing::internal::CaptureStderr();
  {
    VrelError error(after, nullptr, nullptr, 0);
    error(-10).do_warn();
    const ScopedSystemFault fault({SystemCall::allocate_object, 0, ENOMEM});
    EXPECT_STREQ(error.what(), before.c_str());
    error.do_warn_now();
  }
  testing::internal::GetCapturedStderr();
  EXPECT_EQ(vrel_get_last_error(), -10);
}

}  // namespace
