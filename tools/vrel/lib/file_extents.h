// Which bytes of a file belong to something.
#pragma once

#include <vrelio/foundation/integers.h>

#include <map>
#include <vector>

namespace Vrel::tool {

/// The bytes from `begin` on, in front of `end`.
struct Extent {
  u64 begin;
  u64 end;
};

/// Stretches of a file, none of which begins inside another.
class FileExtents {
 public:
  /// Whether a part of the stretch, or its begin, belongs to something already.
  bool overlaps(const Extent& extent) const;
  /// Add a stretch whose begin belongs to nothing, as far as it lies over no other; an empty one adds
  /// nothing.
  void add(const Extent& extent);
  /// What belongs to nothing, in a file of this size, in ascending order.
  std::vector<Extent> gaps(u64 file_size) const;

 private:
  std::map<u64, u64> end_of_;
};

}  // namespace Vrel::tool
