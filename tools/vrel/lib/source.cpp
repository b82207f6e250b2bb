#include "lib/source.h"

#include <unistd.h>
#include <vrelio/foundation/error.h>

#include <cerrno>
#include <memory>

#include "lib/open_file.h"

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

Source open_source(const std::string& path) {
  if (path == "-") return read_descriptor(STDIN_FILENO);
  const auto file = std::make_shared<const OpenFile>(path);
  return [file, read = read_descriptor(file->descriptor())](char* buffer, std::size_t size) {
    return read(buffer, size);
  };
}

}  // namespace Vrel::tool
