#include "lib/open_file.h"

#include <fcntl.h>
#include <unistd.h>
#include <vrelio/foundation/error.h>

namespace Vrel::tool {

OpenFile::OpenFile(const std::string& path)
    : descriptor_(::open(path.c_str(), O_RDONLY | O_CLOEXEC)) {
  if (descriptor_ == -1) throw VrelError(VrelError().do_oserr()("Could not open file!"));
}

OpenFile::~OpenFile() { ::close(descriptor_); }

}  // namespace Vrel::tool
