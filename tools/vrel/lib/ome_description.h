// OME-XML that describes the directories of a TIFF file.
#pragma once

#include <string>
#include <vector>

#include "lib/import_stack.h"
#include "lib/tiff_reader.h"

namespace Vrel::tool {

/// One image of the document.
struct OmeSeries {
  std::string name;
  std::string description;
  std::vector<ImportAxis> axes;  ///< those with one entry only are left out, but for X and Y
  std::vector<std::size_t> directories;  ///< of each plane, in the order of the axes
  Json::Value image;  ///< what a document can take over: date, channels and planes
};

/// Whether a text looks like an OME document.
bool is_ome_description(const std::string& text);

/// All images of the document. Units that the document leaves out are those of the schema: µm and s.
/// \throws VrelError as `read_ome_tree`; "The OME-XML does not fit the TIFF directories!" (-4);
/// "Planes are in another file: %s" (-4).
std::vector<OmeSeries> read_ome_description(const std::string& text,
                                            const std::vector<TiffDirectory>& directories);

/// Axes that one directory of this layout has: X and Y, and C where a pixel has several samples.
std::vector<ImportAxis> plane_axes(const TiffLayout& layout);

}  // namespace Vrel::tool
