// The bytes of a stack in ordinary memory.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <new>

#include "stack/large_pages_internal.h"

namespace Vrel::detail {

/// A block of bytes that are 0 at first; the system gives large ones only where they are used.
class ByteBuffer {
 public:
  /// Raises std::bad_alloc.
  explicit ByteBuffer(std::size_t size)
      : bytes_(size == 0 ? nullptr : static_cast<unsigned char*>(std::calloc(size, 1))),
        size_(size) {
    if (size != 0 && bytes_ == nullptr) throw std::bad_alloc();
    prefer_large_pages(bytes_.get(), size);
  }

  unsigned char* data() const { return bytes_.get(); }
  std::size_t size() const { return size_; }

 private:
  struct Free {
    void operator()(unsigned char* bytes) const { std::free(bytes); }
  };

  std::unique_ptr<unsigned char, Free> bytes_;
  std::size_t size_;
};

}  // namespace Vrel::detail
