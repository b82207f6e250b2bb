#include "lib/output.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/time.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <thread>

#include "lib/error_report.h"
#include "lib/standard_output.h"

namespace Vrel::tool {
namespace {

// While it lives, a signal interrupts the system calls of this thread every millisecond.
class ScopedInterruptions {
 public:
  ScopedInterruptions() {
    struct sigaction action {};
    action.sa_handler = [](int) {};
    ::sigaction(SIGALRM, &action, nullptr);
    const struct itimerval every_millisecond {
      {0, 1000}, { 0, 1000 }
    };
    ::setitimer(ITIMER_REAL, &every_millisecond, nullptr);
  }
  ~ScopedInterruptions() {
    const struct itimerval never {};
    ::setitimer(ITIMER_REAL, &never, nullptr);
  }
  ScopedInterruptions(const ScopedInterruptions&) = delete;
  ScopedInterruptions& operator=(const ScopedInterruptions&) = delete;
};

// Reads to the end in small pieces, with all signals left to the other thread.
void read_slowly(int descriptor, std::string& content) {
  char piece[5000];
  for (ssize_t size = 1; size > 0;) {
    std::this_thread::sleep_for(std::chrono::microseconds(500));
    size = ::read(descriptor, piece, sizeof piece);
    if (size > 0) content.append(piece, static_cast<std::size_t>(size));
  }
}

std::thread start_without_signals(int descriptor, std::string& content) {
  sigset_t all;
  sigset_t before;
  sigfillset(&all);
  pthread_sigmask(SIG_SETMASK, &all, &before);
  std::thread reader(read_slowly, descriptor, std::ref(content));
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
  return reader;
}

TEST(OutputTest, ShortAndInterruptedWritesGoOn) {
  std::string sent(1000000, '\0');
  for (std::size_t i = 0; i < sent.size(); ++i) sent[i] = static_cast<char>(i % 251);
  std::string received;
  int pipe[2];
  ASSERT_EQ(::pipe(pipe), 0);
  std::thread reader = start_without_signals(pipe[0], received);
  {
    const ScopedInterruptions interruptions;
    EXPECT_TRUE(write_all(pipe[1], sent.data(), sent.size()));
  }
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
