#include "lib/standard_output.h"

#include <unistd.h>

#include "lib/error_report.h"

namespace Vrel::tool {

void StandardOutput::write(const void* data, std::size_t size) {
  if (!write_all(STDOUT_FILENO, data, size)) {
    raise_output_error("standard output", "Could not write!");
  }
}

}  // namespace Vrel::tool
