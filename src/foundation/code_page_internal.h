// Narrow encodings by the numbers that some systems give them.
#pragma once

#include <string>

namespace Vrel::detail {

// The name of a code page as Boost.Locale knows it. Systems that report a codeset by name have no use
// for it.
// Throws std::runtime_error "Unknown codepage N" for a number that the table lacks.
std::string code_page_name(unsigned int number);

}  // namespace Vrel::detail
