// The stack that all contestants store: planes of uint16, in blocks of whole rows that are compressed by
// themselves.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace bench {

using Sample = std::uint16_t;

constexpr std::size_t width = 1024;
constexpr std::size_t height = 1024;
constexpr std::size_t plane_length = width * height;
constexpr std::size_t plane_size = plane_length * sizeof(Sample);
// 256 KiB, for chunks, strips and flush points alike.
constexpr std::size_t block_rows = 128;
constexpr std::size_t block_size = block_rows * width * sizeof(Sample);

// A box in the middle of a stack; first and number of samples along each axis, the fastest first.
struct Box {
  std::size_t first[3];
  std::size_t size[3];
};

inline void require(bool condition, const char* what) {
  if (condition) return;
  std::fprintf(stderr, "%s\n", what);
  std::exit(1);
}

// The name of a file in memory that is gone when the object is.
class ScratchFile {
 public:
  explicit ScratchFile(const std::string& name) : path_("/dev/shm/vrelio-bench-" + name) {}
  ~ScratchFile() { std::remove(path_.c_str()); }
  ScratchFile(const ScratchFile&) = delete;
  ScratchFile& operator=(const ScratchFile&) = delete;

  const std::string& path() const { return path_; }
  std::wstring name() const { return {path_.begin(), path_.end()}; }

 private:
  std::string path_;
};

}  // namespace bench
