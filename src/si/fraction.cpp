#include <vrelio/si/fraction.h>

#include <cstddef>
#include <cstdint>
#include <utility>

namespace si {
namespace {

// The lower 32 bits of a number.
int wrap(std::int64_t number) { return static_cast<int>(static_cast<std::uint32_t>(number)); }

// Wrapped, so that the sum of two products has room in 64 bits.
std::int64_t product(int left, int right) { return wrap(std::int64_t{left} * right); }

// In 64 bits, where even the least number has a remainder by -1. The result may be negative.
std::int64_t common_divisor(std::int64_t first, std::int64_t second) {
  while (second != 0) first = std::exchange(second, first % second);
  return first;
}

// Reads the digits from `at` on, and moves `at` behind them.
int read_digits(const std::string& text, std::size_t& at) {
  std::uint32_t number = 0;
  for (; at < text.size() && text[at] >= '0' && text[at] <= '9'; ++at) {
    number = number * 10 + static_cast<std::uint32_t>(text[at] - '0');
  }
  return static_cast<int>(number);
}

bool is_at(const std::string& text, std::size_t at, char character) {
  return at < text.size() && text[at] == character;
}

}  // namespace

fraction::fraction(int numerator, int denominator) : num(numerator), den(denominator) { reduce(); }

fraction& fraction::operator*=(const fraction& other) {
  return *this = fraction(wrap(product(num, other.num)), wrap(product(den, other.den)));
}

fraction& fraction::operator/=(const fraction& other) {
  return *this = fraction(wrap(product(num, other.den)), wrap(product(den, other.num)));
}

fraction& fraction::operator+=(const fraction& other) {
  const std::int64_t sum = product(num, other.den) + product(other.num, den);
  return *this = fraction(wrap(sum), wrap(product(den, other.den)));
}

fraction& fraction::operator-=(const fraction& other) {
  const std::int64_t difference = product(num, other.den) - product(other.num, den);
  return *this = fraction(wrap(difference), wrap(product(den, other.den)));
}

void fraction::reduce() {
  if (num == 0) {
    den = 1;
    return;
  }
  // Intended: a divisor below 0 moves the sign; FractionTest.TheSignStaysWhereReducingLeavesIt.
  const std::int64_t divisor = common_divisor(num, den);
  num = wrap(num / divisor);
  den = wrap(den / divisor);
}

bool fraction::parse(const std::string& text) {
  std::size_t at = is_at(text, 0, '(') ? 1 : 0;
  if (at == 1 && text.back() != ')') return false;
  const bool is_negative = is_at(text, at, '-');
  if (is_negative) ++at;
  const int digits = read_digits(text, at);
  num = is_negative ? wrap(-std::int64_t{digits}) : digits;
  if (at == text.size()) {
    den = 1;
    return true;
  }
  // Intended: a whole number in parentheses is none; FractionTest.OtherTextsAreNone.
  if (text[at] != '/') return false;
  const int denominator = read_digits(text, ++at);
  // Intended: a parenthesis may close that was not opened; FractionTest.AParenthesisMayCloseAlone.
  if (is_at(text, at, ')')) ++at;
  if (at != text.size()) return false;
  den = denominator;
  return true;
}

}  // namespace si
