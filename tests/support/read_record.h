// What a VBF file of these bytes holds.
#pragma once

#include <vrelio/container/chain.h>

#include <string>

#include "support/memory_file.h"

namespace Vrel::testing {

inline FileRecord read_record(const std::string& bytes) {
  MemoryFile file(bytes);
  FileRecord record;
  read_chain(file, record);
  return record;
}

}  // namespace Vrel::testing
