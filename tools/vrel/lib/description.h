// All that a file says about itself, as far as it can be read.
#pragma once

#include <vrelio/container/records.h>
#include <vrelio/file/file_access.h>
#include <vrelio/foundation/error.h>

#include <optional>

namespace Vrel::tool {

/// A damaged file still has the stacks in front of the damage.
struct Description {
  FileRecord file;
  std::optional<VrelError> error;

  /// False where not even the file header could be read.
  bool has_header() const { return file.header_end != 0; }
};

/// Read all but the samples; what is wrong with the file is told in the result.
Description read_description(VFileAccess& file);

/// The stack of this index, from 0.
/// \throws the file's error if it is what hides the stack; VrelError "Invalid stack index %d!" (-6)
/// if there is no such stack.
const StackRecord& choose_stack(const Description& description, u64 index);

}  // namespace Vrel::tool
