#include <vrelio/container/sample_reader.h>

#include <memory>
#include <optional>
#include <string>

#include "commands.h"
#include "lib/description.h"
#include "lib/error_report.h"
#include "lib/input_file.h"
#include "lib/npy_header.h"
#include "lib/output_file.h"
#include "lib/progress_bar.h"
#include "lib/sample_copy.h"
#include "lib/standard_output.h"
#include "number_option.h"

namespace Vrel::tool {

namespace {

struct Options {
  std::string file;
  std::string output;
  u64 stack = 0;
  std::optional<u64> offset;
  std::optional<u64> count;
  bool force = false;
};

bool ends_with(const std::string& text, const std::string& end) {
  return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

bool is_npy(const Options& options) { return ends_with(options.output, ".npy"); }

std::unique_ptr<Output> open_output(const Options& options) {
  if (options.output == "-") return std::make_unique<StandardOutput>();
  return std::make_unique<OutputFile>(options.output, options.force);
}

// A part of a stack has no shape but its number of samples.
std::vector<std::uint64_t> shape(const Options& options, const StackHeader& header, u64 count) {
  if (options.offset || options.count) return {count};
  return {header.sizes.begin(), header.sizes.begin() + header.rank};
}

void export_stack(const Options& options) {
  InputFile input(options.file);
  const Description description = read_description(input.get_file());
  const StackRecord& stack = choose_stack(description, options.stack);
  if (description.error) print_warning(options.file, description.error->what());
  SampleReader reader(input.get_file(), stack);
  const SampleRange range =
      choose_range(reader.get_number_of_samples(), options.offset, options.count);

  const std::unique_ptr<Output> output = open_output(options);
  if (is_npy(options)) {
    output->write(npy_header(stack.header.data_type, shape(options, stack.header, range.count)));
  }
  const unsigned sample_size = reader.get_sample_size();
  ProgressBar progress = ProgressBar::on_terminal(range.count * sample_size);
  const auto read = [&](u64 position, u64 count, void* destination) {
    reader.read(position, count, destination);
  };
  copy_samples(read, sample_size, range, *output, progress);
  output->finish();
}

ExitCode run(const Options& options) {
  try {
    export_stack(options);
    return exit_done;
  } catch (...) {
    const Failure failure = current_failure(options.file);
    print_failure(failure);
    return failure.code;
  }
}

std::string check_output_name(const std::string& name) {
  const bool known = name == "-" || ends_with(name, ".npy") || ends_with(name, ".raw");
  return known ? "" : "'" + name + "' ends in neither .npy nor .raw";
}

}  // namespace

void add_export_command(CLI::App& app, Command& chosen) {
  const auto options = std::make_shared<Options>();
  CLI::App* const verb = app.add_subcommand("export", "Write the samples of a stack to a file");
  verb->add_option("FILE", options->file, "VBF file")->required();
  add_number(*verb, "--stack", options->stack, "Which stack, from 0")->required();
  verb->add_option(
          "--output", options->output,
          "File that ends in .npy (slowest axis first) or .raw; - for standard output, raw")
      ->required()
      ->check(check_output_name);
  add_number(*verb, "--offset", options->offset, "First sample, from 0");
  add_number(*verb, "--count", options->count, "Number of samples; all that are left if not given");
  verb->add_flag("--force", options->force, "Replace a file that exists");
  verb->callback([options, &chosen] { chosen = [options] { return run(*options); }; });
}

}  // namespace Vrel::tool
