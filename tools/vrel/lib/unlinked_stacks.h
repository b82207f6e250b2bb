// Stacks that no link reaches.
#pragma once

#include <vrelio/container/records.h>
#include <vrelio/file/file.h>

#include <optional>
#include <vector>

#include "lib/chain_walk.h"
#include "lib/file_extents.h"

namespace Vrel::tool {

/// A stack that was found where nothing else stands.
struct UnlinkedStack {
  WalkedStack stack;
  bool is_whole = false;  ///< or is its writer's work cut off
  u64 limit = 0;          ///< where something else stands, or the file ends
};

/// Looks through the gaps of a file for headers of stacks that hold together in every field. A whole
/// stack has its data, its footer and its sections, and the footer knows its end. The work stays in
/// proportion to the file.
class UnlinkedStacks {
 public:
  UnlinkedStacks(VFile& file, std::vector<Extent> gaps);

  /// The next one, in ascending order of positions.
  std::optional<UnlinkedStack> next();

 private:
  std::optional<u64> find_magic(const Extent& gap);
  std::optional<UnlinkedStack> examine(u64 position, u64 limit);

  VFile& file_;
  u64 budget_;
  std::vector<Extent> gaps_;
  std::size_t gap_ = 0;
  std::vector<char> window_;
  u64 window_begin_ = 0;
};

}  // namespace Vrel::tool
