// The results of a command on standard output.
#pragma once

#include "lib/output.h"

namespace Vrel::tool {

class StandardOutput : public Output {
 public:
  using Output::write;
  void write(const void* data, std::size_t size) override;
  /// Nothing is held back, so there is nothing to do.
  void finish() override {}
};

}  // namespace Vrel::tool
