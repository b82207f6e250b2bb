// Samples as a picture in a PNG file.
#pragma once

#include <string>
#include <vector>

#include "lib/new_file.h"
#include "lib/output.h"
#include "lib/projection.h"
#include "lib/region.h"

namespace Vrel::tool {

/// The axes that a picture of a region shows: X and Y if they have more than one index, else the first
/// that have.
/// \param letters  see `axis_letters`, one for each axis.
PictureAxes choose_picture_axes(const std::vector<char>& letters, const Region& region);

/// Takes the samples of an array in its order and holds the picture until it is finished: the maximum
/// over all axes that it does not show, of complex samples their magnitude, in shades of gray as of
/// `to_gray`.
class PngOutput : public Output {
 public:
  /// \param path  of the file.
  /// \param replace  whether a file of that name may be replaced.
  /// \param axes  with at least one sample.
  /// \param data_type  of the samples.
  /// \throws OutputError as `NewFile`; VrelError "No samples to be written!" (-1); "Invalid on-the-fly
  /// conversion from '%s' to '%s'!" (-1) for samples that are no numbers.
  PngOutput(std::string path, bool replace, const PictureAxes& axes, int data_type);

  using Output::write;
  /// \param size  bytes of whole samples.
  void write(const void* data, std::size_t size) override;
  /// \throws as `write_png` and `NewFile::finish`.
  void finish() override;

 private:
  NewFile file_;
  u64 width_;
  u64 height_;
  int data_type_;
  MaximumProjection projection_;
  std::vector<double> values_;
};

}  // namespace Vrel::tool
