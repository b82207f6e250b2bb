// Regions in one expression.
#pragma once

#include <vrelio/stack/region.h>

#include <vector>

inline VStackRegion region_of(const std::vector<int>& from, const std::vector<int>& to,
                              const std::vector<unsigned int>& permutation) {
  VStackRegion region;
  region.from = from;
  region.to = to;
  region.permutation = permutation;
  return region;
}
