#include "support/fluorescence.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace Vrel::testing {

namespace {

constexpr double pi = 3.14159265358979323846;

// The standard's engines are the same everywhere, its distributions are not; so the few that are
// needed stand here.
class Dice {
 public:
  explicit Dice(std::uint64_t seed) : state_(seed) {}

  // The sequence "splitmix64" (Steele, Lea and Flood, 2014).
  std::uint64_t bits() {
    state_ += 0x9E3779B97F4A7C15u;
    std::uint64_t mixed = state_;
    mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9u;
    mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EBu;
    return mixed ^ (mixed >> 31);
  }

  // In [0, 1).
  double uniform() { return static_cast<double>(bits() >> 11) * 0x1p-53; }

  // Box and Muller's pair of normal deviates, one after the other.
  double normal() {
    if (has_spare_) {
      has_spare_ = false;
      return spare_;
    }
    const double radius = std::sqrt(-2.0 * std::log(1.0 - uniform()));
    const double angle = 2.0 * pi * uniform();
    spare_ = radius * std::sin(angle);
    has_spare_ = true;
    return radius * std::cos(angle);
  }

  // Few photons are counted one by one (Knuth's product of uniforms), many follow a normal law.
  double poisson(double mean) {
    constexpr double many = 25.0;
    if (mean > many) return std::max(0.0, std::round(mean + std::sqrt(mean) * normal()));
    const double limit = std::exp(-mean);
    double count = -1.0;
    for (double product = 1.0; product > limit; product *= uniform()) count += 1.0;
    return std::max(0.0, count);
  }

 private:
  std::uint64_t state_;
  double spare_ = 0.0;
  bool has_spare_ = false;
};

// The part of one axis that a spot reaches, with the share of its light that falls on each sample
// there.
struct Reach {
  std::size_t first;
  std::vector<float> weights;
};

Reach reach_along(double centre, double blur, std::uint32_t size) {
  const double radius = 3.5 * blur;
  const double first = std::max(0.0, std::ceil(centre - radius));
  const double last = std::min(static_cast<double>(size) - 1.0, std::floor(centre + radius));
  Reach reach{static_cast<std::size_t>(first), {}};
  for (double place = first; place <= last; place += 1.0) {
    const double distance = (place - centre) / blur;
    reach.weights.push_back(static_cast<float>(std::exp(-0.5 * distance * distance)));
  }
  return reach;
}

class Specimen {
 public:
  explicit Specimen(const Fluorescence& scene) : scene_(scene), dice_(scene.seed) {
    std::size_t count = 1;
    for (const std::uint32_t size : scene.sizes) {
      strides_.push_back(count);
      count *= size;
    }
    photons_.assign(count, 0.0f);
  }

  std::vector<float> make() {
    if (photons_.empty()) return {};
    add_haze();
    const double spots =
        std::ceil(scene_.spot_density * 1e-6 * static_cast<double>(photons_.size()));
    for (double spot = 0.0; spot < spots; spot += 1.0) add_spot();
    return std::move(photons_);
  }

 private:
  // Light out of focus: a slow wave along axis 0, the same in every row.
  void add_haze() {
    const std::size_t row = scene_.sizes.empty() ? 1 : scene_.sizes[0];
    for (std::size_t i = 0; i < photons_.size(); ++i) {
      const double place = static_cast<double>(i % row) / static_cast<double>(row);
      photons_[i] = static_cast<float>(scene_.haze_photons * std::sin(pi * place));
    }
  }

  void add_spot() {
    std::vector<Reach> reaches;
    for (std::size_t axis = 0; axis < scene_.sizes.size(); ++axis) {
      const double blur = axis < 2 ? scene_.lateral_blur : scene_.axial_blur;
      const double centre = dice_.uniform() * static_cast<double>(scene_.sizes[axis]);
      reaches.push_back(reach_along(centre, blur, scene_.sizes[axis]));
    }
    // Most spots are dim, a few are bright.
    const double brightness = scene_.peak_photons * std::pow(dice_.uniform(), 2.0);
    spread(reaches, reaches.size(), 0, static_cast<float>(brightness));
  }

  // Walk the box of the spot from its slowest axis down; the rank bounds the depth.
  void spread(const std::vector<Reach>& reaches, std::size_t axes, std::size_t index, float light) {
    if (axes == 0) {
      photons_[index] += light;
      return;
    }
    const Reach& reach = reaches[axes - 1];
    for (std::size_t i = 0; i < reach.weights.size(); ++i) {
      spread(reaches, axes - 1, index + (reach.first + i) * strides_[axes - 1],
             light * reach.weights[i]);
    }
  }

  const Fluorescence& scene_;
  Dice dice_;
  std::vector<std::size_t> strides_;
  std::vector<float> photons_;
};

std::uint16_t digitise(double counts) {
  return static_cast<std::uint16_t>(std::clamp(std::round(counts), 0.0, 65535.0));
}

}  // namespace

std::vector<std::uint16_t> make_fluorescence(const Fluorescence& scene) {
  const std::vector<float> photons = Specimen(scene).make();
  Dice camera(scene.seed ^ 0xCA3E7Au);
  std::vector<std::uint16_t> samples(photons.size());
  std::transform(photons.begin(), photons.end(), samples.begin(), [&](float mean) {
    const double signal = scene.counts_per_photon * camera.poisson(static_cast<double>(mean));
    return digitise(scene.camera_offset + signal + scene.read_noise * camera.normal());
  });
  return samples;
}

}  // namespace Vrel::testing
