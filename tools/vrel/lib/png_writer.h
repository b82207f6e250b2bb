// A new PNG file in shades of gray.
#pragma once

#include <cstdint>

#include "lib/new_file.h"

namespace Vrel::tool {

/// Write a picture of 8 bits per pixel, row by row.
/// \param file  still to be finished.
/// \param pixels  `width` times `height` of them.
/// \throws OutputError "Could not write!" with the system error; "Could not write PNG: %s" with what
/// libpng says, for instance of a picture that is too wide.
void write_png(const NewFile& file, std::uint32_t width, std::uint32_t height,
               const unsigned char* pixels);

}  // namespace Vrel::tool
