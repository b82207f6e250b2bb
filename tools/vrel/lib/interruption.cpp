#include "lib/interruption.h"

#include <pthread.h>
#include <unistd.h>

#include "lib/exit_code.h"

namespace Vrel::tool {

namespace {

constexpr int ending_signals[] = {SIGINT, SIGTERM, SIGHUP, SIGPIPE};

// A signal handler has no other way to know. Changed only while the signals are blocked.
std::string temporary_path;

// Calls nothing but what a signal handler may call.
extern "C" void end_by_signal(int number) {
  if (!temporary_path.empty()) ::unlink(temporary_path.c_str());
  if (number == SIGINT || number == SIGTERM) ::_exit(exit_interrupted);
  std::signal(number, SIG_DFL);
  std::raise(number);
}

sigset_t ending_set() {
  sigset_t set;
  sigemptyset(&set);
  for (const int number : ending_signals) sigaddset(&set, number);
  return set;
}

bool is_switched_off(int number) {
  struct sigaction current {};
  sigaction(number, nullptr, &current);
  return current.sa_handler == SIG_IGN && number != SIGPIPE;
}

}  // namespace

void handle_signals() {
  struct sigaction action {};
  action.sa_handler = end_by_signal;
  action.sa_mask = ending_set();
  for (const int number : ending_signals) {
    if (!is_switched_off(number)) sigaction(number, &action, nullptr);
  }
  std::signal(SIGXFSZ, SIG_IGN);
}

SignalPause::SignalPause() {
  const sigset_t set = ending_set();
  pthread_sigmask(SIG_BLOCK, &set, &before_);
}

SignalPause::~SignalPause() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

void set_temporary_file(const std::string& path) { temporary_path = path; }

}  // namespace Vrel::tool
