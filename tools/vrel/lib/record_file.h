// A new VBF file that is written from records.
#pragma once

#include <vrelio/container/record_writer.h>
#include <vrelio/file/file.h>

#include <functional>
#include <optional>
#include <string>

#include "lib/new_file.h"
#include "lib/progress_bar.h"

namespace Vrel::tool {

/// Has its name only once it is whole; errors of writing are told as errors of this file.
class RecordFile {
 public:
  /// \param replace  whether a file of that name may be replaced.
  /// \param start    format version and description of the file; a version that is not known becomes the
  ///   one that it is read as.
  /// \throws OutputError as `NewFile`, and for whatever cannot be written.
  RecordFile(std::string path, bool replace, const FileRecord& start);
  ~RecordFile();
  RecordFile(const RecordFile&) = delete;
  RecordFile& operator=(const RecordFile&) = delete;

  /// Write a stack with the stored bytes of its data area in `source`.
  void copy_stack(VFile& source, const StackRecord& stack, ProgressBar& progress);

  /// Gives the next samples of a stack; a size of 0 ends them.
  using NextSamples = std::function<unsigned(unsigned char* bytes, unsigned size)>;
  /// Write a stack with plain samples, stored as its record says.
  void write_stack(const StackRecord& stack, const NextSamples& next, ProgressBar& progress);

  /// Write the dictionary and give the file its name.
  void finish(const Dictionary& dictionary);

 private:
  template <class Work>
  void to_output(Work work);

  NewFile file_;
  VFile access_;
  std::optional<RecordWriter> writer_;
};

}  // namespace Vrel::tool
