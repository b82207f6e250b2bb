// A VBF file that is only read.
#pragma once

#include <vrelio/file/file.h>

#include <string>

#include "lib/open_file.h"

namespace Vrel::tool {

/// Opened by the tool itself and not locked, so that any number of readers can share it, also with
/// a writer: what was committed never changes again.
class InputFile {
 public:
  /// \throws VrelError "Could not open file!" (-1) with the system error.
  explicit InputFile(const std::string& path);

  VFile& get_file() { return file_; }

 private:
  OpenFile opened_;
  VFile file_;
};

}  // namespace Vrel::tool
