// Reads any bytes as a physical value, writes it, and reads what was written.
//
// Input: flags, count of digits (2 bytes), the text.
#include <vrelio/si/value.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

constexpr std::size_t head_size = 3;

int digits_of(const std::uint8_t* data) {
  return static_cast<std::int16_t>(static_cast<std::uint16_t>(data[0] | data[1] << 8));
}

void require(bool holds) {
  if (!holds) std::abort();
}

// The least number has no absolute value, and with a denominator of 0 there is no worth.
bool is_plain(const si::fraction& exponent) {
  return exponent.den != 0 && exponent.num != INT_MIN && exponent.den != INT_MIN;
}

// A unit without prefix names the exponents again.
void check_unit(const si::value& shown) {
  std::string number, unit;
  shown.format(number, unit, 15, si::format_separate);
  const si::exponent_list& exponents = shown.exponents();
  if (!std::all_of(exponents.begin(), exponents.end(), is_plain)) return;
  if (!unit.empty()) require(si::value(unit).exponents() == exponents);
  if (std::isfinite(shown.value_in_baseunits())) require(si::value(number).is_dimensionless());
}

void run(int flags, int digits, const std::string& text) {
  const si::value read(text);
  if (!read.is_valid()) require(read.value_in_baseunits() == 1.0);
  const std::string written = read.format(digits, flags);
  require(si::value(written).format(digits, flags).size() < 4096);
  if (read.is_valid()) check_unit(read);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < head_size) return 0;
  const std::string text(reinterpret_cast<const char*>(data) + head_size, size - head_size);
  run(data[0], digits_of(data + 1), text);
  return 0;
}
