// The text that ImageJ writes into the TIFF files that it makes.
#pragma once

#include <vrelio/file/file_access.h>

#include <optional>
#include <string>

namespace Vrel::tool {

/// Planes follow one another with channels fastest, then slices, then frames.
struct ImageJDescription {
  u64 images = 1;
  u64 channels = 1;
  u64 slices = 1;
  u64 frames = 1;
  std::string unit;       ///< of X and Y, by its OME name; empty where it is none
  std::string z_unit;     ///< of Z
  double spacing = 0.0;   ///< of slices in `z_unit`; 0 where not set
  double interval = 0.0;  ///< of frames in `time_unit`; 0 where not set
  std::string time_unit;  ///< by its OME name
};

/// Nothing if the text is of another kind, or its counts do not fit together.
std::optional<ImageJDescription> read_imagej_description(const std::string& text);

}  // namespace Vrel::tool
