#include <memory>
#include <string>

#include "commands.h"
#include "lib/error_report.h"
#include "lib/shared_blocks.h"
#include "lib/standard_output.h"

namespace Vrel::tool {

namespace {

constexpr const char* what_is_removed =
    "A block whose process was killed stays until its name is removed. Without --force only a "
    "block\n"
    "of this user is removed that no process maps or holds open, as far as processes can be seen;\n"
    "any other is refused with exit code 3. A process that maps a block keeps the bytes when the\n"
    "name is removed. A text that is no UUID in lower case is wrong usage, with --force too.\n";

struct Options {
  bool list = false;
  bool json = false;
  std::string id;
  bool force = false;
};

void list(bool json) {
  const std::vector<SharedBlock> blocks = list_shared_blocks();
  StandardOutput().write(json ? to_json(blocks) : to_text(blocks));
}

ExitCode run(const Options& options) {
  try {
    if (options.list) {
      list(options.json);
    } else {
      remove_shared_block(options.id, options.force);
    }
    return exit_done;
  } catch (...) {
    const Failure failure = current_failure(options.id);
    print_failure(failure);
    return failure.code;
  }
}

std::string check_id(const std::string& text) {
  return is_block_id(text) ? "" : '\'' + text + "' is no id of a shared memory block";
}

void check_is_told(const Options& options) {
  if (!options.list && options.id.empty()) throw CLI::RequiredError("--list or --remove");
}

}  // namespace

void add_shm_command(CLI::App& app, Command& chosen) {
  const auto options = std::make_shared<Options>();
  CLI::App* const verb =
      app.add_subcommand("shm", "Show and remove blocks of shared memory that were left behind");
  CLI::Option* const list =
      verb->add_flag("--list", options->list, "Blocks with size, age and processes");
  CLI::Option* const remove =
      verb->add_option("--remove", options->id, "Remove the name of the block with this id")
          ->type_name("ID")
          ->check(check_id)
          ->excludes(list);
  verb->add_flag("--json", options->json, "One JSON array of objects")->needs(list);
  verb->add_flag("--force", options->force, "Also a block that is in use or another user's")
      ->needs(remove);
  verb->footer(what_is_removed);
  verb->callback([options, &chosen] {
    check_is_told(*options);
    chosen = [options] { return run(*options); };
  });
}

}  // namespace Vrel::tool
