// The compressed segment in its plainest form: in memory, one engine call per read, each with a
// whole chunk of stored bytes before it. What VZippedSegment does is held against it.
#pragma once

#include <vrelio/file/file_access.h>
#include <zlib.h>

#include <algorithm>
#include <string>
#include <vector>

namespace Vrel::testing {

constexpr unsigned plain_no_limit = 0xFFFFFFFFu;

inline Bytef* plain_bytes(const void* bytes) {
  return static_cast<Bytef*>(const_cast<void*>(bytes));
}

struct PlainError {
  std::string text;
  int id;
};

class PlainReader {
 public:
  PlainReader(const std::string& stored, unsigned chunk_size, unsigned limit)
      : stored_(stored),
        limit_(limit),
        chunk_size_(chunk_size),
        buffer_(std::min<std::size_t>(chunk_size, stored.size()), '\0') {
    inflateInit(&stream_);
  }
  ~PlainReader() { inflateEnd(&stream_); }
  PlainReader(const PlainReader&) = delete;
  PlainReader& operator=(const PlainReader&) = delete;

  void set_flush_positions(const std::vector<u64>& positions, u64 block_size) {
    flush_positions_ = positions;
    flush_block_size_ = block_size;
  }

  u64 tell() const { return position_; }
  int count_warnings() const { return warnings_; }

  void read(void* destination, unsigned size) {
    if (limit_ != plain_no_limit && position_ + size > limit_) {
      throw PlainError{"Trying to read beyond segment boundary!", -1};
    }
    if (size == 0) return;
    stream_.next_out = plain_bytes(destination);
    stream_.avail_out = size;
    while (!decode_buffer()) {
    }
    position_ += size;
  }

  u64 seek(u64 target) {
    if (limit_ != plain_no_limit && target >= limit_) {
      throw PlainError{"Invalid position in segment!", -1};
    }
    if (target == position_) return position_;
    u64 start = target > position_ ? position_ : 0;
    std::size_t start_fetched = 0;
    const u64 point = flush_block_size_ == 0
                          ? 0
                          : std::min<u64>(target / flush_block_size_, flush_positions_.size());
    if (point != 0) {
      start = point * flush_block_size_;
      if (start != position_ && flush_positions_[point - 1] > stored_.size()) {
        throw PlainError{"Inconsistency in segment!", -10};
      }
      start_fetched = flush_positions_[point - 1];
    }
    if (start != position_) restart(start, start_fetched);
    std::string scratch(std::clamp(chunk_size_, 1u, 1u << 20), '\0');
    while (position_ < target) {
      read(scratch.data(),
           static_cast<unsigned>(std::min<u64>(target - position_, scratch.size())));
    }
    return position_;
  }

 private:
  // True once nothing more is wanted.
  bool decode_buffer() {
    const std::size_t size = std::min(buffer_.size() - held_, stored_.size() - fetched_);
    std::copy_n(stored_.begin() + static_cast<std::ptrdiff_t>(fetched_), size,
                buffer_.begin() + static_cast<std::ptrdiff_t>(held_));
    fetched_ += size;
    held_ += size;
    const std::size_t remaining = stored_.size() - fetched_;
    stream_.next_in = plain_bytes(buffer_.data());
    stream_.avail_in = static_cast<uInt>(held_);
    const int result = inflate(&stream_, Z_SYNC_FLUSH);
    const std::size_t left = stream_.avail_in + remaining;
    if (result == Z_STREAM_END) {
      if (stream_.avail_out != 0 || (left != 0 && left != 4)) {
        throw PlainError{"Inconsistency in segment!", -10};
      }
    } else if (result != Z_OK) {
      throw PlainError{"Zip error (" + std::to_string(result) + ")!", -10};
    } else if (left == 0) {
      if (stream_.avail_out != 0) throw PlainError{"Trying to read beyond segment boundary!", -1};
      ++warnings_;
    }
    std::copy(stream_.next_in, stream_.next_in + stream_.avail_in, plain_bytes(buffer_.data()));
    held_ = stream_.avail_in;
    return stream_.avail_out == 0;
  }

  void restart(u64 position, std::size_t fetched) {
    inflateEnd(&stream_);
    stream_ = {};
    if (position == 0) {
      inflateInit(&stream_);
    } else {
      inflateInit2(&stream_, -MAX_WBITS);
    }
    position_ = position;
    fetched_ = fetched;
    held_ = 0;
  }

  const std::string& stored_;
  unsigned limit_;
  unsigned chunk_size_;
  std::string buffer_;
  z_stream stream_{};
  std::size_t fetched_ = 0;
  std::size_t held_ = 0;
  u64 position_ = 0;
  int warnings_ = 0;
  u64 flush_block_size_ = 0;
  std::vector<u64> flush_positions_;
};

struct PlainStored {
  std::string bytes;
  std::vector<u64> flush_positions;
};

// The stored form of `data`, put in by writes of `piece` bytes.
inline PlainStored plain_write(const std::string& data, int level, u64 block_size,
                               std::size_t piece, std::size_t chunk_size) {
  PlainStored stored;
  z_stream stream{};
  deflateInit(&stream, level);
  std::string buffer(chunk_size, '\0');
  int result = Z_OK;
  const auto encode = [&](int flush) {
    stream.next_out = plain_bytes(buffer.data());
    stream.avail_out = static_cast<uInt>(buffer.size());
    result = deflate(&stream, flush);
    stored.bytes.append(buffer, 0, buffer.size() - stream.avail_out);
  };
  for (std::size_t done = 0; done < data.size();) {
    std::size_t size = std::min(piece - done % piece, data.size() - done);
    int flush = Z_NO_FLUSH;
    if (block_size != 0 && done % block_size + size >= block_size) {
      size = block_size - done % block_size;
      flush = Z_FULL_FLUSH;
    }
    stream.next_in = plain_bytes(data.data() + done);
    stream.avail_in = static_cast<uInt>(size);
    do {
      encode(flush);
    } while (stream.avail_in > 0 || (flush == Z_FULL_FLUSH && stream.avail_out == 0));
    if (flush == Z_FULL_FLUSH) stored.flush_positions.push_back(stored.bytes.size());
    done += size;
  }
  do {
    encode(Z_FINISH);
  } while (result == Z_OK);
  deflateEnd(&stream);
  return stored;
}

}  // namespace Vrel::testing
