#include "lib/output_file.h"

#include <utility>

#include "lib/error_report.h"

namespace Vrel::tool {

OutputFile::OutputFile(std::string path, bool replace) : file_(std::move(path), replace) {}

void OutputFile::write(const void* data, std::size_t size) {
  if (!write_all(file_.descriptor(), data, size)) {
    raise_output_error(file_.path(), "Could not write!");
  }
}

void OutputFile::finish() { file_.finish(); }

}  // namespace Vrel::tool
