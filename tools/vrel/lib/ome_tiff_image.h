// What an OME-TIFF file says about its image.
#pragma once

#include <vrelio/container/records.h>

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "lib/region.h"

namespace Vrel::tool {

/// The axes of an OME-TIFF file; the index of each in the arrays below.
enum OmeAxisIndex : std::size_t { ome_x, ome_y, ome_z, ome_c, ome_t };
/// Their letters.
constexpr const char* ome_letters = "XYZCT";

/// One axis of the image.
struct OmeAxis {
  u64 size = 1;                ///< indices
  std::string unit;            ///< in UTF-8; empty where none is known, and then all below is empty
  std::optional<double> step;  ///< from one index to the next, in the unit
  std::vector<double>
      positions;  ///< of each index on Z and T, of the centre on X and Y, in the unit
};

/// An image with up to five axes.
struct OmeImage {
  std::string name;                   ///< any bytes
  std::string date;                   ///< of acquisition, in the form of XML Schema; empty for none
  std::string description;            ///< any bytes
  std::string type;                   ///< pixel type of OME
  std::string order;                  ///< letters of the axes, the fastest first
  std::array<OmeAxis, 5> axes;        ///< by `OmeAxisIndex`
  std::vector<std::string> channels;  ///< names, any bytes; one for each index of C, or none at all
  bool has_positions = false;         ///< whether the places of planes say more than the steps do

  /// Planes of X and Y, each a page of the file.
  u64 number_of_planes() const;
};

/// The pixel type that OME has for a data type; null for none.
const char* to_ome_type(int data_type);

/// What is to be said of a region of a stack.
///
/// Axes go by their letter (see `axis_letters`); those of one index need no place. Lengths, offsets and
/// column positions are told where the axis has a unit of its kind, cut as the region is.
/// \param data_type  of the samples in the file to be written.
/// \throws VrelError "No OME-TIFF type for samples of the type '%s', --type converts them!" (-5); (-1)
/// "No samples to be written!", "OME-TIFF has no place for axis %u, --region picks a part of it!",
/// "OME-TIFF needs axis %c in front, --region picks a part of the axes before it!".
OmeImage describe_image(const StackRecord& stack, const Region& region, int data_type);

}  // namespace Vrel::tool
