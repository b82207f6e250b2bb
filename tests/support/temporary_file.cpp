#include "support/temporary_file.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace Vrel::testing {

TemporaryFile::TemporaryFile() {
  std::string pattern = (std::filesystem::temp_directory_path() / "vrelio-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary directory");
  directory_ = pattern;
  path_ = directory_ + "/file";
}

TemporaryFile::TemporaryFile(const std::string& content) : TemporaryFile() {
  std::ofstream(path_, std::ios::binary) << content;
}

TemporaryFile::~TemporaryFile() {
  std::error_code ignored;
  std::filesystem::remove_all(directory_, ignored);
}

std::string TemporaryFile::content() const {
  std::ifstream file(path_, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

bool TemporaryFile::exists() const { return std::filesystem::exists(path_); }

}  // namespace Vrel::testing
