#include "support/golden.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "support/source_tree.h"

namespace Vrel::testing {

namespace {

std::filesystem::path folder() { return source_path("tests/golden"); }

}  // namespace

std::string golden(const std::string& name) {
  std::ifstream file(folder() / (name + ".vbf"), std::ios::binary);
  if (!file) throw std::runtime_error("no golden file " + name);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::string> golden_names() {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder())) {
    if (entry.path().extension() == ".vbf") names.push_back(entry.path().stem().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace Vrel::testing
