// Many planes as one: the maximum along all axes but two.
#pragma once

#include <vrelio/file/file_access.h>

#include <cstddef>
#include <vector>

namespace Vrel::tool {

/// What a picture shows of an array: the axes of its columns and rows.
struct PictureAxes {
  std::vector<u64> sizes;  ///< of the array, the fastest axis first
  std::size_t column = 0;  ///< axis that runs along the rows; none if there is no such axis
  std::size_t row = 1;     ///< axis that runs from row to row; none if there is no such axis

  u64 width() const { return column < sizes.size() ? sizes[column] : 1; }
  u64 height() const { return row < sizes.size() ? sizes[row] : 1; }
};

/// The maximum over all other axes, of values that come in the order of the array. What is not a
/// number counts only where there is nothing else.
class MaximumProjection {
 public:
  explicit MaximumProjection(PictureAxes axes);

  /// Take the next values.
  void add(const double* values, std::size_t count);
  /// The picture, row by row; it can be taken once.
  std::vector<double> take_picture();

 private:
  u64 stride(std::size_t axis) const;
  void add_run(const double* values, u64 count);
  void advance(u64 count);

  PictureAxes axes_;
  std::vector<u64> index_;
  u64 place_ = 0;
  std::vector<double> picture_;
};

}  // namespace Vrel::tool
