#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "commands.h"
#include "lib/error_report.h"
#include "lib/output_file.h"
#include "lib/property_document.h"
#include "lib/property_tree.h"
#include "lib/source.h"
#include "lib/standard_output.h"

namespace Vrel::tool {

namespace {

struct Options {
  std::string file;
  bool json = false;
  std::optional<std::string> get;
  std::vector<std::string> set;
  std::string output;
  bool force = false;
};

void show(const Options& options, const VProp& tree) {
  const VProp& value = options.get ? tree.getp(*options.get) : tree;
  StandardOutput().write(options.json  ? to_json(value)
                         : options.get ? to_plain_text(value)
                                       : to_text(value));
}

void write(const Options& options, const std::string& xml) {
  if (options.output == "-") return StandardOutput().write(xml);
  OutputFile output(options.output, options.force);
  output.write(xml);
  output.finish();
}

ExitCode run(const Options& options) {
  try {
    PropertyDocument document = read_property_document(open_source(options.file));
    for (const std::string& assignment : options.set) assign(document.tree, assignment);
    if (!options.output.empty()) {
      write(options, to_xml(document));
    } else {
      show(options, document.tree);
    }
    return exit_done;
  } catch (...) {
    const Failure failure = current_failure(options.file);
    print_failure(failure);
    return failure.code;
  }
}

}  // namespace

void add_props_command(CLI::App& app, Command& chosen) {
  const auto options = std::make_shared<Options>();
  CLI::App* const verb = app.add_subcommand("props", "Show and change a property tree in XML");
  verb->add_option("FILE", options->file, "Property XML; - for standard input")->required();
  CLI::Option* const json = verb->add_flag("--json", options->json, "One JSON value");
  CLI::Option* const get =
      verb->add_option("--get", options->get,
                       "Only the value at this path, such as 'scan.axes{1}.label'")
          ->type_name("PATH");
  CLI::Option* const output =
      verb->add_option("--output", options->output,
                       "File for the tree as XML, in the form of the input; - for standard output")
          ->type_name("FILE");
  verb->add_option("--set", options->set,
                   "Set a value, which keeps its kind; may be given more than once")
      ->type_name("PATH=VALUE")
      ->expected(1)
      ->take_all()
      ->needs(output);
  verb->add_flag("--force", options->force, "Replace a file that exists")->needs(output);
  output->excludes(get)->excludes(json);
  verb->callback([options, &chosen] { chosen = [options] { return run(*options); }; });
}

}  // namespace Vrel::tool
