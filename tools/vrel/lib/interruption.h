// What becomes of a half-written file when a signal ends the program.
#pragma once

#include <csignal>
#include <string>

namespace Vrel::tool {

/// From now on an interruption (SIGINT, SIGTERM) ends the program with `exit_interrupted`, a closed
/// pipe or terminal in the system's own way; in each case the temporary file is removed first. A
/// signal that the caller of the program has switched off (nohup) stays off, and a file that grows
/// beyond the size limit becomes an error of writing.
void handle_signals();

/// While it lives no signal that ends the program is delivered.
class SignalPause {
 public:
  SignalPause();
  ~SignalPause();
  SignalPause(const SignalPause&) = delete;
  SignalPause& operator=(const SignalPause&) = delete;

 private:
  sigset_t before_;
};

/// Have the file removed by a signal that ends the program; an empty path for none. One file at a
/// time; to be called in a SignalPause, together with the system call that makes or takes away the
/// file.
void set_temporary_file(const std::string& path);

}  // namespace Vrel::tool
