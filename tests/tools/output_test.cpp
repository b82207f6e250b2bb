#include "lib/output.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <pthread.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <thread>

#include "lib/error_report.h"
#include "lib/standard_output.h"

namespace Vrel::tool {
namespace {

// While it lives, SIGUSR1 interrupts system calls and does nothing else.
class ScopedInterruptions {
 public:
  ScopedInterruptions() {
    struct sigaction action {};
    action.sa_handler = [](int) {};
    ::sigaction(SIGUSR1, &action, &before_);
  }
  ~ScopedInterruptions() { ::sigaction(SIGUSR1, &before_, nullptr); }
  ScopedInterruptions(const ScopedInterruptions&) = delete;
  ScopedInterruptions& operator=(const ScopedInterruptions&) = delete;

 private:
  struct sigaction before_ {};
};

// Reads to the end in small pieces. Interrupts the writer twice before each: the first signal ends a
// write that has moved a part, the second one that waits and has moved nothing yet.
void read_slowly(int descriptor, pthread_t writer, std::string& content) {
  char piece[5000];
  for (ssize_t size = 1; size > 0;) {
    for (int i = 0; i < 2; ++i) {
      std::this_thread::sleep_for(std::chrono::microseconds(500));
      ::pthread_kill(writer, SIGUSR1);
    }
    size = ::read(descriptor, piece, sizeof piece);
    if (size > 0) content.append(piece, static_cast<std::size_t>(size));
  }
}

TEST(OutputTest, ShortAndInterruptedWritesGoOn) {
  std::string sent(1000000, '\0');
  for (std::size_t i = 0; i < sent.size(); ++i) sent[i] = static_cast<char>(i % 251);
  std::string received;
  int pipe[2];
  ASSERT_EQ(::pipe(pipe), 0);
  const ScopedInterruptions interruptions;
  std::thread reader(read_slowly, pipe[0], ::pthread_self(), std::ref(received));
  EXPECT_TRUE(write_all(pipe[1], sent.data(), sent.size()));
  ::close(pipe[1]);
  reader.join();
  ::close(pipe[0]);
  EXPECT_EQ(received, sent);
}

TEST(OutputTest, AFailedWriteLeavesTheSystemsReason) {
  EXPECT_FALSE(write_all(-1, "text", 4));
  EXPECT_EQ(errno, EBADF);
}

TEST(OutputTest, NoBytesAreNoWrite) { EXPECT_TRUE(write_all(-1, nullptr, 0)); }

TEST(StandardOutputTest, BytesArriveAtOnceAndAsTheyAre) {
  ::testing::internal::CaptureStdout();
  StandardOutput().write(std::string("a\0b\n", 4));
  EXPECT_EQ(::testing::internal::GetCapturedStdout(), std::string("a\0b\n", 4));
}

// While it lives there is no standard output.
class ScopedClosedOutput {
 public:
  ScopedClosedOutput() : kept_(::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 3)) {
    ::close(STDOUT_FILENO);
  }
  ~ScopedClosedOutput() {
    ::dup2(kept_, STDOUT_FILENO);
    ::close(kept_);
  }
  ScopedClosedOutput(const ScopedClosedOutput&) = delete;
  ScopedClosedOutput& operator=(const ScopedClosedOutput&) = delete;

 private:
  int kept_;
};

TEST(StandardOutputTest, AFailureNamesStandardOutput) {
  const ScopedClosedOutput closed;
  try {
    StandardOutput().write(std::string("text"));
    FAIL();
  } catch (const OutputError& error) {
    EXPECT_EQ(error.get_output(), "standard output");
    EXPECT_STREQ(error.get_msg(), "Could not write!");
    EXPECT_EQ(error.get_oserr_id(), EBADF);
  }
}

}  // namespace
}  // namespace Vrel::tool
