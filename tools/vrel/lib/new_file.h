// A new file that appears under its name only when it is whole.
#pragma once

#include <string>

namespace Vrel::tool {

/// Written by way of its descriptor to a temporary name in the folder of the target. `finish` gives
/// it its name; without that, by an error or a signal, nothing is left.
class NewFile {
 public:
  /// \param replace  whether a file of that name may be replaced.
  /// \throws OutputError "Output file exists already, --force replaces it!" or "Could not create
  /// output file!", with the system error.
  NewFile(std::string path, bool replace);
  ~NewFile();
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;

  /// Opened for reading and writing; -1 once the file was finished.
  int descriptor() const { return descriptor_; }
  const std::string& path() const { return path_; }

  /// \throws OutputError as the constructor, also for a file of that name that came up meanwhile;
  /// "Could not write!" with the system error.
  void finish();

 private:
  void check_target() const;
  void create_temporary();
  void close_temporary();
  bool take_name() const;

  std::string path_;
  bool replace_;
  std::string temporary_;
  int descriptor_ = -1;
};

}  // namespace Vrel::tool
