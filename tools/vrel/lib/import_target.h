// The VBF file that stacks are imported into.
#pragma once

#include <vrelio/container/bf_file.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "lib/import_stack.h"
#include "lib/new_file.h"

namespace Vrel::tool {

/// How stacks are stored.
struct StackStorage {
  int level = 1;  ///< 0 raw, 1 to 9 zlib
  std::optional<unsigned>
      flush_size;  ///< bytes between flush points; chosen by the library if not set
};

/// Either a new file, which appears when `finish` was called, or one that stacks are appended to; after
/// one of the two openings.
class ImportTarget {
 public:
  /// Told of the bytes of each piece that was written.
  using Progress = std::function<void(u64 bytes)>;

  ImportTarget(std::string path, const StackStorage& storage);

  /// Begin a new file.
  /// \throws OutputError as `NewFile`.
  void open_new(bool replace);
  /// Append to an existing file, which is locked until the end. Its OME document goes on.
  /// \throws OutputError as `VBFFileInterface::open`; "The OME-XML of the file cannot be read, and
  /// would be lost!" (-4).
  void open_existing();

  /// Write one stack, and describe it in the OME document.
  /// \throws what `ImportStack::read` raises; OutputError where the file cannot be written.
  void add(const ImportStack& stack, const std::string& name, const Progress& progress);

  /// \throws OutputError where the file cannot be written or named.
  void finish();

  /// After a failure: have the OME document of a file that is appended to tell of the stacks that are
  /// complete. Raises nothing.
  void give_up() noexcept;

 private:
  void write_samples(const ImportStack& stack, VBFStackInterface& target, const Progress& progress);

  std::string path_;
  StackStorage storage_;
  std::optional<NewFile> new_file_;  // outlives the object that writes to it
  VBFFile file_;
  std::vector<Json::Value> images_;  // of the stacks that were added
};

}  // namespace Vrel::tool
