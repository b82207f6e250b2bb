// Plain samples that follow one another in a file or a pipe.
#pragma once

#include <vrelio/file/file_access.h>

#include <memory>
#include <optional>
#include <string>

#include "lib/import_stack.h"
#include "lib/open_file.h"

namespace Vrel::tool {

/// A file that is read from its begin to its end, or standard input.
class SampleStream {
 public:
  /// \param path  "-" for standard input.
  /// \throws VrelError "Could not open file!" (-1) with the system error.
  explicit SampleStream(const std::string& path);

  /// Bytes that are left; nothing for a pipe, which tells no length.
  /// \throws VrelError "Could not read!" (-1) with the system error.
  std::optional<u64> bytes_left() const;

  /// Read as many bytes as there are, up to `size`.
  /// \return their number, less than `size` only at the end.
  /// \throws VrelError "Could not read!" (-1) with the system error.
  std::size_t read_some(void* buffer, std::size_t size);

  /// Read exactly so many bytes.
  /// \throws VrelError "Failed reading %zu bytes from file!" (-3) without system error at the end.
  void read(void* buffer, std::size_t size);

  /// \throws VrelError "%llu bytes of samples are wanted, the file has %llu!" (-4), where the length is
  /// known already.
  void check_length(u64 wanted) const;

  /// Hand over all samples that the stream ends with.
  /// \param is_reversed  whether the numbers have the other byte order.
  /// \throws VrelError as `read`; "The file goes on behind its samples!" (-4).
  void copy_samples(u64 count, int data_type, bool is_reversed, const SampleSink& sink);

 private:
  std::optional<OpenFile> opened_;
  int descriptor_;
};

}  // namespace Vrel::tool
