#include "lib/file_extents.h"

#include <algorithm>
#include <iterator>

namespace Vrel::tool {

bool FileExtents::overlaps(const Extent& extent) const {
  const auto behind = end_of_.upper_bound(extent.begin);
  if (behind != end_of_.begin() && std::prev(behind)->second > extent.begin) return true;
  return behind != end_of_.end() && behind->first < extent.end;
}

void FileExtents::add(const Extent& extent) {
  const auto behind = end_of_.upper_bound(extent.begin);
  const u64 end = behind == end_of_.end() ? extent.end : std::min(extent.end, behind->first);
  if (extent.begin < end) end_of_[extent.begin] = end;
}

std::vector<Extent> FileExtents::gaps(u64 file_size) const {
  std::vector<Extent> found;
  u64 position = 0;
  for (const auto& [begin, end] : end_of_) {
    if (begin > position) found.push_back({position, std::min(begin, file_size)});
    position = std::max(position, end);
  }
  if (position < file_size) found.push_back({position, file_size});
  return found;
}

}  // namespace Vrel::tool
