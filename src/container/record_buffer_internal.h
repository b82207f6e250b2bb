// Records put together in memory, so that they reach the file in one transfer or not at all.
#pragma once

#include <vrelio/file/file.h>

#include <string>

namespace Vrel::detail {

// A stream that only takes bytes at its end.
class RecordBuffer : public VFileAccess {
 public:
  virtual ~RecordBuffer() = default;

  u64 tell() const override { return bytes_.size(); }
  // There is one position.
  u64 seek(u64 position) override;
  // Raises, since there is never a byte to be read.
  void read(void* buffer, unsigned size) override;
  void write(const void* buffer, unsigned size) override;

  template <class Bytes>
  void put(const Bytes& bytes) {
    write(bytes.data(), static_cast<unsigned>(bytes.size()));
  }

  // Write all at the current position of the file. After an error the file stands there again.
  void flush_to(VFile& file) const;

 private:
  std::string bytes_;
};

}  // namespace Vrel::detail
