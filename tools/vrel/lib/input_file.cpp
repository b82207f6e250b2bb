#include "lib/input_file.h"

namespace Vrel::tool {

InputFile::InputFile(const std::string& path) : opened_(path) {
  void* handle = VFile::to_handle(opened_.descriptor());
  file_.attach(handle, VFile::mode_read);
}

}  // namespace Vrel::tool
