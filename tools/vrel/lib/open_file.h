// A file that is open for reading as long as this lives.
#pragma once

#include <string>

namespace Vrel::tool {

class OpenFile {
 public:
  /// \throws VrelError "Could not open file!" (-1) with the system error.
  explicit OpenFile(const std::string& path);
  ~OpenFile();
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;

  int descriptor() const { return descriptor_; }

 private:
  int descriptor_;
};

}  // namespace Vrel::tool
