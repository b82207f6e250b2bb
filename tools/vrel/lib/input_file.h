// A VBF file that is only read.
#pragma once

#include <vrelio/file/file.h>

#include <string>

namespace Vrel::tool {

/// Opened by the tool itself and not locked, so that any number of readers can share it, also with
/// a writer: what was committed never changes again.
class InputFile {
 public:
  /// \throws VrelError "Could not open file!" (-1) with the system error.
  explicit InputFile(const std::string& path);
  ~InputFile();
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;

  VFile& get_file() { return file_; }

 private:
  int descriptor_;
  VFile file_;
};

}  // namespace Vrel::tool
