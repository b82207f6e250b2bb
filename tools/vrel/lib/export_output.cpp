#include "lib/export_output.h"

#include "lib/axis_letters.h"
#include "lib/npy_header.h"
#include "lib/ome_tiff_image.h"
#include "lib/ome_tiff_text.h"
#include "lib/output_file.h"
#include "lib/plain_text.h"
#include "lib/png_output.h"
#include "lib/standard_output.h"
#include "lib/tiff_writer.h"
#include "lib/uuid_text.h"

namespace Vrel::tool {

namespace {

struct Ending {
  std::string_view text;
  ExportForm form;
};

constexpr Ending endings[] = {{".raw", ExportForm::raw},
                              {".npy", ExportForm::npy},
                              {".tif", ExportForm::tiff},
                              {".tiff", ExportForm::tiff},
                              {".png", ExportForm::png}};

std::unique_ptr<Output> open_stream(const ExportTarget& target) {
  if (target.name == "-") return std::make_unique<StandardOutput>();
  return std::make_unique<OutputFile>(target.name, target.replace);
}

std::unique_ptr<Output> open_array(const ExportTarget& target, const std::vector<u64>& sizes,
                                   int data_type) {
  if (target.form != ExportForm::npy) return open_stream(target);
  const std::string header = npy_header(data_type, {sizes.begin(), sizes.end()});
  std::unique_ptr<Output> output = open_stream(target);
  output->write(header);
  return output;
}

// An axis that was asked for by one index goes away.
std::vector<u64> shape(const Region& region) {
  std::vector<u64> sizes;
  for (const AxisRange& range : region) {
    if (!range.is_single) sizes.push_back(range.size());
  }
  return sizes;
}

std::unique_ptr<Output> open_tiff(const ExportTarget& target, const StackRecord& stack,
                                  const Region& region, int data_type) {
  OmeImage image = describe_image(stack, region, data_type);
  image.date = target.date;
  TiffForm form;
  form.width = static_cast<std::uint32_t>(image.axes[ome_x].size);
  form.height = static_cast<std::uint32_t>(image.axes[ome_y].size);
  form.pages = image.number_of_planes();
  form.data_type = data_type;
  form.compression = target.compression;
  form.description = to_ome_xml(image, target.creator, make_uuid());
  return std::make_unique<TiffWriter>(target.name, target.replace, std::move(form));
}

std::unique_ptr<Output> open_png(const ExportTarget& target, const StackRecord& stack,
                                 const Region& region, int data_type) {
  const PictureAxes axes = choose_picture_axes(axis_letters(stack.labels), region);
  return std::make_unique<PngOutput>(target.name, target.replace, axes, data_type);
}

}  // namespace

std::optional<ExportForm> export_form(const std::string& name) {
  if (name == "-") return ExportForm::raw;
  const std::string lower = to_lower_case(name);
  for (const Ending& ending : endings) {
    if (ends_with(lower, ending.text)) return ending.form;
  }
  return std::nullopt;
}

std::unique_ptr<Output> open_export(const ExportTarget& target, const StackRecord& stack,
                                    const Region& region, int data_type) {
  switch (target.form) {
    case ExportForm::tiff:
      return open_tiff(target, stack, region, data_type);
    case ExportForm::png:
      return open_png(target, stack, region, data_type);
    default:
      return open_array(target, shape(region), data_type);
  }
}

std::unique_ptr<Output> open_export(const ExportTarget& target, u64 number_of_samples,
                                    int data_type) {
  return open_array(target, {number_of_samples}, data_type);
}

}  // namespace Vrel::tool
