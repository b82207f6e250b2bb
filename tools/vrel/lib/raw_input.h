// Files of samples without a word about them.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "lib/import_stack.h"
#include "lib/sample_stream.h"

namespace Vrel::tool {

/// What the user says about raw samples.
struct RawLayout {
  std::vector<u64> sizes;  ///< the fastest axis first
  int data_type = 0;
};

/// The sizes in a text such as "133x130x45", "133 x 130 x 45" or "133,130,45", the fastest axis first.
/// Nothing if it is none.
std::optional<std::vector<u64>> read_sizes(const std::string& text);

/// The id of one of the 20 element types of stacks, by its name; 0 if there is none of that name.
int read_type_name(const std::string& name);

/// The one stack of a stream.
/// \throws VrelError as `count_samples` and `SampleStream::check_length`.
ImportStack open_raw(const std::shared_ptr<SampleStream>& stream, const RawLayout& layout);

}  // namespace Vrel::tool
