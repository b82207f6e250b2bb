#include "lib/png_output.h"

#include <vrelio/foundation/convert.h>
#include <vrelio/foundation/data_type.h>
#include <vrelio/foundation/error.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "lib/complex_type.h"
#include "lib/gray_scale.h"
#include "lib/png_writer.h"

namespace Vrel::tool {

namespace {

constexpr int double_id = 0x80;
constexpr std::size_t block_samples = 16384;

bool is_complex(int data_type) { return (data_type & complex_flag) != 0; }

int widest(int data_type) { return is_complex(data_type) ? double_id | complex_flag : double_id; }

int convert(int data_type, const void* source, double* destination, std::size_t count) {
  return vrel_dt_convert(data_type, widest(data_type), source, destination, static_cast<int>(count),
                         nullptr, nullptr);
}

const PictureAxes& check(const PictureAxes& axes, int data_type) {
  for (const u64 size : axes.sizes) {
    if (size == 0) throw VrelError(VrelError()("No samples to be written!"));
  }
  if (convert(data_type, nullptr, nullptr, 0) != 0) {
    throw VrelError(VrelError()("Invalid on-the-fly conversion from '%s' to '%s'!",
                                vrel_dt_get_name(data_type), vrel_dt_get_name(double_id)));
  }
  return axes;
}

void to_magnitudes(double* values, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) values[i] = std::hypot(values[2 * i], values[2 * i + 1]);
}

void add_letter(std::vector<std::size_t>& order, const std::vector<char>& letters, char letter) {
  const auto place = std::find(letters.begin(), letters.end(), letter);
  if (place != letters.end()) order.push_back(static_cast<std::size_t>(place - letters.begin()));
}

}  // namespace

PictureAxes choose_picture_axes(const std::vector<char>& letters, const Region& region) {
  std::vector<std::size_t> order;
  add_letter(order, letters, 'X');
  add_letter(order, letters, 'Y');
  for (std::size_t axis = 0; axis < region.size(); ++axis) {
    if (std::find(order.begin(), order.end(), axis) == order.end()) order.push_back(axis);
  }
  std::stable_partition(order.begin(), order.end(),
                        [&](std::size_t axis) { return region[axis].size() > 1; });
  PictureAxes axes;
  for (const AxisRange& range : region) axes.sizes.push_back(range.size());
  axes.column = order.empty() ? 0 : order[0];
  axes.row = order.size() < 2 ? region.size() + 1 : order[1];
  return axes;
}

PngOutput::PngOutput(std::string path, bool replace, const PictureAxes& axes, int data_type)
    : file_(std::move(path), replace),
      width_(axes.width()),
      height_(axes.height()),
      data_type_(data_type),
      projection_(check(axes, data_type)),
      values_(block_samples * 2) {}

void PngOutput::write(const void* data, std::size_t size) {
  const auto sample_size = static_cast<std::size_t>(vrel_dt_get_size(data_type_));
  const auto* const bytes = static_cast<const char*>(data);
  const std::size_t count = size / sample_size;
  for (std::size_t done = 0; done < count;) {
    const std::size_t piece = std::min(count - done, block_samples);
    convert(data_type_, bytes + done * sample_size, values_.data(), piece);
    if (is_complex(data_type_)) to_magnitudes(values_.data(), piece);
    projection_.add(values_.data(), piece);
    done += piece;
  }
}

void PngOutput::finish() {
  const std::vector<unsigned char> shades = to_gray(projection_.take_picture());
  write_png(file_, static_cast<std::uint32_t>(width_), static_cast<std::uint32_t>(height_),
            shades.data());
  file_.finish();
}

}  // namespace Vrel::tool
