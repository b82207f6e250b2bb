#include "lib/interruption.h"

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>

#include "lib/exit_code.h"
#include "lib/output_file.h"
#include "support/temporary_file.h"

namespace Vrel::tool {
namespace {

using Vrel::testing::TemporaryFile;

// The death test's child runs this.
void be_ended_while_writing(const std::string& path, int number) {
  handle_signals();
  OutputFile output(path, false);
  output.write("half");
  std::raise(number);
}

void expect_nothing_left(const TemporaryFile& temporary) {
  EXPECT_TRUE(std::filesystem::is_empty(temporary.directory()));
}

TEST(InterruptionTest, AnInterruptionLeavesNoHalfFile) {
  for (const int number : {SIGINT, SIGTERM}) {
    const TemporaryFile temporary;
    EXPECT_EXIT(be_ended_while_writing(temporary.path(), number),
                ::testing::ExitedWithCode(exit_interrupted), "");
    expect_nothing_left(temporary);
  }
}

TEST(InterruptionTest, AClosedPipeOrTerminalEndsInTheSystemsWayAndLeavesNoHalfFile) {
  for (const int number : {SIGPIPE, SIGHUP}) {
    const TemporaryFile temporary;
    EXPECT_EXIT(be_ended_while_writing(temporary.path(), number), ::testing::KilledBySignal(number),
                "");
    expect_nothing_left(temporary);
  }
}

void be_interrupted_after_finishing(const std::string& path) {
  handle_signals();
  OutputFile output(path, false);
  output.write("whole");
  output.finish();
  std::raise(SIGINT);
}

TEST(InterruptionTest, AFinishedFileStays) {
  const TemporaryFile temporary;
  EXPECT_EXIT(be_interrupted_after_finishing(temporary.path()),
              ::testing::ExitedWithCode(exit_interrupted), "");
  EXPECT_EQ(temporary.content(), "whole");
}

void be_interrupted_while_switched_off() {
  std::signal(SIGHUP, SIG_IGN);
  std::signal(SIGPIPE, SIG_IGN);
  handle_signals();
  std::raise(SIGHUP);
  std::raise(SIGPIPE);
}

TEST(InterruptionTest, ASignalThatIsSwitchedOffStaysOffButAClosedPipeEnds) {
  EXPECT_EXIT(be_interrupted_while_switched_off(), ::testing::KilledBySignal(SIGPIPE), "");
}

void be_interrupted_in_a_pause() {
  handle_signals();
  {
    const SignalPause pause;
    std::raise(SIGINT);
    std::fputs("still here", stderr);
  }
}

TEST(InterruptionTest, APauseDelaysASignal) {
  EXPECT_EXIT(be_interrupted_in_a_pause(), ::testing::ExitedWithCode(exit_interrupted),
              "still here");
}

}  // namespace
}  // namespace Vrel::tool
