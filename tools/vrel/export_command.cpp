#include <vrelio/container/sample_reader.h>
#include <vrelio/foundation/data_type.h>
#include <vrelio/version.h>

#include <memory>
#include <optional>
#include <string>

#include "commands.h"
#include "lib/description.h"
#include "lib/error_report.h"
#include "lib/export_output.h"
#include "lib/input_file.h"
#include "lib/progress_bar.h"
#include "lib/region_reader.h"
#include "lib/region_text.h"
#include "lib/sample_conversion.h"
#include "lib/sample_copy.h"
#include "number_option.h"

namespace Vrel::tool {

namespace {

// Fast, and most of what higher levels save.
constexpr int default_compression = 1;

struct Options {
  std::string file;
  std::string output;
  u64 stack = 0;
  std::optional<u64> offset;
  std::optional<u64> count;
  std::string region;
  std::string type;
  std::optional<u64> compression;
  bool force = false;
};

bool is_range(const Options& options) { return options.offset || options.count; }

std::string creator() {
  return "vrel " + std::to_string(VRELIO_VERSION_MAJOR) + '.' +
         std::to_string(VRELIO_VERSION_MINOR) + '.' + std::to_string(VRELIO_VERSION_PATCH);
}

ExportTarget target_of(const Options& options) {
  ExportTarget target;
  target.name = options.output;
  target.form = *export_form(options.output);
  target.replace = options.force;
  target.compression = static_cast<int>(options.compression.value_or(default_compression));
  target.creator = creator();
  return target;
}

Region region_of(const Options& options, const StackRecord& stack) {
  const auto begin = stack.header.sizes.begin();
  const std::vector<std::uint32_t> sizes(begin, begin + stack.header.rank);
  std::vector<AxisChoice> choices;
  if (!options.region.empty()) choices = parse_region(options.region);
  return choose_region(choices, stack.labels, sizes);
}

// What is to be copied, by number, as `read` gives it.
struct Selection {
  ReadSamples read;
  SampleRange range;
  std::unique_ptr<Output> output;
};

Selection select(const Options& options, const StackRecord& stack, SampleReader& reader, int type) {
  const ReadSamples read = [&reader](u64 position, u64 count, void* destination) {
    reader.read(position, count, destination);
  };
  const int stored_type = stack.header.data_type;
  if (is_range(options)) {
    const SampleRange range =
        choose_range(reader.get_number_of_samples(), options.offset, options.count);
    return {convert_samples(read, stored_type, type), range,
            open_export(target_of(options), range.count, type)};
  }
  const Region region = region_of(options, stack);
  const auto begin = stack.header.sizes.begin();
  const RegionWalk walk({begin, begin + stack.header.rank}, region);
  const auto walker = std::make_shared<RegionReader>(read, reader.get_sample_size(), walk);
  const ReadSamples read_on = [walker](u64, u64 count, void* destination) {
    walker->read(count, destination);
  };
  return {convert_samples(read_on, stored_type, type),
          {0, number_of_samples(region)},
          open_export(target_of(options), stack, region, type)};
}

void export_stack(const Options& options) {
  InputFile input(options.file);
  const Description description = read_description(input.get_file());
  const StackRecord& stack = choose_stack(description, options.stack);
  if (description.error) print_warning(options.file, description.error->what());
  SampleReader reader(input.get_file(), stack);
  const int type =
      options.type.empty() ? stack.header.data_type : vrel_dt_from_name(options.type.c_str());
  const Selection selection = select(options, stack, reader, type);
  const auto sample_size = static_cast<unsigned>(vrel_dt_get_size(type));
  ProgressBar progress = ProgressBar::on_terminal(selection.range.count * sample_size);
  copy_samples(selection.read, sample_size, selection.range, *selection.output, progress);
  selection.output->finish();
}

ExitCode run(const Options& options) {
  try {
    export_stack(options);
    return exit_done;
  } catch (const RegionError& error) {
    print_failure({exit_usage, options.file, error.what()});
    return exit_usage;
  } catch (...) {
    const Failure failure = current_failure(options.file);
    print_failure(failure);
    return failure.code;
  }
}

std::string check_output_name(const std::string& name) {
  if (export_form(name)) return "";
  return "'" + name + "' ends in none of .npy, .raw, .tif, .tiff and .png";
}

std::string check_region(const std::string& text) {
  try {
    parse_region(text);
    return "";
  } catch (const RegionError& error) {
    return error.what();
  }
}

std::string check_type(const std::string& name) {
  const bool is_type = is_conversion_target(vrel_dt_from_name(name.c_str()));
  return is_type ? ""
                 : "'" + name + "' is no type of samples, such as uint16, single or cplx_single";
}

// What a form cannot do is wrong usage, before any file is looked at.
void check_form(const Options& options) {
  const ExportForm form = *export_form(options.output);
  const bool is_array = form == ExportForm::raw || form == ExportForm::npy;
  if (is_range(options) && !is_array) {
    throw CLI::ValidationError("--offset and --count", "only for .raw and .npy");
  }
  if (options.compression && form != ExportForm::tiff) {
    throw CLI::ValidationError("--compress", "only for .tif and .tiff");
  }
  if (options.compression.value_or(0) > 9) {
    throw CLI::ValidationError("--compress", "there are the levels 0 to 9");
  }
}

void add_selection(CLI::App& verb, Options& options) {
  add_number(verb, "--stack", options.stack, "Which stack, from 0")->required();
  CLI::Option* const region =
      verb.add_option(
              "--region", options.region,
              "Part of the stack, such as 'x=100:200,z=5': axes by label, letter or number, "
              "the end not included, either end may be left out; an axis held at one index "
              "is dropped")
          ->type_name("AXIS=FIRST:END,..")
          ->check(check_region);
  add_number(verb, "--offset", options.offset, "First sample, from 0")->excludes(region);
  add_number(verb, "--count", options.count, "Number of samples; all that are left if not given")
      ->excludes(region);
}

}  // namespace

void add_export_command(CLI::App& app, Command& chosen) {
  const auto options = std::make_shared<Options>();
  CLI::App* const verb = app.add_subcommand("export", "Write the samples of a stack to a file");
  verb->add_option("FILE", options->file, "VBF file")->required();
  add_selection(*verb, *options);
  verb->add_option("--type", options->type,
                   "Type to convert the samples to, such as uint8, int16, single or cplx_double")
      ->type_name("NAME")
      ->check(check_type);
  verb->add_option(
          "--output", options->output,
          "File that ends in .npy (slowest axis first), .raw, .tif or .tiff (OME-TIFF) or .png "
          "(gray, scaled to what the picture holds; the maximum over all axes but two); - for "
          "standard output, raw")
      ->required()
      ->check(check_output_name);
  add_number(*verb, "--compress", options->compression,
             "Deflate level of TIFF, 1 to 9; 0 for none, 1 if not given");
  verb->add_flag("--force", options->force, "Replace a file that exists");
  verb->callback([options, &chosen] {
    check_form(*options);
    chosen = [options] { return run(*options); };
  });
}

}  // namespace Vrel::tool
