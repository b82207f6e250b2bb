// The rules of texts in the plainest form: recursive, on copies, each range searched anew. The parser
// of the library has to give the same for every text.
#pragma once

#include <vrelio/si/value.h>

#include <cmath>
#include <cstdio>
#include <optional>
#include <string>

namespace si::testing {

class PlainParser {
 public:
  static std::optional<value> parse(const std::string& text) {
    if (text.empty()) return std::nullopt;
    if (text.size() > 1 && text.front() == '(' && text.back() == ')') {
      return parse(text.substr(1, text.size() - 2));
    }
    if (const std::optional<std::size_t> place = last_of("*/", text)) return product(text, *place);
    const std::optional<std::size_t> place = last_of("^", text);
    if (total_depth(text) != 0) return std::nullopt;
    return place ? power(text, *place) : term(text);
  }

 private:
  static std::optional<std::size_t> last_of(const std::string& operators, const std::string& text) {
    int depth = 0;
    for (std::size_t i = text.size(); i-- > 0;) {
      if (text[i] == ')') ++depth;
      if (text[i] == '(') --depth;
      if (depth == 0 && operators.find(text[i]) != std::string::npos) return i;
    }
    return std::nullopt;
  }

  static int total_depth(const std::string& text) {
    int depth = 0;
    for (const char c : text) depth += c == '(' ? 1 : c == ')' ? -1 : 0;
    return depth;
  }

  static std::optional<value> product(const std::string& text, std::size_t place) {
    std::optional<value> left = parse(text.substr(0, place));
    const std::optional<value> right = parse(text.substr(place + 1));
    if (!left || !right) return std::nullopt;
    return text[place] == '*' ? *left *= *right : *left /= *right;
  }

  static std::optional<value> power(const std::string& text, std::size_t place) {
    std::optional<value> left = parse(text.substr(0, place));
    fraction exponent;
    if (!left || !exponent.parse(text.substr(place + 1))) return std::nullopt;
    return *left ^= exponent;
  }

  static bool is_one_of(const std::string& set, const std::string& text, std::size_t at) {
    return at < text.size() && set.find(text[at]) != std::string::npos;
  }

  // Some systems read "1e-" as 1.
  static bool lacks_exponent(const std::string& number) {
    std::size_t at = number.find_first_of("eE");
    if (at == std::string::npos) return false;
    at += is_one_of("+-", number, at + 1) ? 2u : 1u;
    return !is_one_of("0123456789", number, at);
  }

  static std::optional<value> term(const std::string& text) {
    const std::string digits = "0123456789";
    double number = 1.0;
    std::size_t at = 0;
    if (is_one_of(digits + "+-.", text, 0)) {
      if (is_one_of("+-", text, at)) ++at;
      int points = 0, marks = 0;
      for (; is_one_of(digits + ".eE", text, at); ++at) {
        if (text[at] == '.' && ++points > 1) return std::nullopt;
        if (!is_one_of("eE", text, at)) continue;
        if (++marks > 1) break;
        if (!is_one_of(digits + "+-", text, ++at)) return std::nullopt;
      }
      const std::string scanned = text.substr(0, at);
      if (lacks_exponent(scanned)) return std::nullopt;
      if (std::sscanf(scanned.c_str(), "%lf", &number) != 1) return std::nullopt;
    }
    while (is_one_of(" ", text, at)) ++at;
    return quantity(number, text.substr(at));
  }

  struct Unit {
    const char* name;
    value worth;
  };

  // Those of the table that can be spelled with the letters of the tests.
  static std::optional<value> unit(const std::string& name) {
    const Unit units[] = {{"m", {1, {1}}},
                          {"kg", {1, {0, 1}}},
                          {"s", {1, {0, 0, 1}}},
                          {"", {}},
                          {"g", {0.001, {0, 1}}},
                          {"t", {1000, {0, 1}}},
                          {"e", {1.60217733e-19, {0, 0, 1, 1}}}};
    for (const Unit& row : units) {
      if (name == row.name) return row.worth;
    }
    return std::nullopt;
  }

  static std::optional<value> quantity(double number, const std::string& text) {
    if (std::optional<value> whole = unit(text)) return *whole *= number;
    const std::string name = text.substr(1);
    int exponent = 0;
    if (text[0] == 'E') exponent = 18;
    if (text[0] == 'k') exponent = 3;
    if (text[0] == 'h') exponent = 2;
    if (text[0] == 'm') exponent = -3;
    if (exponent == 0 || name == "kg") return std::nullopt;
    if (name == "g" && exponent > 3) return std::nullopt;
    if (name == "t" && exponent < 2) return std::nullopt;
    if (name == "s" && exponent > 0) return std::nullopt;
    value worth = unit(name).value_or(value());
    return worth *= std::pow(10.0, exponent) * number;
  }
};

}  // namespace si::testing
