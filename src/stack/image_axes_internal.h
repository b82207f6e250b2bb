// What the OME image of a stack says of the stack's axes.
#pragma once

#include <vrelio/ome/image.h>

#include <vector>

namespace Vrel::detail {

using OmeImage = Ome::Image<Json::SignalingReference>;

/// Set the sizes; those that are left out are 1. Raises std::invalid_argument "Unsupported zero size"
/// or "Unsupported number of sizes" for more than 5, and "bad cast" for one above 2^31 - 1.
void set_image_sizes(OmeImage& image, const std::vector<unsigned int>& sizes);
/// Leave the image without sizes.
void clear_image_sizes(OmeImage& image);

/// Set the physical step of an axis from its number of elements and its length. Raises
/// std::invalid_argument "Unsupported physical dimension" for axes without one, and "bad cast" for a length
/// that is not positive.
void set_image_step(OmeImage& image, unsigned int axis, unsigned int size, double length);

/// Set the position of every plane on an axis. Raises std::invalid_argument "Unsupported physical
/// dimension" for axes without one, and "bad cast" for a plane without an index on its axis or an image
/// without the step.
void set_image_offset(OmeImage& image, unsigned int axis, double offset);

}  // namespace Vrel::detail
