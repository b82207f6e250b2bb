// The stored side of a segment.
#pragma once

#include <vrelio/file/file.h>

namespace Vrel::detail {

// A stretch of a file for the length of one operation. Each transfer moves the file to where the
// segment stopped, since other segments may use the file in between; without a transfer the file
// stays where it is.
class StoredBytes {
 public:
  // `position` is the file position of the next byte and moves with the transfers; `left` bytes
  // from there on belong to the stretch.
  StoredBytes(VFile& file, u64& position, u64 left)
      : file_(file), position_(position), left_(left) {}

  u64 get_left() const { return left_; }

  // `size` is at most what is left.
  // Both raise VrelError "Invalid stack position specified in header!" (-4) for a position that
  // the file cannot reach, and what the file raises.
  void read(void* buffer, unsigned size);
  void write(const void* buffer, unsigned size);

 private:
  void move_file();
  void advance(unsigned size);

  VFile& file_;
  u64& position_;
  u64 left_;
};

}  // namespace Vrel::detail
