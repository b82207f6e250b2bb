// What the library asks of the operating system's files, by descriptor. One implementation per
// system. Failures leave the reason in the thread's system error.
#pragma once

#include <vrelio/file/file_access.h>

#include <cstddef>
#include <string>

namespace Vrel::detail {

enum class OpenMode { read, create, modify, share };
enum class MoveFrom { start, current, end };

// The answer of `system_move` for a move that the system refuses.
constexpr u64 no_position = ~u64{0};

// Open exclusively: fails while any other descriptor holds the file's lock. `create` makes the
// file, or empties it once the lock is held. A file system without locks is no obstacle. `share`
// reads whoever holds the lock, and takes none. \return the descriptor, or -1.
int system_open(const std::string& name, OpenMode mode);

void system_close(int descriptor);

// \return the new position, or `no_position`.
u64 system_move(int descriptor, u64 offset, MoveFrom from);

// Transfer `size` bytes, going on after interruptions and short transfers. False if that cannot be
// done; at the end of a file the system error is then 0.
bool system_read(int descriptor, void* buffer, std::size_t size);
bool system_write(int descriptor, const void* buffer, std::size_t size);

bool system_remove(const std::string& name);

}  // namespace Vrel::detail
