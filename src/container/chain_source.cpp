#include "container/chain_source_internal.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "container/format_internal.h"
#include "foundation/raise_internal.h"

namespace Vrel::detail {

namespace {

constexpr u64 refused = ~u64{0};
constexpr u64 window_size = 16384;

[[noreturn]] void raise_invalid_position() {
  raise(id_format, "Invalid stack position specified in header!");
}

}  // namespace

void raise_short_read(u64 size) {
  raise(id_file_system, "Failed reading %d bytes from file!", static_cast<int>(size));
}

u64 checked_position(u64 position) {
  if (position == refused) raise_invalid_position();
  return position;
}

u64 checked_seek(VFileAccess& file, u64 position) { return checked_position(file.seek(position)); }

u64 checked_tell(const VFileAccess& file) { return checked_position(file.tell()); }

ChainSource::ChainSource(VFileAccess& file)
    : file_(file), position_(file.tell()), end_(checked_seek(file, ~u64{0})), unread_(end_) {
  checked_seek(file_, position_);
}

void ChainSource::seek(u64 position) { position_ = checked_seek(file_, position); }

void ChainSource::skip(u64 size) {
  if (size == 0) return;
  if (size >= refused - position_) raise_invalid_position();
  seek(position_ + size);
}

void ChainSource::expect(u64 count, u64 size) const {
  const u64 left = position_ < end_ ? std::min(end_ - position_, unread_) : 0;
  if (count > left / size) raise_short_read(count * size);
}

void ChainSource::read(void* buffer, u64 size) {
  if (size == 0) return;
  expect(size, 1);
  unread_ -= size;
  auto* const bytes = static_cast<unsigned char*>(buffer);
  const bool inside = position_ >= window_begin_ && position_ < window_end();
  const u64 held = inside ? std::min(size, window_end() - position_) : 0;
  read_from_window(bytes, held);
  const u64 missing = size - held;
  if (missing >= window_size) {
    read_from_file(bytes + held, missing);
  } else if (missing > 0) {
    fill_window();
    read_from_window(bytes + held, missing);
  }
}

std::string ChainSource::read_text(std::uint32_t length) {
  if (length == impossible_length) raise_short_read(length);
  expect(length, 1);
  std::string text(length, '\0');
  read(text.data(), length);
  return text;
}

// Until the read has succeeded there is no window, so that one that fails cannot pass for bytes.
void ChainSource::fill_window() {
  std::vector<unsigned char> bytes = std::exchange(window_, {});
  checked_seek(file_, position_);
  bytes.resize(std::min(window_size, end_ - position_));
  file_.read(bytes.data(), static_cast<unsigned>(bytes.size()));
  window_ = std::move(bytes);
  window_begin_ = position_;
}

void ChainSource::read_from_window(unsigned char* buffer, u64 size) {
  if (size == 0) return;
  std::memcpy(buffer, window_.data() + (position_ - window_begin_), size);
  position_ += size;
}

void ChainSource::read_from_file(unsigned char* buffer, u64 size) {
  constexpr u64 largest_transfer = 1u << 30;
  checked_seek(file_, position_);
  for (u64 done = 0; done < size;) {
    const u64 piece = std::min(size - done, largest_transfer);
    file_.read(buffer + done, static_cast<unsigned>(piece));
    done += piece;
    position_ += piece;
  }
}

}  // namespace Vrel::detail
