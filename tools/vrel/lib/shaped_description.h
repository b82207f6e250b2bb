// The JSON text that Python programs write into the TIFF files that they make of arrays.
#pragma once

#include <vrelio/file/file_access.h>

#include <optional>
#include <string>
#include <vector>

namespace Vrel::tool {

/// One axis of the array.
struct ShapedAxis {
  u64 size = 0;
  std::string label;  ///< X, Y, Z, C or T; empty for what is none of these
};

/// The axes of the array in a text such as `{"shape": [2, 3, 20, 30], "axes": "TZYX"}`, the fastest
/// first. Nothing if the text is of another kind.
std::optional<std::vector<ShapedAxis>> read_shaped_description(const std::string& text);

}  // namespace Vrel::tool
