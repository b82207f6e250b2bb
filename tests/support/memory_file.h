// A stream of bytes in memory, for tests that open one file in thousands of broken forms.
#pragma once

#include <vrelio/file/file_access.h>

#include <string>

namespace Vrel::testing {

class MemoryFile : public VFileAccess {
 public:
  MemoryFile() = default;
  explicit MemoryFile(std::string bytes) : bytes_(std::move(bytes)) {}
  virtual ~MemoryFile() = default;

  u64 tell() const override { return position_; }
  // As a system file: all ones move to the end, what is above the largest signed position is
  // refused.
  u64 seek(u64 position) override;
  void read(void* buffer, unsigned size) override;
  void write(const void* buffer, unsigned size) override;

  const std::string& bytes() const { return bytes_; }
  // Calls of `read` so far, and the bytes that they moved.
  u64 reads() const { return reads_; }
  u64 bytes_read() const { return bytes_read_; }

 private:
  std::string bytes_;
  u64 position_ = 0;
  u64 reads_ = 0;
  u64 bytes_read_ = 0;
};

}  // namespace Vrel::testing
