#include "container/record_buffer_internal.h"

#include <algorithm>

#include "container/chain_source_internal.h"

namespace Vrel::detail {

u64 RecordBuffer::seek(u64 /*position*/) { return tell(); }

void RecordBuffer::read(void* /*buffer*/, unsigned size) { raise_short_read(size); }

void RecordBuffer::write(const void* buffer, unsigned size) {
  bytes_.append(static_cast<const char*>(buffer), size);
}

void RecordBuffer::flush_to(VFile& file) const {
  constexpr std::size_t largest_transfer = 1u << 30;
  const u64 begin = checked_tell(file);
  try {
    for (std::size_t done = 0; done < bytes_.size();) {
      const std::size_t piece = std::min(bytes_.size() - done, largest_transfer);
      file.write(bytes_.data() + done, static_cast<unsigned>(piece));
      done += piece;
    }
  } catch (...) {
    file.seek(begin);
    throw;
  }
}

}  // namespace Vrel::detail
