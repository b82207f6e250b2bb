#include "file/segment_writer_internal.h"

#include <algorithm>

#include "foundation/raise_internal.h"

namespace Vrel::detail {

namespace {

// A full flush that finds its room full is repeated, and each time adds an empty block of 5 bytes;
// in less room than this that could go on for ever. No room at all stays the error that it is.
constexpr unsigned least_room = 7;

unsigned room_of(unsigned chunk_size) {
  return chunk_size == 0 ? 0 : std::max(chunk_size, least_room);
}

}  // namespace

SegmentWriter::SegmentWriter(int level, unsigned chunk_size)
    : encoder_(level), room_(room_of(chunk_size)) {}

void SegmentWriter::raise_failure(int result) {
  raise(id_compression, "Zip error (id: %d)!", result);
}

void SegmentWriter::write(StoredBytes& stored, const unsigned char* data, unsigned size,
                          Flush flush) {
  unsigned char* const output = output_.make_room(std::max(room_, 1u));
  CodingStep step;
  do {
    step = encoder_.encode(data, size, output, room_, flush);
    if (step.produced > 0) stored.write(output, step.produced);
    if (step.result != engine_ok && step.result != engine_stream_end) {
      raise_failure(step.result);
    }
    data += step.consumed;
    size -= step.consumed;
  } while (goes_on(step, size, flush));
}

bool SegmentWriter::goes_on(const CodingStep& step, unsigned size, Flush flush) const {
  if (flush == Flush::finish) return step.result != engine_stream_end;
  return size > 0 || (flush == Flush::full && step.produced == room_);
}

}  // namespace Vrel::detail
