#include "lib/recover_samples.h"

#include <vrelio/foundation/data_type.h>
#include <zlib.h>

#include <algorithm>

#include "lib/verify_samples.h"

namespace Vrel::tool {

namespace {

constexpr u64 checksum_size = 4;
constexpr u64 most_samples = 0xFFFFFFFF;

u64 samples_per_step(const StackHeader& header) {
  u64 samples = 1;
  for (unsigned axis = 0; axis + 1 < header.rank; ++axis) samples *= header.sizes[axis];
  return samples;
}

u64 sample_size(const StackRecord& stack) {
  return static_cast<unsigned>(vrel_dt_get_size(stack.header.data_type));
}

// The length in the header, if it is one that the writer has put down.
u64 stored_size_of(const StackRecord& stack, u64 limit) {
  const u64 room = limit - std::min(limit, stack.data_position);
  const u64 length = stack.header.data_length;
  return length != 0 && length <= room ? length : room;
}

}  // namespace

SampleRemains::SampleRemains(VFile& file, const StackRecord& stack, u64 limit)
    : file_(file), position_(stack.data_position), size_(stored_size_of(stack, limit)) {
  if (is_zipped(stack.header)) inflater_ = std::make_unique<Inflater>(file, position_, size_);
}

unsigned SampleRemains::read(unsigned char* bytes, unsigned size) {
  if (inflater_) {
    const unsigned count = inflater_->decode(bytes, size, size_);
    adler_ = adler32(adler_, bytes, count);
    return count;
  }
  const auto count = static_cast<unsigned>(std::min<u64>(size, size_ - offset_));
  if (count == 0) return 0;
  file_.seek(position_ + offset_);
  file_.read(bytes, count);
  offset_ += count;
  return count;
}

bool SampleRemains::is_stream_whole() {
  if (!inflater_) return true;
  unsigned char bytes[checksum_size];
  if (inflater_->state() == Inflater::State::running) inflater_->decode(bytes, 1, size_);
  const bool is_ended = inflater_->state() == Inflater::State::ended;
  if (!is_ended || size_ - inflater_->offset() < checksum_size) return false;
  file_.seek(position_ + inflater_->offset());
  file_.read(bytes, checksum_size);
  unsigned long stored = 0;
  for (const unsigned char byte : bytes) stored = stored << 8 | byte;
  return stored == adler_;
}

u64 SampleRemains::stored_size() const {
  return inflater_ ? inflater_->offset() + checksum_size : offset_;
}

bool is_growing(const StackHeader& header) {
  return header.rank > 0 && header.sizes[header.rank - 1] == 0 && samples_per_step(header) != 0 &&
         samples_per_step(header) <= most_samples;
}

u64 bytes_per_step(const StackRecord& stack) {
  return samples_per_step(stack.header) * sample_size(stack);
}

u64 most_bytes(const StackRecord& stack) {
  if (!is_growing(stack.header)) return size_of_samples(stack);
  return most_samples / samples_per_step(stack.header) * bytes_per_step(stack);
}

u64 count_remains(VFile& file, const StackRecord& stack, u64 limit) {
  const u64 most = most_bytes(stack);
  if (!is_zipped(stack.header)) return std::min(most, stored_size_of(stack, limit));
  SampleRemains remains(file, stack, limit);
  std::vector<unsigned char> block(256u << 10);
  u64 count = 0;
  while (count < most) {
    const unsigned size = remains.read(block.data(), static_cast<unsigned>(block.size()));
    count += size;
    if (size < block.size()) break;
  }
  return std::min(count, most);
}

void cut_last_axis(StackRecord& stack, std::uint32_t steps) {
  const std::size_t last = stack.header.rank - 1;
  stack.header.sizes[last] = steps;
  if (last < stack.column_positions.size() && !stack.column_positions[last].empty()) {
    stack.column_positions[last].resize(steps);
  }
  if (last < stack.column_labels.size() && !stack.column_labels[last].empty()) {
    stack.column_labels[last].resize(steps);
  }
}

}  // namespace Vrel::tool
