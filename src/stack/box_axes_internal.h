// The axes of a box of elements brought into the simplest form, and the walk along them.
#pragma once

#include <cstddef>
#include <vector>

#include "stack/copy_box_internal.h"

namespace Vrel::detail {

struct BoxOffset {
  std::ptrdiff_t source = 0;
  std::ptrdiff_t destination = 0;
};

bool is_empty(const std::vector<BoxAxis>& axes);

/// By stride in the destination, without axes of one element, and with every axis that continues
/// the one before it on both sides made part of that.
std::vector<BoxAxis> simplify_axes(std::vector<BoxAxis> axes);

/// Visits every place of a box, the first axis fastest. The box is not empty.
class BoxWalk {
 public:
  explicit BoxWalk(std::vector<BoxAxis> axes);

  /// False, and back at the first place, behind the last one.
  bool next();
  BoxOffset offset() const { return offset_; }
  std::size_t index(std::size_t axis) const { return indices_[axis]; }

 private:
  std::vector<BoxAxis> axes_;
  std::vector<std::size_t> indices_;
  BoxOffset offset_;
};

}  // namespace Vrel::detail
