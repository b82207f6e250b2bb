#include "lib/unit_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <nlohmann/json.hpp>

#include "lib/printable_text.h"
#include "lib/utf8.h"

namespace Vrel::tool {

namespace {

using nlohmann::json;

constexpr int shown_digits = 15;
constexpr char micro_byte = '\xB5';
constexpr const char* micro_sign = "\xC2\xB5";

bool is_micro(char32_t code) { return code == 0xB5 || code == 0x3BC; }

// As the library reads it: one byte per character.
std::optional<std::string> to_bytes(std::string_view text) {
  std::string bytes;
  while (!text.empty()) {
    const std::size_t length = utf8_sequence_length(text);
    if (length == 1) {
      bytes += text.front();
    } else if (length != 0 && is_micro(decode_utf8(text.substr(0, length)))) {
      bytes += micro_byte;
    } else {
      return std::nullopt;
    }
    text.remove_prefix(length);
  }
  return bytes;
}

std::string to_utf8(std::string_view bytes) {
  std::string text;
  for (const char byte : bytes) {
    if (byte == micro_byte) {
      text += micro_sign;
    } else {
      text += byte;
    }
  }
  return text;
}

// "1.50e3" is "1.5e3", and "2.000" is "2".
std::string without_zeros_at_end(const std::string& number) {
  if (number.find('.') == std::string::npos) return number;
  const std::size_t end = std::min(number.find('e'), number.size());
  std::string digits = number.substr(0, end);
  digits.erase(digits.find_last_not_of('0') + 1);
  if (digits.back() == '.') digits.pop_back();
  return digits + number.substr(end);
}

std::string number_text(double number) {
  return without_zeros_at_end(si::value(number).format(shown_digits, si::format_plain));
}

// "inf" and "nan" are read too; what passes a double only by its rounding counts as infinite.
double to_double(const std::string& number) {
  double read = std::numeric_limits<double>::infinity();
  std::from_chars(number.data(), number.data() + number.size(), read);
  return read;
}

json exponents_json(const si::exponent_list& exponents) {
  json pairs = json::array();
  for (const si::fraction& exponent : exponents) {
    pairs.push_back(json::array({exponent.num, exponent.den}));
  }
  return pairs;
}

std::string exponent_text(const si::fraction& exponent) {
  const std::string numerator = std::to_string(exponent.num);
  if (exponent.den != 1) return "^(" + numerator + '/' + std::to_string(exponent.den) + ')';
  return exponent.num == 1 ? "" : '^' + numerator;
}

si::value to_value(const UnitRecord& unit) {
  si::exponent_list exponents;
  for (std::size_t i = 0; i < exponents.size(); ++i) {
    exponents[i].num = unit.exponents[i].numerator;
    exponents[i].den = unit.exponents[i].denominator;
  }
  return si::value(unit.factor, exponents);
}

}  // namespace

std::optional<si::value> read_value(std::string_view text) {
  const std::optional<std::string> bytes = to_bytes(text);
  if (!bytes) return std::nullopt;
  const si::value read(*bytes);
  if (!read.is_valid()) return std::nullopt;
  return read;
}

Quantity to_quantity(const si::value& shown) {
  std::string number;
  std::string unit;
  shown.format(number, unit, shown_digits, si::format_separate | si::format_prefix);
  return {without_zeros_at_end(number), to_utf8(unit)};
}

Quantity to_quantity(const si::value& shown, const si::value& unit, const std::string& name) {
  return {number_text(shown.value_in_baseunits() / unit.value_in_baseunits()), name};
}

std::string to_text(const Quantity& quantity) {
  if (quantity.unit.empty()) return quantity.number;
  return quantity.number + ' ' + printable(quantity.unit);
}

std::string to_json(const Quantity& quantity, const si::value& shown) {
  const json object = {{"number", to_double(quantity.number)},
                       {"unit", quantity.unit},
                       {"factor", shown.value_in_baseunits()},
                       {"exponents", exponents_json(shown.exponents())}};
  return object.dump() + '\n';
}

std::string to_base_units(const si::exponent_list& exponents) {
  constexpr std::array<const char*, si::dimension_count> names = {"m",   "kg", "s",   "A", "K",
                                                                  "mol", "cd", "rad", "sr"};
  std::string text;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (exponents[i] == si::fraction()) continue;
    if (!text.empty()) text += '*';
    text += names[i] + exponent_text(exponents[i]);
  }
  return text.empty() ? "1" : text;
}

std::string to_text(const UnitRecord& unit) {
  const Quantity quantity = to_quantity(to_value(unit));
  const bool is_named = quantity.number == "1" && !quantity.unit.empty();
  return is_named ? quantity.unit : to_text(quantity);
}

}  // namespace Vrel::tool
