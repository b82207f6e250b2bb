// What destructors do with failures.
#include "container/report_internal.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <stdexcept>
#include <string>

#include "support/system_fault.h"

namespace {

using Vrel::detail::report_failures;
using Vrel::testing::ScopedSystemFault;
using Vrel::testing::SystemCall;

class ReportTest : public testing::Test {
 protected:
  ReportTest() { VrelError()("before")(-7).process(); }

  static void expect_last(int id, const char* text) {
    EXPECT_EQ(vrel_get_last_error(), id);
    EXPECT_STREQ(vrel_get_last_error_string(), text);
  }
};

TEST_F(ReportTest, WorkThatSucceedsReportsNothing) {
  report_failures([] {});
  expect_last(-7, "before");
}

TEST_F(ReportTest, ErrorsAreReportedAsTheyAre) {
  report_failures([] { throw VrelError()("an error")(-3); });
  expect_last(-3, "an error");
}

TEST_F(ReportTest, StandardExceptionsAreReportedByTheirText) {
  report_failures([] { throw std::runtime_error("100 %s"); });
  expect_last(-1, "100 %s");
}

TEST_F(ReportTest, WhatHasNoTextOrFindsNoMemoryForItIsSwallowed) {
  report_failures([] { throw 5; });
  expect_last(-7, "before");
  const std::runtime_error error(std::string(1000, 'x'));
  {
    const ScopedSystemFault fault({SystemCall::allocate_object, 0, ENOMEM, 0});
    report_failures([&] { throw error; });
  }
  expect_last(-7, "before");
}

}  // namespace
