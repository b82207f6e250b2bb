// The blocks of shared memory that this system holds; docs/shared_memory.md.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace Vrel::tool {

/// A block as `Vrel::SharedMemory` makes it.
struct SharedBlock {
  std::string id;
  std::uint64_t bytes = 0;
  std::uint32_t user = 0;  ///< the system's number of who made it
  bool is_own = false;     ///< whether that is who runs this program
  std::uint64_t age = 0;   ///< seconds since it was made
  std::vector<int>
      processes;  ///< that map it or hold it open, as far as they can be seen; ascending
};

/// Whether the text is a UUID in lower case with hyphens, as the names of blocks are.
bool is_block_id(std::string_view text);

/// All blocks, by id.
/// \throws VrelError "Could not list shared memory!" (-1) or "Could not list processes!" (-1) with
/// the system error.
std::vector<SharedBlock> list_shared_blocks();

/// Remove the name of a block; who maps it keeps the bytes. Unless told by `force`, only a block of
/// this user that no process uses.
/// \throws VrelError, with the system error that fits but for the first:
/// "No id of a shared memory block!" (-1), whatever `force` says;
/// "No such shared memory block!" (-1);
/// "Shared memory block belongs to another user, --force removes it!" (-1);
/// "Shared memory block is in use by process %d, --force removes its name!" (-1);
/// "Could not list processes!" (-1); "Could not remove shared memory block!" (-1).
void remove_shared_block(const std::string& id, bool force);

/// One line for each block; a line that says so for none.
std::string to_text(const std::vector<SharedBlock>& blocks);

/// One JSON array on one line, with a line end: an object for each block with "id", "bytes", "user",
/// "own", "age" and "processes".
std::string to_json(const std::vector<SharedBlock>& blocks);

}  // namespace Vrel::tool
