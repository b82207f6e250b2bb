// Reading the samples of one stack of a file.
#pragma once

#include <vrelio/container/records.h>
#include <vrelio/export.h>
#include <vrelio/file/file.h>
#include <vrelio/file/zipped_segment.h>

namespace Vrel {

/// The samples of one stack in their stored type, by position and count in samples, axis 0 fastest.
///
/// A stack without data reads as zeros. Reading onward continues where the last read ended; other
/// positions are reached through the flush points. The file is not owned and must outlive the
/// reader; one thread at a time.
class VRELIO_EXPORT SampleReader {
 public:
  /// \throws VrelError "Invalid on-the-fly conversion from '%s' to '%s'!" (-1) for a data type
  /// without an element size.
  SampleReader(VFile& file, const StackRecord& stack);
  SampleReader(const SampleReader&) = delete;
  SampleReader& operator=(const SampleReader&) = delete;

  /// Samples of the whole stack.
  u64 get_number_of_samples() const { return number_of_samples_; }
  /// Bytes of one sample.
  unsigned get_sample_size() const { return sample_size_; }

  /// Read `count` samples from `position` on; none does nothing.
  /// \throws VrelError "Trying to read beyond segment boundary!" (-1) before the file is touched,
  /// if the stack has no such
  ///         samples; and what VZippedSegment raises.
  void read(u64 position, u64 count, void* destination);

 private:
  void move_to(u64 byte_position);
  u64 starting_point(u64 byte_position) const;
  void skip(u64 size);

  u64 number_of_samples_;
  unsigned sample_size_;
  bool empty_;
  u64 flush_block_size_;
  u64 flush_point_count_;
  VZippedSegment segment_;
};

}  // namespace Vrel
