// Plausible fluorescence data: blurred spots of a labelled specimen as a camera sees them, with
// photon noise, read noise and an offset. The same seed gives the same samples.
#pragma once

#include <cstdint>
#include <vector>

namespace Vrel::testing {

struct Fluorescence {
  // Samples along each axis, the fastest first; any rank.
  std::vector<std::uint32_t> sizes;
  std::uint64_t seed = 1;

  // Spots per million samples.
  double spot_density = 120.0;
  // Width of the blur (one standard deviation) along the first two axes and along all others, in
  // samples.
  double lateral_blur = 1.9;
  double axial_blur = 2.6;
  // Photons at the middle of the brightest spot, and in the haze of light out of focus at its
  // brightest.
  double peak_photons = 900.0;
  double haze_photons = 25.0;
  // What the camera adds, in counts.
  double camera_offset = 100.0;
  double read_noise = 1.6;
  double counts_per_photon = 2.1;
};

// One 16-bit sample per position, axis 0 fastest.
std::vector<std::uint16_t> make_fluorescence(const Fluorescence& scene);

}  // namespace Vrel::testing
