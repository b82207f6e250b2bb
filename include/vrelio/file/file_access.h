// The stream interface that a file and a compressed segment share, with the two string forms of the
// container format.
#pragma once

#include <vrelio/export.h>
#include <vrelio/foundation/integers.h>

#include <string>

/// A stream of bytes with one position. One thread at a time.
class VRELIO_EXPORT VFileAccess {
 public:
  /// Slot 1. The current position.
  virtual u64 tell() const = 0;
  /// Slot 2. Move to an absolute position and return the position reached.
  virtual u64 seek(u64 position) = 0;
  /// Slot 3. Read exactly `size` bytes, or raise.
  virtual void read(void* buffer, unsigned size) = 0;
  /// Slot 4. Write exactly `size` bytes, or raise.
  virtual void write(const void* buffer, unsigned size) = 0;

  /// Write the bytes of a text, without a terminator; before them its length as 32 bits,
  /// little-endian, if `with_length` is true.
  /// \throws VrelError "String too long!" (-1), before anything is written, if the length
  ///         does not fit 32 bits.
  void write_str(const std::string& text, bool with_length);

  /// Read a text of `length` bytes; a length of 0xFFFFFFFF means that its length stands before it
  /// as 32 bits, little-endian.
  ///
  /// A length of 0 empties the text and reads nothing. Memory is taken in steps while the bytes
  /// arrive, so that a length that the stream cannot hold costs no more than what it holds.
  void read_str(std::string& text, unsigned length);

 protected:
  VFileAccess() = default;
  /// \cond
  VFileAccess(const VFileAccess&) = default;
  VFileAccess& operator=(const VFileAccess&) = default;
  ~VFileAccess() = default;
  /// \endcond
};
