#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "commands.h"
#include "lib/description.h"
#include "lib/description_json.h"
#include "lib/description_text.h"
#include "lib/error_report.h"
#include "lib/input_file.h"
#include "lib/standard_output.h"

namespace Vrel::tool {

namespace {

struct Options {
  std::vector<std::string> files;
  bool json = false;
};

struct Answer {
  std::string text;
  std::optional<Failure> failure;
};

Answer describe(const std::string& path, bool json) {
  Answer answer;
  try {
    InputFile input(path);
    const Description description = read_description(input.get_file());
    if (description.has_header()) {
      answer.text = json ? to_json(description) : to_text(path, description.file);
    }
    if (description.error) throw VrelError(*description.error);
  } catch (...) {
    answer.failure = current_failure(path);
  }
  return answer;
}

ExitCode show(const Answer& answer) {
  StandardOutput().write(answer.text);
  if (!answer.failure) return exit_done;
  print_failure(*answer.failure);
  return answer.failure->code;
}

ExitCode run(const Options& options) {
  ExitCode worst = exit_done;
  for (const std::string& file : options.files) {
    worst = std::max(worst, show(describe(file, options.json)));
  }
  return worst;
}

}  // namespace

void add_info_command(CLI::App& app, Command& chosen) {
  const auto options = std::make_shared<Options>();
  CLI::App* const verb = app.add_subcommand("info", "Describe files and their stacks");
  verb->add_option("FILE", options->files, "VBF files")->required();
  verb->add_flag("--json", options->json, "One JSON object per file, each on a line of its own");
  verb->callback([options, &chosen] { chosen = [options] { return run(*options); }; });
}

}  // namespace Vrel::tool
