// Arrays in .npy files of the versions 1 to 3.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "lib/import_stack.h"
#include "lib/sample_stream.h"

namespace Vrel::tool {

/// What the dictionary of a .npy file says.
struct NpyArray {
  int data_type = 0;         ///< as for `vrel_dt_get_size`
  bool is_reversed = false;  ///< whether the high byte of a number comes first
  std::vector<u64> sizes;    ///< the fastest axis first
};

/// Read the dictionary. Truth values are uint8; records of "re" and "im" are integer complex samples.
/// \throws VrelError "Invalid .npy header!" (-4); "No data type for .npy type %s!" (-5).
NpyArray read_npy_dictionary(std::string_view dictionary);

/// The first bytes of every .npy file.
constexpr std::string_view npy_magic = "\x93NUMPY";

/// The one stack of a stream.
/// \throws VrelError as `read_npy_dictionary`, `SampleStream::read`, `count_samples` and
/// `SampleStream::check_length`.
ImportStack open_npy(const std::shared_ptr<SampleStream>& stream);

}  // namespace Vrel::tool
