#include "lib/input_file.h"

#include <fcntl.h>
#include <unistd.h>
#include <vrelio/foundation/error.h>

namespace Vrel::tool {

namespace {

int open_for_reading(const std::string& path) {
  const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (descriptor == -1) throw VrelError(VrelError().do_oserr()("Could not open file!"));
  return descriptor;
}

}  // namespace

InputFile::InputFile(const std::string& path) : descriptor_(open_for_reading(path)) {
  void* handle = VFile::to_handle(descriptor_);
  file_.attach(handle, VFile::mode_read);
}

InputFile::~InputFile() { ::close(descriptor_); }

}  // namespace Vrel::tool
