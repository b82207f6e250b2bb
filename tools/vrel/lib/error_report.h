// How failures reach the user: one text on standard error and an exit code.
#pragma once

#include <vrelio/foundation/error.h>

#include <string>

#include "lib/exit_code.h"

namespace Vrel::tool {

/// A failure at another file than the one being read.
class OutputError : public VrelError {
 public:
  OutputError(const VrelError& error, std::string file)
      : VrelError(error), output_(std::move(file)) {}

  const std::string& get_output() const { return output_; }

 private:
  std::string output_;
};

/// Throw an OutputError with this message and the calling thread's last system error.
[[noreturn]] void raise_output_error(const std::string& file, const char* message);

/// A failure in words, with the file that it happened to.
struct Failure {
  ExitCode code;
  std::string file;
  std::string message;
};

/// `exit_system` where the system had an error of its own, else `exit_damaged`.
ExitCode exit_code_of(const VrelError& error);

/// What the exception that is being handled means for the work on `file`.
Failure current_failure(const std::string& file);

/// Print "vrel: FILE: MESSAGE" to standard error; without "FILE: " where there is no file.
void print_failure(const Failure& failure);
/// Print "vrel: FILE: warning: MESSAGE" to standard error.
void print_warning(const std::string& file, const std::string& message);

}  // namespace Vrel::tool
