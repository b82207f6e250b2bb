// The files of tests/golden, written by its make_golden.py, a program that shares nothing with the
// library.
#pragma once

#include <string>
#include <vector>

namespace Vrel::testing {

// The bytes of a golden file, named without its ending.
std::string golden(const std::string& name);

// The names of all of them.
std::vector<std::string> golden_names();

}  // namespace Vrel::testing
