// The bytes of a file as the chain reader takes them: nothing past the end, nothing twice.
#pragma once

#include <vrelio/file/file_access.h>

#include <cstdint>
#include <string>
#include <vector>

namespace Vrel::detail {

// Move a file, all ones to its end. Raises "Invalid stack position specified in header!" (-4) where the
// system refuses the position.
u64 checked_seek(VFileAccess& file, u64 position);
// The position of a file, or one that it has told. Raises the same where it has none.
u64 checked_tell(const VFileAccess& file);
u64 checked_position(u64 position);

// Raise "Failed reading %d bytes from file!" (-3).
[[noreturn]] void raise_short_read(u64 size);

// Reads forward through a small window, so that many short fields cost few system calls.
//
// Every read is held against the bytes that the file has from here on, before memory is taken for
// it, and against the bytes that have not been read yet: an honest file has each of its bytes in
// one place, so that who asks for more than there is in all is read no further. What does not fit
// raises "Failed reading %d bytes from file!" (-3), as the read itself would have.
class ChainSource {
 public:
  // Starts at the current position of the file.
  explicit ChainSource(VFileAccess& file);

  u64 position() const { return position_; }
  u64 end() const { return end_; }

  // All ones move to the end. Raises "Invalid stack position specified in header!" (-4) where the
  // system refuses the position.
  void seek(u64 position);
  // From here on; may pass the end. Raises as `seek`.
  void skip(u64 size);

  void read(void* buffer, u64 size);
  // Raises unless `count` items of `size` bytes can follow.
  void expect(u64 count, u64 size) const;
  // The text of `length` bytes that stands here; a length of all ones is impossible.
  std::string read_text(std::uint32_t length);

  // Bytes that may still be read.
  u64 get_allowance() const { return unread_; }
  void set_allowance(u64 size) { unread_ = size; }

 private:
  u64 window_end() const { return window_begin_ + window_.size(); }
  void fill_window();
  void read_from_window(unsigned char* buffer, u64 size);
  void read_from_file(unsigned char* buffer, u64 size);

  VFileAccess& file_;
  u64 position_;
  u64 end_;
  u64 unread_;
  u64 window_begin_ = 0;
  std::vector<unsigned char> window_;
};

}  // namespace Vrel::detail
