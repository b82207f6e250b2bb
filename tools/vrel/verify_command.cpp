#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "commands.h"
#include "lib/chain_walk.h"
#include "lib/error_report.h"
#include "lib/input_file.h"
#include "lib/progress_bar.h"
#include "lib/standard_output.h"
#include "lib/verify_file.h"

namespace Vrel::tool {

namespace {

struct Options {
  std::vector<std::string> files;
  bool json = false;
};

VerifyReport check(const std::string& path) {
  InputFile input(path);
  ProgressBar progress = ProgressBar::on_terminal(size_of(input.get_file()));
  return verify_file(input.get_file(), progress);
}

ExitCode verify(const std::string& path, bool json) {
  try {
    const VerifyReport report = check(path);
    StandardOutput().write(json ? to_json(path, report) : to_text(path, report));
    return report.findings.count() == 0 ? exit_done : exit_answer_is_no;
  } catch (...) {
    const Failure failure = current_failure(path);
    print_failure(failure);
    return failure.code;
  }
}

ExitCode run(const Options& options) {
  ExitCode worst = exit_done;
  for (const std::string& file : options.files) worst = std::max(worst, verify(file, options.json));
  return worst;
}

}  // namespace

void add_verify_command(CLI::App& app, Command& chosen) {
  const auto options = std::make_shared<Options>();
  CLI::App* const verb =
      app.add_subcommand("verify", "Check every structure, sample and flush point of files");
  verb->add_option("FILE", options->files, "VBF files")->required();
  verb->add_flag("--json", options->json, "One JSON object per file, each on a line of its own");
  verb->footer(
      "A fault is what makes something unreadable, or other than it was written: exit code 1.\n"
      "A note is what is unusual and harms no reader. Positions are in bytes.");
  verb->callback([options, &chosen] { chosen = [options] { return run(*options); }; });
}

}  // namespace Vrel::tool
