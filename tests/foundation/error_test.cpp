#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>
#include <vrelio/foundation/error.h>

#include <cerrno>
#include <cstring>
#include <memory>
#include <string>
#include <thread>
#include <utility>

#include "support/expect_error.h"
#include "support/slot_of.h"

namespace {

using Vrel::testing::slot_of;

// The library's debugger channel is replaced by this test's own.
std::string& debug_output() {
  static std::string text;
  return text;
}

}  // namespace

extern "C" void vrel_debug_output(const char* text) { debug_output() += text; }

namespace {

std::string report_of(const VrelError& error) {
  error.process();
  return vrel_get_last_error_string();
}

// The last-error pair is the process's, so every test starts from a report of its own.
class VrelErrorTest : public testing::Test {
 protected:
  void SetUp() override {
    VrelError()("nothing yet")(77).process();
    debug_output().clear();
  }
};

TEST_F(VrelErrorTest, TheVirtualFunctionsAreDestructorWhatAndClone) {
  struct WithOneMore : VrelError {
    virtual void next() {}
  };
  EXPECT_EQ(slot_of(&VrelError::what), 2u);
  EXPECT_EQ(slot_of(&VrelError::clone), 3u);
  EXPECT_EQ(slot_of(&WithOneMore::next), 4u);
}

TEST_F(VrelErrorTest, WithoutAPlaceReportsTheMessageAlone) {
  EXPECT_EQ(report_of(VrelError(nullptr, nullptr, 0)("boom")), "boom");
}

TEST_F(VrelErrorTest, WithAPlaceReportsAHeadingOfTwoLines) {
  EXPECT_EQ(report_of(VrelError("f", "a.x", 12)("boom")), "a.x(12): ERROR\nin function 'f':\nboom");
}

TEST_F(VrelErrorTest, AWarningSaysSoInItsHeading) {
  testing::internal::CaptureStderr();
  EXPECT_EQ(report_of(VrelError("f", "a.x", 12)("boom").do_warn()),
            "a.x(12): WARNING\nin function 'f':\nboom");
  testing::internal::GetCapturedStderr();
}

TEST_F(VrelErrorTest, AFileWithLineZeroGivesNoHeading) {
  EXPECT_EQ(report_of(VrelError("f", "a.x", 0)("boom")), "boom");
}

TEST_F(VrelErrorTest, ALineWithoutAFileGivesNoHeading) {
  EXPECT_EQ(report_of(VrelError("f", nullptr, 12)("boom")), "boom");
}

TEST_F(VrelErrorTest, WithoutAFunctionOnlyTheFirstHeadingLineStands) {
  EXPECT_EQ(report_of(VrelError(nullptr, "a.x", 12)("boom")), "a.x(12): ERROR\nboom");
}

TEST_F(VrelErrorTest, AHeadingLineIsCutAt4095Characters) {
  const std::string file(5000, 'x');
  EXPECT_EQ(report_of(VrelError(nullptr, file.c_str(), 12)("boom")),
            std::string(4095, 'x') + "boom");
}

TEST_F(VrelErrorTest, TheLineOfTheFunctionIsCutAt4095Characters) {
  const std::string func(5000, 'f');
  EXPECT_EQ(report_of(VrelError(func.c_str(), "a.x", 12)("boom")),
            "a.x(12): ERROR\n" + ("in function '" + func).substr(0, 4095) + "boom");
}

TEST_F(VrelErrorTest, ALongMessageOfAConstructorIsReportedWhole) {
  const std::string message(10000, 'x');
  EXPECT_EQ(report_of(VrelError(message, nullptr, nullptr, 0)), message);
}

TEST_F(VrelErrorTest, TheMessageOfAConstructorStandsAsItIs) {
  const VrelError error(std::string("100 %d"), "f", "a.x", 3);
  EXPECT_STREQ(error.get_msg(), "100 %d");
  EXPECT_STREQ(error.get_func(), "f");
  EXPECT_STREQ(error.get_file(), "a.x");
  EXPECT_EQ(error.get_line(), 3);
}

TEST_F(VrelErrorTest, ADefaultConstructedErrorIsEmpty) {
  const VrelError error;
  EXPECT_STREQ(error.get_msg(), "");
  EXPECT_STREQ(error.get_oserr(), "");
  EXPECT_EQ(error.get_file(), nullptr);
  EXPECT_EQ(error.get_func(), nullptr);
  EXPECT_EQ(error.get_line(), 0);
  EXPECT_EQ(error.get_id(), -1);
  EXPECT_EQ(error.get_oserr_id(), 0);
}

TEST_F(VrelErrorTest, ALongMessageIsCutAt4095Characters) {
  VrelError error;
  error("%s", std::string(5000, 'x').c_str());
  EXPECT_EQ(std::string(error.get_msg()), std::string(4095, 'x'));
}

TEST_F(VrelErrorTest, AMessageReplacesTheOneBefore) {
  VrelError error;
  error("first")("second %d", 2);
  EXPECT_STREQ(error.get_msg(), "second 2");
}

TEST_F(VrelErrorTest, AMessageMayBeMadeOfTheOneBefore) {
  VrelError error;
  error("first")("%s and %s", error.get_msg(), error.get_msg());
  EXPECT_STREQ(error.get_msg(), "first and first");
}

TEST_F(VrelErrorTest, AMessageThatCannotBeFormattedIsEmpty) {
  VrelError error;
  error("first")("a%ls", L"\u65e5");
  EXPECT_STREQ(error.get_msg(), "");
}

TEST_F(VrelErrorTest, EveryLinkOfAChainIsTheObjectItself) {
  testing::internal::CaptureStderr();
  {
    VrelError error;
    EXPECT_EQ(&error("boom"), &error);
    EXPECT_EQ(&error(-4), &error);
    EXPECT_EQ(&error.do_oserr(), &error);
    EXPECT_EQ(&error.do_warn(), &error);
    EXPECT_EQ(&error.do_process(), &error);
  }
  testing::internal::GetCapturedStderr();
}

TEST_F(VrelErrorTest, TheIdentifierIsMinusOneUntilItIsSet) {
  VrelError error;
  EXPECT_EQ(int{error}, -1);
  error(0);
  EXPECT_EQ(int{error}, 0);
  error(-10);
  EXPECT_EQ(error.process(), -10);
}

TEST_F(VrelErrorTest, TheSystemErrorIsAddedToTheReport) {
  VrelError error;
  error("boom");
  errno = ENOENT;
  error.do_oserr();
  EXPECT_EQ(error.get_oserr_id(), ENOENT);
  EXPECT_STREQ(error.get_oserr(), std::strerror(ENOENT));
  EXPECT_EQ(report_of(error),
            "boom\n    os_error(" + std::to_string(ENOENT) + "): " + std::strerror(ENOENT));
}

TEST_F(VrelErrorTest, WithoutASystemErrorNumberNothingIsAddedEvenIfThereIsText) {
  for (const int number : {0, -5}) {
    VrelError error;
    error("boom");
    errno = number;
    error.do_oserr();
    EXPECT_STRNE(error.get_oserr(), "");
    EXPECT_EQ(report_of(error), "boom");
  }
}

TEST_F(VrelErrorTest, AnUnknownSystemErrorHasAFixedText) {
  VrelError error;
  errno = 99999;
  error.do_oserr();
  EXPECT_STREQ(error.get_oserr(), "Unknown system error.");
  EXPECT_EQ(error.get_oserr_id(), 99999);
}

TEST_F(VrelErrorTest, AThrowAloneReportsNothing) {
  try {
    throw VrelError()("boom")(-4);
  } catch (const VrelError&) {
  }
  EXPECT_EQ(vrel_get_last_error(), 77);
  EXPECT_STREQ(vrel_get_last_error_string(), "nothing yet");
  EXPECT_EQ(debug_output(), "");
}

TEST_F(VrelErrorTest, WhatReportsAgainOnEveryCall) {
  const VrelError error = VrelError()("boom");
  EXPECT_STREQ(error.what(), "boom");
  EXPECT_EQ(vrel_get_last_error(), -1);
  EXPECT_STREQ(error.what(), "boom");
  EXPECT_EQ(debug_output(), "boom\nboom\n");
  EXPECT_EQ(error.what(), vrel_get_last_error_string());
}

TEST_F(VrelErrorTest, AReportSetsTheLastErrorPair) {
  VrelError()("boom")(-9).process();
  EXPECT_EQ(vrel_get_last_error(), -9);
  EXPECT_STREQ(vrel_get_last_error_string(), "boom");
}

TEST_F(VrelErrorTest, TheLastErrorPairIsTheProcesssNotTheThreads) {
  std::thread([] { VrelError()("elsewhere")(-3).process(); }).join();
  EXPECT_EQ(vrel_get_last_error(), -3);
  EXPECT_STREQ(vrel_get_last_error_string(), "elsewhere");
}

TEST_F(VrelErrorTest, ADyingErrorReportsOnlyIfItWasAskedTo) {
  { const VrelError quiet = VrelError()("quiet"); }
  EXPECT_EQ(debug_output(), "");
  { VrelError()("loud")(-5).do_process(); }
  EXPECT_EQ(debug_output(), "loud\n");
  EXPECT_EQ(vrel_get_last_error(), -5);
}

TEST_F(VrelErrorTest, ADyingWarningIsPrintedOnceAndReported) {
  testing::internal::CaptureStderr();
  { VrelError()("careful")(-10).do_warn().do_process(); }
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "careful\n");
  EXPECT_EQ(debug_output(), "careful\n");
  EXPECT_EQ(vrel_get_last_error(), -10);
}

TEST_F(VrelErrorTest, ACopyOfAWarningIsAWarningToo) {
  testing::internal::CaptureStderr();
  {
    VrelError source;
    source("careful").do_warn();
    VrelError copy(source);
    VrelError assigned;
    assigned = copy;
    const std::unique_ptr<VrelError> clone(assigned.clone());
  }
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "careful\ncareful\ncareful\ncareful\n");
}

TEST_F(VrelErrorTest, ACopyOfAnErrorThatWillReportReportsToo) {
  {
    VrelError source;
    source("loud").do_process();
    const VrelError copy(source);
  }
  EXPECT_EQ(debug_output(), "loud\nloud\n");
}

TEST_F(VrelErrorTest, AnAssignedErrorIsNoWarningAnyMore) {
  testing::internal::CaptureStderr();
  {
    VrelError error;
    error("careful").do_warn().do_process();
    error = VrelError()("boom");
  }
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_EQ(debug_output(), "");
}

TEST_F(VrelErrorTest, APrintedWarningIsTextAndNoFormat) {
  testing::internal::CaptureStderr();
  VrelError(std::string("100%s %n"), nullptr, nullptr, 0).do_warn_now();
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "100%s %n\n");
}

TEST_F(VrelErrorTest, DoWarnNowPrintsWhatTheObjectsClassSays) {
  class Renamed : public VrelError {
   public:
    const char* what() const noexcept override { return "in other words"; }
  };
  testing::internal::CaptureStderr();
  Renamed().do_warn_now();
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "in other words\n");
  EXPECT_EQ(vrel_get_last_error(), 77);
}

TEST_F(VrelErrorTest, DoWarnNowPrintsTheReport) {
  const VrelError error = VrelError("f", "a.x", 1)("careful");
  testing::internal::CaptureStderr();
  error.do_warn_now();
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "a.x(1): ERROR\nin function 'f':\ncareful\n");
}

TEST_F(VrelErrorTest, ACopyHoldsWhatItsSourceHeld) {
  VrelError source("f", "a.x", 12);
  source("boom")(-4);
  errno = EIO;
  source.do_oserr();
  VrelError copy;
  copy = source;
  EXPECT_EQ(copy.get_file(), source.get_file());
  EXPECT_EQ(copy.get_func(), source.get_func());
  EXPECT_EQ(copy.get_line(), 12);
  EXPECT_EQ(copy.get_id(), -4);
  EXPECT_EQ(copy.get_oserr_id(), EIO);
  EXPECT_STREQ(copy.get_oserr(), source.get_oserr());
  EXPECT_STREQ(copy.get_msg(), "boom");
  const VrelError& same = copy;
  copy = same;
  EXPECT_STREQ(copy.get_msg(), "boom");
}

TEST_F(VrelErrorTest, ACloneOutlivesTheTextsOfItsSource) {
  auto file = std::make_unique<std::string>("a.x");
  auto func = std::make_unique<std::string>("f");
  std::unique_ptr<VrelError> clone(VrelError(func->c_str(), file->c_str(), 12)("boom").clone());
  file.reset();
  func.reset();
  EXPECT_STREQ(clone->get_file(), "a.x");
  EXPECT_STREQ(clone->get_func(), "f");
  const VrelError copy(*clone);
  EXPECT_NE(copy.get_file(), clone->get_file());
  clone.reset();
  EXPECT_EQ(report_of(copy), "a.x(12): ERROR\nin function 'f':\nboom");
}

TEST_F(VrelErrorTest, ACloneHoldsWhatItsSourceHeld) {
  VrelError source;
  source("boom")(-4);
  errno = EIO;
  source.do_oserr();
  const std::unique_ptr<VrelError> clone(source.clone());
  EXPECT_EQ(clone->get_id(), -4);
  EXPECT_EQ(clone->get_oserr_id(), EIO);
  EXPECT_EQ(report_of(*clone), report_of(source));
}

TEST_F(VrelErrorTest, AnAssignedCloneAndACloneOfACloneOwnTheirTexts) {
  std::unique_ptr<VrelError> clone(VrelError("f", "a.x", 12)("boom").clone());
  VrelError assigned;
  assigned = *clone;
  const std::unique_ptr<VrelError> second(clone->clone());
  clone.reset();
  for (const VrelError* error : {&std::as_const(assigned), &std::as_const(*second)}) {
    EXPECT_EQ(report_of(*error), "a.x(12): ERROR\nin function 'f':\nboom");
  }
}

TEST_F(VrelErrorTest, ACloneThatIsAssignedToItselfKeepsItsTexts) {
  const std::unique_ptr<VrelError> clone(VrelError("f", "a.x", 12)("boom").clone());
  const VrelError& same = *clone;
  *clone = same;
  EXPECT_EQ(report_of(*clone), "a.x(12): ERROR\nin function 'f':\nboom");
}

TEST_F(VrelErrorTest, ACloneTakesOverThePlaceThatIsAssignedToIt) {
  const std::unique_ptr<VrelError> clone(VrelError("f", "a.x", 12)("boom").clone());
  const char* const file = "b.x";
  *clone = VrelError(nullptr, file, 3)("other");
  EXPECT_EQ(clone->get_file(), file);
  EXPECT_EQ(report_of(*clone), "b.x(3): ERROR\nother");
}

TEST_F(VrelErrorTest, ACloneWithoutAPlaceHasNone) {
  const std::unique_ptr<VrelError> clone(VrelError()("boom").clone());
  EXPECT_EQ(clone->get_file(), nullptr);
  EXPECT_EQ(clone->get_func(), nullptr);
  EXPECT_EQ(report_of(*clone), "boom");
}

TEST_F(VrelErrorTest, AnErrorIsAStandardException) {
  try {
    throw VrelError()("boom");
  } catch (const std::exception& error) {
    EXPECT_STREQ(error.what(), "boom");
  }
}

TEST_F(VrelErrorTest, VrelErrThrowsWithThePlaceAndReadsDirectives) {
  try {
    vrel_err("100%% sure", "f", "a.x", 12);
    FAIL();
  } catch (const VrelError& error) {
    EXPECT_STREQ(error.get_msg(), "100% sure");
    EXPECT_EQ(error.get_id(), -1);
    EXPECT_STREQ(error.get_func(), "f");
    EXPECT_STREQ(error.get_file(), "a.x");
    EXPECT_EQ(error.get_line(), 12);
  }
}

TEST_F(VrelErrorTest, VrelWarnPrintsOnceAndReturns) {
  testing::internal::CaptureStderr();
  vrel_warn("100%% sure", "f", "a.x", 12);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "a.x(12): WARNING\nin function 'f':\n100% sure\n");
  EXPECT_EQ(vrel_get_last_error(), -1);
}

TEST_F(VrelErrorTest, VrelLasterrThrowsWithIdentifierOneAndLeavesTheSystemErrorAlone) {
  errno = EIO;
  try {
    vrel_lasterr("50%%", "f", "a.x", 12);
    FAIL();
  } catch (const VrelError& error) {
    EXPECT_EQ(error.get_id(), 1);
    EXPECT_EQ(error.get_oserr_id(), 0);
    EXPECT_STREQ(error.get_oserr(), "");
    EXPECT_STREQ(error.get_msg(), "50%");
  }
}

TEST_F(VrelErrorTest, ConversionProblemsNameTheirFlagsInAFixedOrder) {
  const VrelError source = VrelError("f", "a.x", 12)("old")(-5);
  EXPECT_VREL_ERROR(
      wrap_array_report_error(source, 15, 0, false),
      "Runtime error during type conversion: Flags: [rank][rng min][rng max][rounding]", -5);
  EXPECT_VREL_ERROR(wrap_array_report_error(source, 4 | 1, 99, false),
                    "Runtime error during type conversion: Flags: [rng min][rounding]", -5);
  EXPECT_VREL_ERROR(wrap_array_report_error(source, 16, 0, false),
                    "Runtime error during type conversion: Flags: ", -5);
  EXPECT_STREQ(source.get_msg(), "old");
}

TEST_F(VrelErrorTest, AConversionProblemCanBeAWarningOnly) {
  testing::internal::CaptureStderr();
  wrap_array_report_error(VrelError()(-5), 2, 0, true);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "Runtime error during type conversion: Flags: [rng max]\n");
  EXPECT_EQ(vrel_get_last_error(), -5);
}

TEST_F(VrelErrorTest, AConversionProblemKeepsThePlaceOfItsError) {
  testing::internal::CaptureStderr();
  wrap_array_report_error(VrelError("f", "a.x", 12)("old"), 8, 0, true);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "a.x(12): WARNING\nin function 'f':\n"
            "Runtime error during type conversion: Flags: [rank]\n");
}

}  // namespace
