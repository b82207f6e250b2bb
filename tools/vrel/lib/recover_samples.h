// What is left of the samples of a stack that was cut off.
#pragma once

#include <vrelio/container/records.h>
#include <vrelio/file/file.h>

#include <memory>
#include <vector>

#include "lib/inflater.h"

namespace Vrel::tool {

/// Samples of a data area, from the first on, as far as they go.
class SampleRemains {
 public:
  /// \param limit  where the data area ends at the latest.
  SampleRemains(VFile& file, const StackRecord& stack, u64 limit);

  /// The next bytes of samples; fewer than `size` only at the end.
  /// \throws what the file raises.
  unsigned read(unsigned char* bytes, unsigned size);

  /// Whether the stream came to its end, and its checksum is that of the samples read.
  bool is_stream_whole();
  /// Stored bytes that were read so far, with the checksum of a whole stream.
  u64 stored_size() const;

 private:
  VFile& file_;
  u64 position_;
  u64 size_;
  u64 offset_ = 0;
  unsigned long adler_ = 1;
  std::unique_ptr<Inflater> inflater_;
};

/// Whether a stack grows along its last axis and nobody has written down how far it came.
bool is_growing(const StackHeader& header);

/// Bytes of samples that a stack has at most: all it was made for, or as many as a growing one can.
u64 most_bytes(const StackRecord& stack);

/// Count the bytes of samples that are left, at most `most_bytes`.
u64 count_remains(VFile& file, const StackRecord& stack, u64 limit);

/// Bytes of one step along the last axis; those of one sample at rank 0.
u64 bytes_per_step(const StackRecord& stack);

/// Make the last axis of a stack of a rank above 0 as long as `steps`, with its columns.
void cut_last_axis(StackRecord& stack, std::uint32_t steps);

}  // namespace Vrel::tool
