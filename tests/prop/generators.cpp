#include "prop/generators.h"

#include <rapidcheck.h>

#include <iterator>

namespace Vrel::testing {

int number_between(int first, int last) { return *rc::gen::inRange(first, last + 1); }

bool chance(int in) { return number_between(1, in) == 1; }

long long any_integer() { return *rc::gen::arbitrary<long long>(); }

std::vector<double> any_doubles() {
  std::vector<double> numbers;
  for (int count = number_between(0, 20); count > 0; --count) {
    numbers.push_back(*rc::gen::arbitrary<double>());
  }
  return numbers;
}

std::uint64_t any_word() {
  return *rc::gen::resize(rc::kNominalSize, rc::gen::arbitrary<std::uint64_t>());
}

std::uint64_t any_bits() {
  constexpr std::uint64_t sign = 1ULL << 63;
  constexpr std::uint64_t marked[] = {
      0x7FF0ULL << 48, 0xFFF0ULL << 48, 1,          sign,       sign - 1 - (1ULL << 52),
      ~(1ULL << 52),   0x7F800000,      0xFF800000, 0x80000000, 0x7F7FFFFF,
      0xFF7FFFFF};
  const std::uint64_t word = any_word();
  const auto choice = static_cast<std::size_t>(number_between(0, 99));
  return choice < std::size(marked) ? marked[choice] : word;
}

std::string any_text() { return *rc::gen::arbitrary<std::string>(); }

}  // namespace Vrel::testing
