#include "lib/inflater.h"

#include <zlib.h>

#include <algorithm>
#include <cstring>
#include <new>

namespace Vrel::tool {

namespace {

constexpr u64 input_size = 64u << 10;
constexpr u64 header_size = 2;

// Method and window, the sum of both bytes, and no dictionary that would have to be known.
bool is_header(const unsigned char* bytes) {
  const unsigned number = bytes[0] * 256u + bytes[1];
  return (bytes[0] & 0x0F) == Z_DEFLATED && bytes[0] >> 4 <= 7 && number % 31 == 0 &&
         (bytes[1] & 0x20) == 0;
}

}  // namespace

struct Inflater::Stream : z_stream {
  Stream() : z_stream() {
    if (inflateInit2(this, -MAX_WBITS) != Z_OK) throw std::bad_alloc();
  }
  ~Stream() { inflateEnd(this); }
  Stream(const Stream&) = delete;
  Stream& operator=(const Stream&) = delete;
};

Inflater::Inflater(VFile& file, u64 position, u64 size)
    : file_(file), position_(position), size_(size), stream_(std::make_unique<Stream>()) {}

Inflater::~Inflater() = default;

void Inflater::fetch() {
  const u64 size = std::min(size_ - offset_, input_size);
  input_.resize(size);
  used_ = 0;
  file_.seek(position_ + offset_);
  file_.read(input_.data(), static_cast<unsigned>(size));
}

bool Inflater::take_header() {
  if (size_ < header_size) {
    offset_ = size_;
    state_ = State::starved;
    return false;
  }
  fetch();
  if (!is_header(input_.data())) {
    state_ = State::broken;
    return false;
  }
  used_ = offset_ = header_size;
  return true;
}

unsigned Inflater::decode(unsigned char* bytes, unsigned size, u64 stop) {
  if (state_ == State::ended || state_ == State::broken) return 0;
  if (offset_ == 0 && !take_header()) return 0;
  state_ = State::running;
  stop = std::min(stop, size_);
  stream_->next_out = bytes;
  stream_->avail_out = size;
  while (stream_->avail_out > 0) {
    if (used_ == input_.size() && offset_ < stop) fetch();
    const u64 usable = std::min<u64>(input_.size() - used_, stop > offset_ ? stop - offset_ : 0);
    stream_->next_in = input_.data() + used_;
    stream_->avail_in = static_cast<uInt>(usable);
    const uInt room = stream_->avail_out;
    const int block_state = stream_->data_type;
    const int result = inflate(stream_.get(), Z_SYNC_FLUSH);
    const u64 taken = usable - stream_->avail_in;
    used_ += taken;
    offset_ += taken;
    // A call that has nothing to do forgets that a block has just ended.
    if (taken == 0 && stream_->avail_out == room) stream_->data_type = block_state;
    if (result == Z_MEM_ERROR) throw std::bad_alloc();
    if (result == Z_STREAM_END) {
      state_ = State::ended;
    } else if (result != Z_OK && result != Z_BUF_ERROR) {
      state_ = State::broken;
    } else if (stream_->avail_out > 0 && offset_ >= stop) {
      state_ = State::starved;
    }
    if (state_ != State::running) break;
  }
  return size - stream_->avail_out;
}

// zlib tells so in bits: the unused ones of the last byte, 64 in the last block, 128 behind one.
bool Inflater::is_between_blocks() const { return (stream_->data_type & 0xFF) == 128; }

bool Inflater::lacks_history() const {
  return state_ == State::broken && stream_->msg != nullptr &&
         std::strcmp(stream_->msg, "invalid distance too far back") == 0;
}

void Inflater::restart() { inflateReset(stream_.get()); }

}  // namespace Vrel::tool
