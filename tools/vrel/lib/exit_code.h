// What the command line answers to whoever started it.
#pragma once

namespace Vrel::tool {

/// Ordered so that the worst of several outcomes is the greatest.
enum ExitCode : int {
  exit_done = 0,
  exit_answer_is_no = 1,
  exit_usage = 2,
  exit_system = 3,
  exit_damaged = 4,
  exit_interrupted = 130
};

/// The table for the help text.
constexpr const char* exit_code_help =
    "Exit codes:\n"
    "  0    done\n"
    "  1    the answer is no (a fault or a difference was found)\n"
    "  2    wrong usage\n"
    "  3    the system refused (no such file, no space, no permission, ..)\n"
    "  4    the input is damaged or of another kind\n"
    "  130  interrupted\n";

}  // namespace Vrel::tool
