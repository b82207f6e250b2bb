#include "lib/region_reader.h"

#include <algorithm>
#include <utility>

namespace Vrel::tool {

RegionWalk::RegionWalk(const std::vector<std::uint32_t>& sizes, const Region& region)
    : is_done_(number_of_samples(region) == 0) {
  u64 stride = 1;
  bool is_whole = true;  // whether all axes so far are in the run from end to end
  for (std::size_t axis = 0; axis < sizes.size() && !is_done_; ++axis) {
    const AxisRange& range = region[axis];
    position_ += range.first * stride;
    if (is_whole) {
      run_ *= range.size();
    } else {
      axes_.push_back({range.size(), stride, 0});
    }
    is_whole = is_whole && range.size() == sizes[axis];
    stride *= sizes[axis];
  }
}

SampleRange RegionWalk::next() {
  if (is_done_) return {0, 0};
  const SampleRange run{position_, run_};
  advance();
  return run;
}

void RegionWalk::advance() {
  for (Axis& axis : axes_) {
    position_ += axis.stride;
    if (++axis.index < axis.size) return;
    position_ -= axis.size * axis.stride;
    axis.index = 0;
  }
  is_done_ = true;
}

RegionReader::RegionReader(ReadSamples read, unsigned sample_size, RegionWalk walk)
    : read_(std::move(read)), sample_size_(sample_size), walk_(std::move(walk)) {}

void RegionReader::read(u64 count, void* destination) {
  char* place = static_cast<char*>(destination);
  while (count > 0) {
    if (run_.count == 0) run_ = walk_.next();
    if (run_.count == 0) return;
    const u64 piece = std::min(count, run_.count);
    read_(run_.position, piece, place);
    place += piece * sample_size_;
    count -= piece;
    run_.position += piece;
    run_.count -= piece;
  }
}

}  // namespace Vrel::tool
