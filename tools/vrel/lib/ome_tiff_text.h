// OME-XML as the description of a TIFF file: schema release 2016-06, elements in its order.
#pragma once

#include <string>

#include "lib/ome_tiff_image.h"

namespace Vrel::tool {

/// The document of one image whose planes are the pages of the file in their order.
///
/// Plain ASCII, since TIFF names no encoding: all other characters stand as references.
/// \param image  its texts may hold any bytes.
/// \param creator  the program that writes the file.
/// \param uuid  of the file, without prefix.
std::string to_ome_xml(const OmeImage& image, const std::string& creator, const std::string& uuid);

}  // namespace Vrel::tool
