#include "lib/error_report.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <new>

namespace Vrel::tool {
namespace {

template <class Error>
Failure failure_of(const Error& error) {
  try {
    throw error;
  } catch (...) {
    return current_failure("input");
  }
}

void expect_failure(const Failure& failure, ExitCode code, const std::string& file,
                    const std::string& message) {
  EXPECT_EQ(failure.code, code);
  EXPECT_EQ(failure.file, file);
  EXPECT_EQ(failure.message, message);
}

TEST(ErrorReportTest, AnErrorOfTheLibraryIsDamage) {
  expect_failure(failure_of(VrelError()("Invalid stack index %d!", 7)(-6)), exit_damaged, "input",
                 "Invalid stack index 7!");
}

TEST(ErrorReportTest, AnErrorWithASystemErrorIsTheSystems) {
  errno = ENOENT;
  const VrelError error = VrelError().do_oserr()("Could not open file!");
  expect_failure(failure_of(error), exit_system, "input",
                 "Could not open file!\n    os_error(2): No such file or directory");
}

TEST(ErrorReportTest, AnErrorOfTheOutputNamesTheOutput) {
  errno = ENOSPC;
  const OutputError error(VrelError().do_oserr()("Could not write!"), "output");
  expect_failure(failure_of(error), exit_system, "output",
                 "Could not write!\n    os_error(28): No space left on device");
}

TEST(ErrorReportTest, OtherExceptionsAreToldToo) {
  expect_failure(failure_of(std::bad_alloc()), exit_system, "input",
                 "Out of memory! --max-memory sets the limit.");
  expect_failure(failure_of(7), exit_damaged, "input", "Unknown error!");
}

TEST(ErrorReportTest, AReportNamesProgramFileAndMessage) {
  testing::internal::CaptureStderr();
  print_failure({exit_damaged, "name", "two\nlines %s"});
  print_failure({exit_damaged, "", "message"});
  print_warning("name", "message");
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "vrel: name: two\nlines %s\nvrel: message\nvrel: name: warning: message\n");
}

}  // namespace
}  // namespace Vrel::tool
