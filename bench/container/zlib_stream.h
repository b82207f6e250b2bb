// A stack as one bare zlib stream with a full flush behind each block, by system calls alone.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "container/stack_shape.h"

namespace bench {

// Where the stream can be read from, block by block.
using FlushPositions = std::vector<std::uint64_t>;

FlushPositions write_zlib_stream(const std::string& path, const Sample* samples,
                                 std::size_t planes);
// From block `first` on.
void read_zlib_stream(const std::string& path, const FlushPositions& positions, std::size_t first,
                      std::size_t size, unsigned char* bytes);

}  // namespace bench
