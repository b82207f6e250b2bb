// A stream of bytes into a new file.
#pragma once

#include <string>

#include "lib/new_file.h"
#include "lib/output.h"

namespace Vrel::tool {

class OutputFile : public Output {
 public:
  /// Parameters and errors are those of `NewFile`.
  OutputFile(std::string path, bool replace);

  using Output::write;
  void write(const void* data, std::size_t size) override;
  /// \throws OutputError as `NewFile::finish`.
  void finish() override;

 private:
  NewFile file_;
};

}  // namespace Vrel::tool
