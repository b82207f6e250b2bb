#include <vrelio/container/sample_reader.h>
#include <vrelio/foundation/data_type.h>

#include <algorithm>
#include <cstring>

#include "container/conversion_internal.h"
#include "container/format_internal.h"
#include "foundation/raise_internal.h"

namespace Vrel {

namespace {

using namespace detail;

unsigned checked_sample_size(int data_type) {
  const int size = vrel_dt_get_size(data_type);
  if (size == 0) raise_no_conversion(data_type, data_type);
  return static_cast<unsigned>(size);
}

// Level 0 is raw whatever the type says; to inflating, all other levels are one, also those that no
// deflate knows.
int segment_level(const StackHeader& header) { return deflate_level(header) != 0 ? 1 : 0; }

// A segment counts its limit in 32 bits; the stored size bounds what is larger.
unsigned segment_limit(u64 size) {
  return size < VZippedSegment::no_limit ? static_cast<unsigned>(size) : VZippedSegment::no_limit;
}

}  // namespace

SampleReader::SampleReader(VFile& file, const StackRecord& stack)
    : number_of_samples_(stack.number_of_samples),
      sample_size_(checked_sample_size(stack.header.data_type)),
      empty_(stack.header.data_length == 0),
      flush_block_size_(stack.flush_block_size),
      flush_point_count_(stack.flush_positions.size()) {
  if (empty_) return;
  const int level = segment_level(stack.header);
  segment_.init_r(file, level, stack.data_position, stack.header.data_length,
                  segment_limit(number_of_samples_ * sample_size_));
  if (level == 0) flush_block_size_ = 0;
  if (flush_block_size_ != 0)
    segment_.set_flush_positions(stack.flush_positions, flush_block_size_);
}

void SampleReader::read(u64 position, u64 count, void* destination) {
  constexpr u64 largest_read = 1u << 30;
  if (count == 0) return;
  if (position >= number_of_samples_ || count > number_of_samples_ - position) {
    raise(id_plain, "Trying to read beyond segment boundary!");
  }
  const u64 size = count * sample_size_;
  if (empty_) {
    std::memset(destination, 0, size);
    return;
  }
  move_to(position * sample_size_);
  auto* const bytes = static_cast<char*>(destination);
  for (u64 done = 0; done < size;) {
    const u64 piece = std::min(size - done, largest_read);
    segment_.read(bytes + done, static_cast<unsigned>(piece));
    done += piece;
  }
}

// A seek falls back to the start of its flush block, even for a target a few bytes ahead. Reading
// on to there decodes no byte of the block twice, which is what makes a walk over the rows of a
// region cheap.
void SampleReader::move_to(u64 byte_position) {
  const u64 here = segment_.tell();
  if (flush_block_size_ != 0 && byte_position >= here &&
      starting_point(byte_position) == starting_point(here)) {
    skip(byte_position - here);
  } else {
    segment_.seek(byte_position);
  }
}

// Which flush point a seek would restart at; behind the last there is none other.
u64 SampleReader::starting_point(u64 byte_position) const {
  return std::min(byte_position / flush_block_size_, flush_point_count_);
}

void SampleReader::skip(u64 size) {
  char scratch[16384];
  while (size > 0) {
    const auto piece = static_cast<unsigned>(std::min<u64>(size, sizeof scratch));
    segment_.read(scratch, piece);
    size -= piece;
  }
}

}  // namespace Vrel
