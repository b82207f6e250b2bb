// TIFF files as stacks.
#pragma once

#include <string>

#include "lib/import_stack.h"

namespace Vrel::tool {

/// Whether a file begins like a TIFF file.
bool is_tiff(const std::string& start);

/// One stack per image of an OME document; without one a stack for every run of directories that are
/// alike, with axes as ImageJ or Python describe them where these made the file.
/// \throws VrelError as `TiffReader` and `count_samples`.
ImportInput open_tiff(const std::string& path);

}  // namespace Vrel::tool
