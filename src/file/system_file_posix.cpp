#include <fcntl.h>
#include <sys/file.h>
#include <sys/types.h>
#include <unistd.h>
#include <cerrno>

#include "file/system_file_internal.h"

static_assert(sizeof(off_t) == 8, "file positions have 64 bits");

namespace Vrel::detail {

namespace {

int flags_of(OpenMode mode) {
  switch (mode) {
    case OpenMode::read:
    case OpenMode::share:
      return O_RDONLY | O_CLOEXEC;
    case OpenMode::create:
      return O_RDWR | O_CREAT | O_CLOEXEC;
    case OpenMode::modify:
      break;
  }
  return O_RDWR | O_CLOEXEC;
}

template <class Call>
auto retry_interrupted(Call call) {
  auto result = call();
  while (result == -1 && errno == EINTR) result = call();
  return result;
}

bool lock_exclusively(int descriptor) {
  const int result = retry_interrupted([&] { return ::flock(descriptor, LOCK_EX | LOCK_NB); });
  return result == 0 || errno == ENOLCK || errno == EOPNOTSUPP;
}

// A device or a pipe has no length to cut; opening it for writing means just that.
bool empty(int descriptor) {
  return retry_interrupted([&] { return ::ftruncate(descriptor, 0); }) == 0 || errno == EINVAL;
}

}  // namespace

int system_open(const std::string& name, OpenMode mode) {
  constexpr mode_t everybody = 0666;  // less what the process's file mode mask takes away
  const int descriptor =
      retry_interrupted([&] { return ::open(name.c_str(), flags_of(mode), everybody); });
  if (descriptor == -1) return -1;
  const bool is_held = mode == OpenMode::share || lock_exclusively(descriptor);
  if (is_held && (mode != OpenMode::create || empty(descriptor))) return descriptor;
  const int reason = errno;
  ::close(descriptor);
  errno = reason;
  return -1;
}

// Not retried: whatever it answers, the descriptor is free, and may already be another thread's.
void system_close(int descriptor) { ::close(descriptor); }

u64 system_move(int descriptor, u64 offset, MoveFrom from) {
  const int whence = from == MoveFrom::start     ? SEEK_SET
                     : from == MoveFrom::current ? SEEK_CUR
                                                 : SEEK_END;
  const off_t position = ::lseek(descriptor, static_cast<off_t>(offset), whence);
  return position == -1 ? no_position : static_cast<u64>(position);
}

bool system_read(int descriptor, void* buffer, std::size_t size) {
  auto* next = static_cast<char*>(buffer);
  while (size > 0) {
    const ssize_t got = ::read(descriptor, next, size);
    if (got == -1 && errno == EINTR) continue;
    if (got == 0) errno = 0;
    if (got <= 0) return false;
    next += got;
    size -= static_cast<std::size_t>(got);
  }
  return true;
}

bool system_write(int descriptor, const void* buffer, std::size_t size) {
  const auto* next = static_cast<const char*>(buffer);
  while (size > 0) {
    const ssize_t put = ::write(descriptor, next, size);
    if (put == -1 && errno == EINTR) continue;
    if (put == 0) errno = 0;
    if (put <= 0) return false;
    next += put;
    size -= static_cast<std::size_t>(put);
  }
  return true;
}

bool system_remove(const std::string& name) { return ::unlink(name.c_str()) == 0; }

}  // namespace Vrel::detail
