// Which part of a stack to take, in physical coordinates.
#pragma once

#include <vrelio/export.h>
#include <vrelio/prop/prop_array.h>

#include <vector>

/// A box in physical coordinates, which may lie askew. A plain value.
class VRELIO_EXPORT VStackPhysicalRegion {
 public:
  /// A box of no extent at the origin, along the axes.
  /// \param rank  number of axes.
  explicit VStackPhysicalRegion(unsigned int rank);

  int type = 0;              ///< data type id of the result; 0 for that of the stack
  std::vector<double> from;  ///< lower bound per axis
  std::vector<double> to;    ///< upper bound per axis
  VProparray<double>
      axes;  ///< (rank, rank); the direction of each axis, at first the identity matrix
};
