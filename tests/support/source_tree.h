// Where the sources and the sample data are.
#pragma once

#include <string>

namespace Vrel::testing {

// The path of a file of the sources, which is named from their root.
std::string source_path(const std::string& relative);

// The folder of sample data; it may not be there.
std::string sample_data_folder();

}  // namespace Vrel::testing
