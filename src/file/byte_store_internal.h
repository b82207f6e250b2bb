// Memory for bytes on their way.
#pragma once

#include <memory>

namespace Vrel::detail {

// Bytes that are put in at once and taken out from the front. They are never moved, and memory is
// taken when it is needed and not zeroed.
class ByteStore {
 public:
  bool is_empty() const { return first_ == end_; }
  unsigned get_size() const { return end_ - first_; }
  const unsigned char* data() const { return memory_.get() + first_; }

  // Forget the bytes and make room for others.
  unsigned char* make_room(unsigned capacity) {
    clear();
    if (capacity > capacity_) {
      capacity_ = 0;
      memory_.reset();
      memory_.reset(new unsigned char[capacity]);
      capacity_ = capacity;
    }
    return memory_.get();
  }

  // Say how many bytes were put into the room.
  void fill(unsigned size) { end_ = size; }
  void take(unsigned size) { first_ += size; }
  void clear() { first_ = end_ = 0; }

 private:
  std::unique_ptr<unsigned char[]> memory_;
  unsigned capacity_ = 0;
  unsigned first_ = 0;
  unsigned end_ = 0;
};

}  // namespace Vrel::detail
