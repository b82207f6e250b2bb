// The units that texts may name, and the SI prefixes in front of them. docs/units.md shows both.
#pragma once

#include <vrelio/si/value.h>

#include <string>
#include <string_view>
#include <vector>

namespace si {

/// A value with a name: a row of the table.
class unit : public value {
 public:
  unit(const value& worth, int lowest, int highest, const char* symbol)
      : value(worth), min_exp(lowest), max_exp(highest), name(symbol) {}

  int min_exp;       ///< lowest decimal exponent of a prefix that `format` may write
  int max_exp;       ///< highest decimal exponent of a prefix that `format` may write
  std::string name;  ///< the symbol; empty for the unit of numbers
};

namespace detail {

/// All units. The first rows are the base units by dimension; the first row that matches a name or
/// a set of exponents is the one that counts.
const std::vector<unit>& unit_table();

/// The first unit of this name; null if there is none.
const unit* find_unit(std::string_view name);

/// What `read_prefix` gives for a character that is no prefix.
constexpr int no_prefix = 1000;

/// The decimal exponent that a prefix stands for.
int read_prefix(char character);

/// The prefix for a decimal exponent; the byte 0x80 if there is none.
const char* written_prefix(int exponent);

/// 10 to the power of `exponent`: by squaring, and the reciprocal of that below 0. Infinity or 0
/// where a double cannot hold it.
double power_of_ten(int exponent);

}  // namespace detail
}  // namespace si
