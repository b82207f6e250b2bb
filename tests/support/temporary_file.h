// A file for one test, gone when the test is over.
#pragma once

#include <string>

namespace Vrel::testing {

class TemporaryFile {
 public:
  // A path in a fresh directory; the file itself does not exist yet.
  TemporaryFile();
  // The same with content.
  explicit TemporaryFile(const std::string& content);
  ~TemporaryFile();
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  const std::string& path() const { return path_; }
  const std::string& directory() const { return directory_; }
  // The path as the library's file classes take it; it is plain ASCII.
  std::wstring name() const { return {path_.begin(), path_.end()}; }
  std::string content() const;
  bool exists() const;

 private:
  std::string directory_;
  std::string path_;
};

}  // namespace Vrel::testing
