#include "support/memory_file.h"

#include <vrelio/foundation/error.h>

#include <algorithm>
#include <cstring>
#include <limits>

namespace Vrel::testing {

u64 MemoryFile::seek(u64 position) {
  constexpr u64 all_ones = ~u64{0};
  if (position == all_ones) return position_ = bytes_.size();
  if (position > static_cast<u64>(std::numeric_limits<long long>::max())) return all_ones;
  return position_ = position;
}

void MemoryFile::read(void* buffer, unsigned size) {
  ++reads_;
  if (size == 0) return;
  if (position_ > bytes_.size() || size > bytes_.size() - position_) {
    throw VrelError()("Failed reading %d bytes from file!", static_cast<int>(size))(-3);
  }
  std::memcpy(buffer, bytes_.data() + position_, size);
  position_ += size;
  bytes_read_ += size;
}

void MemoryFile::write(const void* buffer, unsigned size) {
  if (size == 0) return;
  bytes_.resize(std::max<u64>(bytes_.size(), position_ + size));
  std::memcpy(&bytes_[position_], buffer, size);
  position_ += size;
}

}  // namespace Vrel::testing
