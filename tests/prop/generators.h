// What properties are checked with, drawn within RC_GTEST_PROP. One file compiles the generators, each of
// which costs a second.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace Vrel::testing {

/// From `first` to `last`, both included.
int number_between(int first, int last);
/// True once in `in` draws.
bool chance(int in);
/// An integer of any size, also negative.
long long any_integer();
/// Some finite numbers of any size.
std::vector<double> any_doubles();
/// 64 bits, of any value each.
std::uint64_t any_word();
/// As `any_word`, with those of infinities, of the least and the greatest numbers, and of -0, as single
/// (in the lower half) and as double, more often than by chance.
std::uint64_t any_bits();
/// Bytes but 0.
std::string any_text();

}  // namespace Vrel::testing
