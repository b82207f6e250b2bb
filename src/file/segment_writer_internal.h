// The compressed segment while it is written.
#pragma once

#include "file/byte_store_internal.h"
#include "file/deflate_engine_internal.h"
#include "file/stored_bytes_internal.h"

namespace Vrel::detail {

// Encodes into a buffer of the chunk size and puts out each piece at once.
class SegmentWriter {
 public:
  SegmentWriter(int level, unsigned chunk_size);

  // Raises `raise_failure`, and what the stored side raises.
  void write(StoredBytes& stored, const unsigned char* data, unsigned size, Flush flush);

  // Raise VrelError "Zip error (id: %d)!" (-10) with the engine's result.
  [[noreturn]] static void raise_failure(int result);

 private:
  bool goes_on(const CodingStep& step, unsigned size, Flush flush) const;

  DeflateEncoder encoder_;
  unsigned room_;
  ByteStore output_;
};

}  // namespace Vrel::detail
