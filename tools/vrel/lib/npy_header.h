// The head of a .npy file of format version 1.0.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace Vrel::tool {

/// Magic, version and the dictionary of an array in C order, padded to a multiple of 64 bytes.
///
/// \param data_type  as for `vrel_dt_get_size`. Integer complex types become records of "re" and
/// "im", an RGB triple one of "r", "g" and "b".
/// \param sizes  the fastest axis first, as in a stack; none for a single sample.
/// \throws VrelError "No .npy type for data type %d!" (-5) for an id without an element size.
std::string npy_header(int data_type, const std::vector<std::uint64_t>& sizes);

}  // namespace Vrel::tool
