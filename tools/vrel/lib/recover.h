// What can be saved of a file whose writer died, or that was damaged.
#pragma once

#include <vrelio/file/file.h>

#include <string>
#include <vector>

namespace Vrel::tool {

/// What a recovery has done.
struct RecoverReport {
  std::vector<std::string> saved;    ///< a line for each stack of the new file, in its order
  std::vector<std::string> missing;  ///< a line for each thing that the file promises and has not
  std::vector<std::string> notes;    ///< what else is worth knowing
};

/// Write all that can be saved to a new file.
///
/// Whole stacks keep every field and their stored bytes. Of a stack that was cut off, all whole steps of
/// its last axis are saved, compressed anew where they were compressed. Stacks that no link reaches
/// come behind the others, in the order of their places.
///
/// \param replace  whether the output may be there already.
/// \throws VrelError "No VBF file header found!" (-4) and "Failed reading %d bytes from file!" (-3) if
///   there is neither a header nor a stack; what the system refuses; OutputError.
RecoverReport recover(VFile& file, const std::string& output, bool replace);

}  // namespace Vrel::tool
