#include <vrelio/file/zipped_segment.h>

#include <algorithm>

#include "file/segment_reader_internal.h"
#include "file/segment_writer_internal.h"
#include "file/system_file_internal.h"
#include "foundation/raise_internal.h"

using namespace Vrel::detail;

namespace {

// Fetched at least where no flush point tells how far to go.
constexpr u64 least_fetch = 32u << 10;

void require_file(bool is_there) {
  if (!is_there) raise(id_plain, "File not open!");
}

}  // namespace

// A place where decoding can start: the uncompressed position, and the offset from the begin.
struct VZippedSegment::StartPoint {
  u64 position;
  u64 offset;
};

VZippedSegment::~VZippedSegment() = default;

void VZippedSegment::init_r(VFile& file, int level, u64 position, u64 size, unsigned limit) {
  initialize(file, level, position, size, false, limit);
}

u64 VZippedSegment::init_w(VFile& file, int level, unsigned limit) {
  if (file.get_mode() == VFile::mode_read) raise(id_plain, "Trying to write in read mode!");
  const u64 position = file.tell();
  initialize(file, level, position, no_position, true, limit);
  return position;
}

void VZippedSegment::initialize(VFile& file, int level, u64 position, u64 size, bool write,
                                unsigned limit) {
  end();
  require_file(file.is_open());
  if (level > 0 && write) {
    writer_ = std::make_shared<SegmentWriter>(level, file.get_chunk_size());
  } else if (level > 0) {
    reader_ = std::make_shared<SegmentReader>(file.get_chunk_size());
  }
  limit_ = limit;
  // An end behind the last position is one that no file reaches.
  stored_size_ = std::min(size, no_position - position);
  position_ = 0;
  write_mode_ = write;
  begin_ = position;
  file_position_ = position;
  level_ = level;
  file_ = &file;
}

void VZippedSegment::end() {
  reader_.reset();
  writer_.reset();
  flush_block_size_ = 0;
  flush_positions_ = {};
  file_ = nullptr;
}

int VZippedSegment::is_initialized() const {
  if (file_ == nullptr) return 0;
  return write_mode_ ? 2 : 1;
}

void VZippedSegment::check_initialized() const { require_file(file_ != nullptr); }

bool VZippedSegment::is_within_limit(unsigned size) const {
  return limit_ == no_limit || (position_ <= limit_ && size <= limit_ - position_);
}

u64 VZippedSegment::get_stored_left() const {
  const u64 offset = file_position_ - begin_;
  return offset < stored_size_ ? stored_size_ - offset : 0;
}

void VZippedSegment::read(void* buffer, unsigned size) {
  check_initialized();
  if (write_mode_) raise(id_plain, "Trying to read from file in write mode!");
  const bool is_raw_end_passed = level_ == 0 && size > get_stored_left();
  if (is_raw_end_passed || !is_within_limit(size)) raise(id_plain, beyond_boundary);
  if (size == 0) return;
  StoredBytes stored(*file_, file_position_, get_stored_left());
  if (level_ == 0) {
    stored.read(buffer, size);
  } else {
    reader().read(stored, {static_cast<unsigned char*>(buffer), size, worth_fetching(size)});
  }
  position_ += size;
}

SegmentReader& VZippedSegment::reader() const {
  if (!reader_) SegmentReader::raise_failure(engine_unusable);
  return *reader_;
}

// Up to the flush point behind the last byte of a read of `size` bytes, or to the segment's end.
u64 VZippedSegment::worth_fetching(unsigned size) const {
  const u64 read_end = position_ + size;
  if (limit_ != no_limit && read_end == limit_) return get_stored_left();
  if (flush_block_size_ == 0) return std::max<u64>(size, least_fetch);
  const u64 block = (read_end - 1) / flush_block_size_;
  if (block > flush_positions_.size()) return std::max<u64>(size, least_fetch);
  const u64 block_end = block < flush_positions_.size() ? flush_positions_[block] : stored_size_;
  const u64 fetched = file_position_ - begin_;
  return block_end > fetched ? block_end - fetched : 0;
}

u64 VZippedSegment::seek(u64 position) {
  check_initialized();
  if (write_mode_) raise(id_plain, "Trying to seek in write mode!");
  if (limit_ != no_limit && position >= limit_) raise(id_plain, "Invalid position in segment!");
  if (position == position_) return position_;
  if (level_ == 0) {
    position_ = position;
    file_position_ = begin_ + position;
    return position_;
  }
  const StartPoint start = find_start(position);
  if (start.position != position_) restart(start);
  skip_to(position);
  return position_;
}

// Intended: with flush points a target a few bytes ahead in the same block starts at the block's
// begin again, which bounds the work of every seek; VZippedSegmentTest,
// ASeekForwardInABlockFallsBackToItsStart.
VZippedSegment::StartPoint VZippedSegment::find_start(u64 target) const {
  const u64 blocks = flush_block_size_ == 0 ? 0 : target / flush_block_size_;
  const u64 point = std::min<u64>(blocks, flush_positions_.size());
  if (point != 0) return {point * flush_block_size_, flush_positions_[point - 1]};
  if (target > position_) return {position_, file_position_ - begin_};
  return {0, 0};
}

void VZippedSegment::restart(const StartPoint& start) {
  if (start.offset > stored_size_) raise(id_compression, inconsistency);
  reader().restart(start.position == 0 ? StreamForm::whole : StreamForm::blocks);
  position_ = start.position;
  file_position_ = begin_ + start.offset;
}

void VZippedSegment::skip_to(u64 target) {
  while (position_ < target) {
    reader().expect_jump();
    const u64 piece = std::min<u64>(target - position_, reader().get_scratch_size());
    read(reader().get_scratch(), static_cast<unsigned>(piece));
  }
  reader().expect_jump();
}

void VZippedSegment::write(const void* buffer, unsigned size) {
  check_initialized();
  if (!write_mode_) raise(id_plain, "Trying to write to file in read mode!");
  if (!is_within_limit(size)) raise(id_plain, "Trying to write beyond segment boundary!");
  if (level_ == 0) {
    if (buffer != nullptr) write_raw(buffer, size);
  } else if (buffer == nullptr) {
    encode(nullptr, 0, Flush::finish);
  } else {
    write_pieces(static_cast<const unsigned char*>(buffer), size);
  }
}

void VZippedSegment::write_raw(const void* buffer, unsigned size) {
  if (size == 0) return;
  StoredBytes(*file_, file_position_, get_stored_left()).write(buffer, size);
  position_ += size;
}

// A piece ends at the next multiple of the flush block size.
void VZippedSegment::write_pieces(const unsigned char* data, unsigned size) {
  while (size > 0) {
    const u64 to_flush =
        flush_block_size_ == 0 ? no_position : flush_block_size_ - position_ % flush_block_size_;
    const bool is_full = size >= to_flush;
    const unsigned piece = is_full ? static_cast<unsigned>(to_flush) : size;
    encode(data, piece, is_full ? Flush::full : Flush::none);
    if (is_full) flush_positions_.push_back(file_position_ - begin_);
    position_ += piece;
    data += piece;
    size -= piece;
  }
}

void VZippedSegment::encode(const unsigned char* data, unsigned size, Flush flush) {
  if (!writer_) SegmentWriter::raise_failure(engine_unusable);
  StoredBytes stored(*file_, file_position_, get_stored_left());
  writer_->write(stored, data, size, flush);
}

u64 VZippedSegment::write_end() {
  write(nullptr, 0);
  return file_position_ - begin_;
}

void VZippedSegment::set_flush_block_size(u64 size) {
  if (is_initialized() != 2) {
    raise(id_plain, "Setting flush block size only possible in write mode!");
  }
  if (position_ != 0) {
    raise(id_plain, "Setting flush block size not possible after writing has started!");
  }
  flush_block_size_ = size;
}

void VZippedSegment::set_flush_positions(const std::vector<u64>& positions, u64 block_size) {
  if (is_initialized() != 1) raise(id_plain, "Setting flush positions when writing.");
  flush_positions_ = positions;
  flush_block_size_ = block_size;
}

const std::vector<u64>& VZippedSegment::get_flush_positions(u64& block_size) const {
  block_size = flush_block_size_;
  return flush_positions_;
}
