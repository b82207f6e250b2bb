// Trees of a given depth.
#pragma once

#include <vrelio/prop/prop.h>

/// Cell arrays of one element in each other; a single level is the empty value.
inline VProp nested_cells(int levels) {
  VProp value;
  for (int i = 1; i < levels; ++i) {
    VProp outer;
    outer(0U).swap(value);
    value.swap(outer);
  }
  return value;
}
