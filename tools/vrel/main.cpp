// vrel: what VBF files hold, on the command line.
#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

#include "commands.h"
#include "lib/error_report.h"
#include "lib/interruption.h"
#include "lib/memory_limit.h"
#include "lib/standard_output.h"

using namespace Vrel::tool;

namespace {

// The parser misses a command before it says that a word is none.
std::string fault_in_words(const CLI::App& app, const CLI::Error& error) {
  const std::vector<std::string> words = app.remaining();
  if (!app.get_subcommands().empty() || words.empty()) return error.what();
  return "'" + words.front() + "' is no command";
}

std::string usage_failure(const CLI::App* app, const CLI::Error& error) {
  return "vrel: " + fault_in_words(*app, error) + "\nRun 'vrel --help' for the usage.\n";
}

// Help and version come as errors too, of which only the real ones have a code.
ExitCode answer_parse_error(const CLI::App& app, const CLI::ParseError& error) {
  std::ostringstream results;
  const int code = app.exit(error, results, std::cerr);
  StandardOutput().write(results.str());
  return code == 0 ? exit_done : exit_usage;
}

ExitCode run(int argc, char** argv) {
  CLI::App app;
  Command chosen;
  std::uint64_t max_memory = default_max_memory;
  add_command_line(app, chosen, max_memory);
  app.failure_message(usage_failure);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return answer_parse_error(app, error);
  }
  limit_memory(max_memory);
  return chosen();
}

}  // namespace

int main(int argc, char** argv) {
  handle_signals();
  try {
    return run(argc, argv);
  } catch (...) {
    const Failure failure = current_failure("");
    print_failure(failure);
    return failure.code;
  }
}
