#include <limits>
#include <memory>
#include <optional>
#include <string>

#include "commands.h"
#include "lib/error_report.h"
#include "lib/input_file.h"
#include "lib/repack.h"
#include "number_option.h"

namespace Vrel::tool {

namespace {

struct Options {
  std::string file;
  std::string output;
  std::optional<u64> level;
  std::optional<u64> flush;
  bool force = false;
};

RepackOptions repack_options(const Options& options) {
  RepackOptions chosen;
  if (options.level) chosen.level = static_cast<int>(*options.level);
  chosen.flush_block_size = options.flush;
  chosen.replace = options.force;
  return chosen;
}

ExitCode run(const Options& options) {
  try {
    InputFile input(options.file);
    repack(input.get_file(), options.output, repack_options(options));
    return exit_done;
  } catch (...) {
    Failure failure = current_failure(options.file);
    print_failure(failure);
    if (failure.code == exit_damaged) {
      print_warning(options.file, "'vrel recover' saves what can still be read");
    }
    return failure.code;
  }
}

std::string check_level(const std::string& text) {
  const bool known = text.size() == 1 && text[0] >= '0' && text[0] <= '9';
  return known ? "" : "'" + text + "' is no level from 0 to 9";
}

}  // namespace

void add_repack_command(CLI::App& app, Command& chosen) {
  const auto options = std::make_shared<Options>();
  CLI::App* const verb =
      app.add_subcommand("repack", "Write a file anew, recompressed or without dead bytes");
  verb->add_option("FILE", options->file, "VBF file")->required();
  verb->add_option("--output", options->output, "The new VBF file")->type_name("FILE")->required();
  add_number(*verb, "--compress", options->level,
             "zlib level of all samples, 1 to 9, or 0 for raw; as they are if not given")
      ->check(check_level);
  add_number(
      *verb, "--flush", options->flush,
      "Bytes of samples between two flush points of a stream, 0 for none; as they are if not "
      "given");
  verb->add_flag("--force", options->force, "Replace a file that exists");
  verb->callback([options, &chosen] { chosen = [options] { return run(*options); }; });
}

}  // namespace Vrel::tool
