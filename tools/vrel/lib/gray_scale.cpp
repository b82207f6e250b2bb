#include "lib/gray_scale.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>

namespace Vrel::tool {

namespace {

struct Scale {
  double black = 0;
  double white = 0;
};

std::vector<double> finite_values(const std::vector<double>& values) {
  std::vector<double> finite;
  finite.reserve(values.size());
  std::copy_if(values.begin(), values.end(), std::back_inserter(finite),
               [](double value) { return std::isfinite(value); });
  return finite;
}

double value_of_rank(std::vector<double>& values, std::size_t rank) {
  const auto place = values.begin() + static_cast<std::ptrdiff_t>(rank);
  std::nth_element(values.begin(), place, values.end());
  return *place;
}

Scale choose_scale(std::vector<double> finite) {
  if (finite.empty()) return {};
  const std::size_t cut = finite.size() / 1000;
  const Scale scale{value_of_rank(finite, cut), value_of_rank(finite, finite.size() - 1 - cut)};
  if (scale.black < scale.white) return scale;
  const auto [least, greatest] = std::minmax_element(finite.begin(), finite.end());
  return {*least, *greatest};
}

// Half of each, since the difference of two doubles may be none.
unsigned char shade(double value, const Scale& scale) {
  if (!(value > scale.black)) return 0;
  if (value >= scale.white) return 255;
  const double share = (value / 2 - scale.black / 2) / (scale.white / 2 - scale.black / 2);
  return static_cast<unsigned char>(std::lround(share * 255));
}

}  // namespace

std::vector<unsigned char> to_gray(const std::vector<double>& values) {
  const Scale scale = choose_scale(finite_values(values));
  std::vector<unsigned char> shades(values.size());
  std::transform(values.begin(), values.end(), shades.begin(),
                 [&](double value) { return shade(value, scale); });
  return shades;
}

}  // namespace Vrel::tool
