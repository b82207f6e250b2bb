#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "commands.h"
#include "lib/error_report.h"
#include "lib/import_input.h"
#include "lib/import_target.h"
#include "lib/progress_bar.h"
#include "number_option.h"

namespace Vrel::tool {

namespace {

constexpr const char* what_is_imported =
    "Each array of a .npy file, each .raw file and each image of a TIFF or OME-TIFF file becomes "
    "a\n"
    "stack; directories of a TIFF file that are alike are one stack. The last axis of an array in "
    "C\n"
    "order becomes axis 0, the fastest. Nothing is written if one of the files cannot be read; a "
    "new\n"
    "file appears only when it is whole.\n";

struct Options {
  std::vector<std::string> inputs;
  std::string output;
  std::optional<RawLayout> layout;
  std::vector<u64> sizes;
  int data_type = 0;
  StackStorage storage;
  std::optional<std::string> name;
  bool append = false;
  bool force = false;
};

std::string stack_name(const Options& options, const std::string& input, const ImportStack& stack) {
  if (options.name) return *options.name;
  if (!stack.name.empty() || input == "-") return stack.name;
  return std::filesystem::path(input).filename().string();
}

ExitCode report(const std::string& input) {
  const Failure failure = current_failure(input);
  print_failure(failure);
  return failure.code;
}

// What comes through a pipe can be looked at only once.
bool can_be_read_twice(const std::string& input) {
  struct stat status {};
  return input != "-" && ::stat(input.c_str(), &status) == 0 && !S_ISFIFO(status.st_mode);
}

u64 count_all_bytes(const ImportInput& input) {
  u64 bytes = 0;
  for (const ImportStack& stack : input.stacks) bytes += count_bytes(stack);
  return bytes;
}

struct Survey {
  ExitCode worst = exit_done;
  u64 bytes = 0;
};

// Most of what can be wrong with an input is found before anything is written.
Survey look_at_inputs(const Options& options) {
  Survey survey;
  for (const std::string& input : options.inputs) {
    if (input == "-" || (!can_be_read_twice(input) && ::access(input.c_str(), R_OK) == 0)) continue;
    try {
      survey.bytes += count_all_bytes(open_import(input, options.layout));
    } catch (...) {
      survey.worst = std::max(survey.worst, report(input));
    }
  }
  return survey;
}

void import_one(const Options& options, const std::string& path, ImportTarget& target,
                ProgressBar& progress) {
  const ImportInput input = open_import(path, options.layout);
  for (const std::string& warning : input.warnings) print_warning(path, warning);
  for (const ImportStack& stack : input.stacks) {
    target.add(stack, stack_name(options, path, stack),
               [&progress](u64 bytes) { progress.advance(bytes); });
  }
}

ExitCode import_all(const Options& options, u64 bytes, ImportTarget& target) {
  ProgressBar progress = ProgressBar::on_terminal(bytes);
  for (const std::string& input : options.inputs) {
    try {
      import_one(options, input, target, progress);
    } catch (...) {
      const ExitCode code = report(input);
      target.give_up();
      return code;
    }
  }
  target.finish();
  return exit_done;
}

ExitCode run(const Options& options) {
  try {
    ImportTarget target(options.output, options.storage);
    if (options.append) {
      target.open_existing();
    } else {
      target.open_new(options.force);
    }
    const Survey survey = look_at_inputs(options);
    if (survey.worst != exit_done) return survey.worst;
    return import_all(options, survey.bytes, target);
  } catch (...) {
    return report(options.output);
  }
}

void take_sizes(const std::string& text, std::vector<u64>& sizes) {
  const auto read = read_sizes(text);
  if (!read)
    throw CLI::ValidationError("--sizes", "'" + text + "' are no sizes such as 133x130x45");
  sizes = *read;
}

void take_type(const std::string& text, int& data_type) {
  data_type = read_type_name(text);
  if (data_type == 0) throw CLI::ValidationError("--type", "'" + text + "' is no element type");
}

void take_level(const std::string& text, int& level) {
  const bool is_level = text.size() == 1 && text[0] >= '0' && text[0] <= '9';
  if (!is_level) throw CLI::ValidationError("--compress", "'" + text + "' is no level from 0 to 9");
  level = text[0] - '0';
}

std::string refuse_standard_output(const std::string& name) {
  return name == "-" || name.empty() ? "'" + name + "' is no file" : "";
}

void add_layout(CLI::App& verb, Options& options) {
  const auto sizes = [&options](const std::string& text) { take_sizes(text, options.sizes); };
  const auto type = [&options](const std::string& text) { take_type(text, options.data_type); };
  CLI::Option* const sizes_option =
      verb.add_option_function<std::string>(
              "--sizes", sizes, "Sizes of raw samples, the fastest axis first: 133x130x45")
          ->type_name("SIZES");
  verb.add_option_function<std::string>(
          "--type", type, "Element type of raw samples: uint16, single, cplx_single, ..")
      ->type_name("TYPE")
      ->needs(sizes_option);
}

void add_storage(CLI::App& verb, StackStorage& storage) {
  verb.add_option_function<std::string>(
          "--compress", [&storage](const std::string& text) { take_level(text, storage.level); },
          "0 for raw samples, 1 (the default) to 9 for zlib")
      ->type_name("LEVEL");
  verb.add_option("--flush", storage.flush_size,
                  "Bytes of samples between two points at which reading can start, for instance "
                  "256KiB; 0 for none")
      ->check(refuse_sign)
      ->transform(size_in_bytes())
      ->type_name("SIZE");
}

// What the parser of options cannot tell by one option.
void check_inputs(Options& options) {
  const auto is_raw = [&options](const std::string& input) {
    return is_raw_input(input, options.data_type != 0);
  };
  const bool has_raw = std::any_of(options.inputs.begin(), options.inputs.end(), is_raw);
  const bool has_layout = !options.sizes.empty() && options.data_type != 0;
  if (has_raw && !has_layout) throw CLI::ValidationError("raw samples need --sizes and --type");
  if (!has_raw && !options.sizes.empty()) {
    throw CLI::ValidationError("--sizes and --type tell of raw samples, of which there are none");
  }
  if (has_layout) options.layout = RawLayout{options.sizes, options.data_type};
  if (std::count(options.inputs.begin(), options.inputs.end(), "-") > 1) {
    throw CLI::ValidationError("standard input can be read only once");
  }
}

}  // namespace

void add_import_command(CLI::App& app, Command& chosen) {
  const auto options = std::make_shared<Options>();
  CLI::App* const verb =
      app.add_subcommand("import", "Make a VBF file of .npy, .raw, TIFF and OME-TIFF files");
  verb->add_option("INPUT", options->inputs, "Files; - for standard input, raw or .npy")
      ->required();
  verb->add_option("--output", options->output, "VBF file to write")
      ->type_name("FILE")
      ->required()
      ->check(refuse_standard_output);
  add_layout(*verb, *options);
  add_storage(*verb, options->storage);
  verb->add_option("--name", options->name,
                   "Name of the stacks; that of the image or the file if not given");
  CLI::Option* const append =
      verb->add_flag("--append", options->append, "Append to a VBF file that exists");
  verb->add_flag("--force", options->force, "Replace a file that exists")->excludes(append);
  verb->footer(what_is_imported);
  verb->callback([options, &chosen] {
    check_inputs(*options);
    chosen = [options] { return run(*options); };
  });
}

}  // namespace Vrel::tool
