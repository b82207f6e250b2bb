// Where a filter gets its text from.
#pragma once

#include <cstddef>
#include <functional>
#include <string>

namespace Vrel::tool {

/// Fills a part of a buffer with the next bytes and gives their number; 0 at the end.
using Source = std::function<std::size_t(char* buffer, std::size_t size)>;

/// The bytes of a descriptor, one system call for each slice.
/// \throws VrelError "Could not read!" (-1) with the system error.
Source read_descriptor(int descriptor);

/// The bytes of a file, or of standard input for "-".
/// \throws VrelError "Could not open file!" (-1) with the system error, and as `read_descriptor`.
Source open_source(const std::string& path);

}  // namespace Vrel::tool
