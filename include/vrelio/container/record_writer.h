// Writing a VBF file from the records of another one.
#pragma once

#include <vrelio/container/records.h>
#include <vrelio/export.h>
#include <vrelio/file/file.h>
#include <vrelio/file/zipped_segment.h>

namespace Vrel {

/// Writes a file record by record, so that what `read_chain` has read keeps every number and text as it
/// was stored: units, metadata and tags are not looked at. Who makes stacks of his own uses `VBFFile`.
///
/// Calls: for each stack `begin_stack`, any number of `write`, `commit_stack`; at last `finish`. As with
/// `VBFFile` a stack belongs to the file from its `commit_stack` on, whatever happens later.
///
/// Footers are written in full length; their lengths, counts and positions become those of what is
/// written. A stack of format version 0 gets none.
///
/// The file is not owned and must outlive the writer; one thread at a time.
class VRELIO_EXPORT RecordWriter {
 public:
  /// What is handed to `write`.
  enum class Samples {
    stored,  ///< the bytes of a data area as they are, to which the record's flush positions belong
    plain    ///< samples, which are stored as the record's compression type and level say
  };

  /// A flush block size that is chosen as for a stack of `VBFFile`.
  static constexpr u64 automatic_flush_block_size = ~u64{0};

  /// Write the header of a file at the current position.
  /// \param file    open for writing.
  /// \param record  format version and description count.
  /// \throws VrelError "String too long!" (-1), and what the file raises.
  RecordWriter(VFile& file, const FileRecord& record);
  RecordWriter(const RecordWriter&) = delete;
  RecordWriter& operator=(const RecordWriter&) = delete;

  /// Write the header of a stack, whose samples come next.
  /// \param stack  all but the positions, the lengths and counts counts; of its flush table the
  ///   positions count for `Samples::stored`, and the block size for both.
  /// \param form   what `write` takes.
  /// \throws VrelError "Stack header not in vbf format!" (-4) for a rank above 15; "Stack record does not
  ///   fit its sizes!" (-1) unless there is a label for each dimension, and none or one entry for each
  ///   column; "The product exceeds the maximum size." (-1); "Tag keys cannot be empty!" (-1); "String
  ///   too long!" (-1); and what the file raises.
  void begin_stack(StackRecord stack, Samples form);

  /// Append stored bytes or samples of the stack that was begun.
  /// \param bytes  not null.
  /// \param size   number of bytes, also of samples.
  /// \throws what `VZippedSegment::write` raises.
  void write(const void* bytes, unsigned size);

  /// Write what stands behind the samples, and link the stack.
  /// \throws VrelError "Not enough samples written!" (-1) if plain samples were written, but not as many
  ///   as the sizes say; and what `VZippedSegment::write` and the file raise.
  void commit_stack();

  /// Write the file's dictionary at the current end; at format version 1 there is none.
  /// \throws VrelError "Tag keys cannot be empty!" (-1), and what the file raises.
  void finish(const Dictionary& dictionary);

 private:
  void write_header();
  void open_segment();
  void close_segment();
  void write_footer();
  void correct_and_return(u64 field, u64 value);

  VFile& file_;
  std::uint32_t format_version_;
  u64 link_position_ = 0;
  u64 dictionary_field_ = 0;
  StackRecord stack_;
  Samples form_ = Samples::stored;
  VZippedSegment segment_;
  u64 written_ = 0;
};

}  // namespace Vrel
