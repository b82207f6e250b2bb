// vrel: what VBF files hold, on the command line.
#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

#include "commands.h"
#include "lib/error_report.h"
#include "lib/interruption.h"
#include "lib/memory_limit.h"
#include "lib/program_name.h"
#include "lib/standard_output.h"
#include "number_option.h"

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

// May stand before or behind the verb.
void add_max_memory(CLI::App& app, std::uint64_t& bytes) {
  app.add_option("--max-memory", bytes,
                 "Most memory to take, for instance 512MiB; 1 GiB if not given")
      ->check(refuse_sign)
      ->transform(CLI::AsSizeValue(false))
      ->type_name("SIZE");
  for (CLI::App* const verb : app.get_subcommands({})) verb->fallthrough();
}

ExitCode run(int argc, char** argv) {
  CLI::App app(
      "Describe, check, recover and repack VBF files, import stacks into them and export what they "
      "hold, show and change property trees, convert units and values, and clean up shared memory",
      "vrel");
  Command chosen;
  app.set_version_flag("--version", program_name());
  app.require_subcommand(1);
  app.footer(exit_code_help);
  app.failure_message(usage_failure);
  add_info_command(app, chosen);
  add_export_command(app, chosen);
  add_import_command(app, chosen);
  add_props_command(app, chosen);
  add_recover_command(app, chosen);
  add_repack_command(app, chosen);
  add_shm_command(app, chosen);
  add_units_command(app, chosen);
  add_verify_command(app, chosen);
  add_json2xml_command(app, chosen);
  add_xml2json_command(app, chosen);
  std::uint64_t max_memory = default_max_memory;
  add_max_memory(app, max_memory);
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
