// A stretch of a file as one stream of uncompressed bytes with random access. How flush points
// work: docs/format.md, "Data area".
#pragma once

#include <vrelio/export.h>
#include <vrelio/file/file.h>

#include <memory>
#include <vector>

namespace Vrel::detail {
enum class Flush;
class SegmentReader;
class SegmentWriter;
}  // namespace Vrel::detail

/// A stretch of a VFile seen as one stream of uncompressed bytes: raw at level 0, a zlib stream
/// above.
///
/// Writing: `init_w`, maybe `set_flush_block_size`, any number of `write`, `write_end`,
/// `get_flush_positions`, `end`. Reading: `init_r`, maybe `set_flush_positions`, any mix of `seek`
/// and `read`, `end`.
///
/// While writing with a flush block size, a full flush falls at every multiple of it, and the place
/// of each in the file is kept; while reading, `seek` restarts at the nearest of these. Several
/// segments may use one file in turn from one thread, since each transfer moves the file to where
/// the segment stopped; a place that the file cannot reach raises VrelError "Invalid stack position
/// specified in header!" (-4). Without a file each of `seek`, `read`, `write` and `write_end`
/// raises "File not open!" (-1). After an error the segment stays initialised and is to be ended.
///
/// The file is not owned and must outlive the use. Only a segment that is not initialised may be
/// copied.
class VRELIO_EXPORT VZippedSegment : public VFileAccess {
 public:
  /// `limit` that means none.
  static constexpr unsigned no_limit = 0xFFFFFFFFu;

  VZippedSegment() = default;
  /// Only of a segment that is not initialised.
  VZippedSegment(const VZippedSegment& other) = default;
  /// Only between segments that are not initialised.
  VZippedSegment& operator=(const VZippedSegment& other) = default;
  virtual ~VZippedSegment();

  /// Read `size` stored bytes from `position` of the file on.
  /// \param file      open; not owned.
  /// \param level     0 for raw bytes, else a zlib stream of any level.
  /// \param position  of the first stored byte in the file.
  /// \param size      stored bytes.
  /// \param limit     number of uncompressed bytes that may be read, or `no_limit`.
  /// \throws VrelError "File not open!" (-1).
  void init_r(VFile& file, int level, u64 position, u64 size, unsigned limit);

  /// Write from the current position of the file on.
  /// \param file   open for writing; not owned.
  /// \param level  0 for raw bytes, 1 to 9 for zlib.
  /// \param limit  number of uncompressed bytes that may be written, or `no_limit`.
  /// \return that position.
  /// \throws VrelError "Trying to write in read mode!" (-1) for a file in `mode_read`; "File not
  /// open!" (-1).
  u64 init_w(VFile& file, int level, unsigned limit);

  /// 0 not initialised, 1 reading, 2 writing.
  int is_initialized() const;

  /// Uncompressed position, from 0.
  u64 tell() const override { return position_; }

  /// Move the reading position.
  /// \throws VrelError "Trying to seek in write mode!" (-1); "Invalid position in segment!" (-1) at
  /// or behind the limit;
  ///         "Inconsistency in segment!" (-10) for a flush point outside the stored bytes; and what
  ///         `read` raises.
  u64 seek(u64 position) override;

  /// \throws VrelError "Trying to read from file in write mode!" (-1); "Trying to read beyond
  /// segment boundary!" (-1) past the
  ///         limit, past the stored bytes of a raw segment (both before the file is touched) or
  ///         past the end of a stream that lacks its end mark; "Zip error (%d)!" (-10);
  ///         "Inconsistency in segment!" (-10) where the stream ends too early or too late; and
  ///         what the file raises.
  void read(void* buffer, unsigned size) override;

  /// Write bytes; a null buffer finishes a zlib stream and does nothing to a raw segment.
  /// \throws VrelError "Trying to write to file in read mode!" (-1); "Trying to write beyond
  ///         segment boundary!" (-1); "Zip error (id: %d)!" (-10); and what the file raises.
  void write(const void* buffer, unsigned size) override;

  /// Finish the stream.
  /// \return the stored bytes.
  u64 write_end();

  /// Leave the segment uninitialised and free its memory. A zlib stream that was not finished stays
  /// without its end.
  void end();

  /// File position of the first stored byte.
  u64 get_beg_pos_file() const { return begin_; }
  /// File position of the next stored byte to be fetched or written.
  u64 get_cur_pos_file() const { return file_position_; }

  /// Uncompressed bytes between two flush points; 0 for none.
  /// \throws VrelError "Setting flush block size only possible in write mode!" (-1);
  ///         "Setting flush block size not possible after writing has started!" (-1).
  void set_flush_block_size(u64 size);

  /// Hand in the stored table: `positions[k - 1]` is the offset from the segment's begin of the
  /// flush point at uncompressed position k * `block_size`.
  /// \throws VrelError "Setting flush positions when writing." (-1) unless reading.
  void set_flush_positions(const std::vector<u64>& positions, u64 block_size);

  /// The table, and the block size in `block_size`.
  const std::vector<u64>& get_flush_positions(u64& block_size) const;

 protected:
  /// What `init_r` and `init_w` share.
  void initialize(VFile& file, int level, u64 position, u64 size, bool write, unsigned limit);

 private:
  struct StartPoint;

  void check_initialized() const;
  bool is_within_limit(unsigned size) const;
  u64 get_stored_left() const;

  Vrel::detail::SegmentReader& reader() const;
  u64 worth_fetching(unsigned size) const;
  StartPoint find_start(u64 target) const;
  void restart(const StartPoint& start);
  void skip_to(u64 target);

  void write_raw(const void* buffer, unsigned size);
  void write_pieces(const unsigned char* data, unsigned size);
  void encode(const unsigned char* data, unsigned size, Vrel::detail::Flush flush);

  VFile* file_ = nullptr;
  unsigned limit_ = no_limit;
  u64 stored_size_ = 0;
  u64 position_ = 0;
  std::shared_ptr<Vrel::detail::SegmentReader> reader_;
  std::shared_ptr<Vrel::detail::SegmentWriter> writer_;
  bool write_mode_ = false;
  u64 begin_ = 0;
  u64 file_position_ = 0;
  int level_ = 0;
  u64 flush_block_size_ = 0;
  std::vector<u64> flush_positions_;
};
