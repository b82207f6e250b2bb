// Any bytes as a VBF file: its chain is read or refused.
#include <vrelio/container/chain.h>
#include <vrelio/foundation/error.h>

#include <cstddef>
#include <cstdint>
#include <string>

#include "support/memory_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Vrel::testing::MemoryFile file(std::string(data, data + size));
  Vrel::FileRecord record;
  try {
    read_chain(file, record);
  } catch (const VrelError&) {
  }
  return 0;
}
