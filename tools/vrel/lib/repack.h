// A VBF file written anew, without dead bytes.
#pragma once

#include <vrelio/file/file.h>

#include <optional>
#include <string>

namespace Vrel::tool {

/// What becomes of the samples.
struct RepackOptions {
  std::optional<int> level;             ///< 0 raw, 1 to 9 zlib; as it is if not given
  std::optional<u64> flush_block_size;  ///< of streams, in bytes; as it is if not given
  bool replace = false;                 ///< whether the output may be there already
};

/// Write all stacks of a file and its dictionary to another one, in the order of the chain. All but the
/// storing of samples is kept as it is; where nothing is asked for, that too.
/// \throws VrelError as `read_chain` and `SampleReader`, and OutputError.
void repack(VFile& file, const std::string& output, const RepackOptions& options);

}  // namespace Vrel::tool
