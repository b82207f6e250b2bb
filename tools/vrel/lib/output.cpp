#include "lib/output.h"

#include <unistd.h>

#include <cerrno>

namespace Vrel::tool {

bool write_all(int descriptor, const void* data, std::size_t size) {
  const char* rest = static_cast<const char*>(data);
  while (size > 0) {
    const ssize_t written = ::write(descriptor, rest, size);
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return false;
    rest += written;
    size -= static_cast<std::size_t>(written);
  }
  return true;
}

}  // namespace Vrel::tool
