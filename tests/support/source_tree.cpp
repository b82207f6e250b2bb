#include "support/source_tree.h"

#include <cstdlib>

namespace Vrel::testing {

std::string source_path(const std::string& relative) {
  return std::string(VRELIO_SOURCE_DIR) + '/' + relative;
}

std::string sample_data_folder() {
  const char* const folder = std::getenv("VRELIO_TEST_DATA");
  return folder != nullptr ? folder : source_path("../shared/data");
}

}  // namespace Vrel::testing
