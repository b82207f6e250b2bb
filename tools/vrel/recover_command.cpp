#include <memory>
#include <string>

#include "commands.h"
#include "lib/error_report.h"
#include "lib/input_file.h"
#include "lib/printable_text.h"
#include "lib/recover.h"
#include "lib/standard_output.h"

namespace Vrel::tool {

namespace {

struct Options {
  std::string file;
  std::string output;
  bool force = false;
};

ExitCode tell(const std::string& file, const RecoverReport& report) {
  std::string text;
  for (const std::string& line : report.saved) text += "saved: " + printable(line) + '\n';
  StandardOutput().write(text);
  for (const std::string& line : report.missing) print_warning(file, "missing: " + printable(line));
  for (const std::string& line : report.notes) print_warning(file, printable(line));
  return report.missing.empty() ? exit_done : exit_answer_is_no;
}

ExitCode run(const Options& options) {
  try {
    InputFile input(options.file);
    return tell(options.file, recover(input.get_file(), options.output, options.force));
  } catch (...) {
    const Failure failure = current_failure(options.file);
    print_failure(failure);
    return failure.code;
  }
}

}  // namespace

void add_recover_command(CLI::App& app, Command& chosen) {
  const auto options = std::make_shared<Options>();
  CLI::App* const verb =
      app.add_subcommand("recover", "Save what a killed writer or a damaged file has left");
  verb->add_option("FILE", options->file, "VBF file")->required();
  verb->add_option("--output", options->output, "The new VBF file")->type_name("FILE")->required();
  verb->add_flag("--force", options->force, "Replace a file that exists");
  verb->footer(
      "Each stack that was saved is told on standard output, and on standard error what the file\n"
      "promises and has not: then the exit code is 1.");
  verb->callback([options, &chosen] { chosen = [options] { return run(*options); }; });
}

}  // namespace Vrel::tool
