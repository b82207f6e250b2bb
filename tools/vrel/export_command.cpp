#include <vrelio/container/sample_reader.h>
#include <vrelio/foundation/data_type.h>

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "commands.h"
#include "lib/acquisition_date.h"
#include "lib/description.h"
#include "lib/error_report.h"
#include "lib/export_output.h"
#include "lib/input_file.h"
#include "lib/program_name.h"
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

// The stack to be exported, and what its samples become.
struct Job {
  const Options& options;
  const FileRecord& file;
  const StackRecord& stack;
  SampleReader& reader;
  int type;
};

ExportTarget target_of(const Job& job) {
  const Options& options = job.options;
  ExportTarget target;
  target.name = options.output;
  target.form = *export_form(options.output);
  target.replace = options.force;
  target.compression = static_cast<int>(options.compression.value_or(default_compression));
  target.date = acquisition_date(job.file, options.stack);
  target.creator = program_name();
  return target;
}

// What is to be copied, by number, as `read` gives it.
struct Selection {
  ReadSamples read;
  SampleRange range;
  std::unique_ptr<Output> output;
};

ReadSamples stored_samples(SampleReader& reader) {
  return [&reader](u64 position, u64 count, void* destination) {
    reader.read(position, count, destination);
  };
}

Selection select_range(const Job& job) {
  const SampleRange range =
      choose_range(job.reader.get_number_of_samples(), job.options.offset, job.options.count);
  ReadSamples read =
      convert_samples(stored_samples(job.reader), job.stack.header.data_type, job.type);
  return {std::move(read), range, open_export(target_of(job), range.count, job.type)};
}

std::vector<std::uint32_t> sizes_of(const StackRecord& stack) {
  const auto begin = stack.header.sizes.begin();
  return {begin, begin + stack.header.rank};
}

Region choose_region(const Job& job) {
  std::vector<AxisChoice> choices;
  if (!job.options.region.empty()) choices = parse_region(job.options.region);
  return choose_region(choices, job.stack.labels, sizes_of(job.stack));
}

// Samples of a region are read one after the other, whatever position is asked for.
ReadSamples samples_of(const Region& region, const Job& job) {
  const auto reader =
      std::make_shared<RegionReader>(stored_samples(job.reader), job.reader.get_sample_size(),
                                     RegionWalk(sizes_of(job.stack), region));
  return [reader](u64, u64 count, void* destination) { reader->read(count, destination); };
}

Selection select_region(const Job& job) {
  const Region region = choose_region(job);
  ReadSamples read = convert_samples(samples_of(region, job), job.stack.header.data_type, job.type);
  return {std::move(read),
          {0, number_of_samples(region)},
          open_export(target_of(job), job.stack, region, job.type)};
}

int type_of(const Options& options, const StackRecord& stack) {
  return options.type.empty() ? stack.header.data_type : vrel_dt_from_name(options.type.c_str());
}

void export_stack(const Options& options) {
  InputFile input(options.file);
  const Description description = read_description(input.get_file());
  const StackRecord& stack = choose_stack(description, options.stack);
  if (description.error) print_warning(options.file, description.error->what());
  SampleReader reader(input.get_file(), stack);
  const Job job{options, description.file, stack, reader, type_of(options, stack)};
  const Selection selection = is_range(options) ? select_range(job) : select_region(job);
  const auto sample_size = static_cast<unsigned>(vrel_dt_get_size(job.type));
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
      ->type_name("TYPE")
      ->check(check_type);
  verb->add_option(
          "--output", options->output,
          "File that ends in .npy (slowest axis first), .raw, .tif or .tiff (OME-TIFF) or .png "
          "(gray, scaled to what the picture holds; the maximum over all axes but two); - for "
          "standard output, raw")
      ->type_name("FILE")
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
