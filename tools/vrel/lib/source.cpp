#include "lib/source.h"

#include <unistd.h>
#include <vrelio/foundation/error.h>

#include <cerrno>

namespace Vrel::tool {

Source read_descriptor(int descriptor) {
  return [descriptor](char* buffer, std::size_t size) {
    while (true) {
      const ssize_t count = ::read(descriptor, buffer, size);
      if (count >= 0) return static_cast<std::size_t>(count);
      if (errno != EINTR) throw VrelError().do_oserr()("Could not read!");
    }
  };
}

}  // namespace Vrel::tool
