// Values as shades of gray.
#pragma once

#include <vector>

namespace Vrel::tool {

/// A shade for each value, 0 black to 255 white.
///
/// The darkest and the brightest thousandth of the finite values saturate; where what is left is all
/// the same, the scale reaches from the least value to the greatest. A constant picture is black.
/// Infinite values are white or black by their sign; what is not a number is black.
std::vector<unsigned char> to_gray(const std::vector<double>& values);

}  // namespace Vrel::tool
