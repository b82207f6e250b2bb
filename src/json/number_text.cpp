#include "json/number_text_internal.h"

#include <charconv>
#include <limits>
#include <locale>
#include <sstream>
#include <string>
#include <system_error>

#include "json/ascii_internal.h"

namespace Json::detail {

namespace {

constexpr auto is_sign = [](char c) { return c == '+' || c == '-'; };
constexpr auto is_point = [](char c) { return c == '.'; };
constexpr auto is_exponent_letter = [](char c) { return c == 'e' || c == 'E'; };

// Walks over the parts of a number.
class Scan {
 public:
  explicit Scan(std::string_view text) : text_(text) {}

  std::size_t length() const { return length_; }

  template <class Predicate>
  bool skip_one(Predicate is_wanted) {
    if (length_ == text_.size() || !is_wanted(text_[length_])) return false;
    ++length_;
    return true;
  }

  bool skip_digits() {
    const std::size_t before = length_;
    while (length_ < text_.size() && is_digit(text_[length_])) ++length_;
    return length_ > before;
  }

 private:
  std::string_view text_;
  std::size_t length_ = 0;
};

std::size_t integer_length(std::string_view text) {
  Scan scan(text);
  scan.skip_one(is_sign);
  scan.skip_digits();
  return scan.length();
}

std::size_t decimal_length(std::string_view text) {
  Scan scan(text);
  scan.skip_one(is_sign);
  bool has_digits = scan.skip_digits();
  if (scan.skip_one(is_point) && scan.skip_digits()) has_digits = true;
  if (has_digits && scan.skip_one(is_exponent_letter)) {
    scan.skip_one(is_sign);
    scan.skip_digits();
  }
  return scan.length();
}

// The conversion knows no plus in front.
std::string_view without_plus(std::string_view number) {
  if (!number.empty() && number.front() == '+') number.remove_prefix(1);
  return number;
}

template <class T>
std::errc convert_all(std::string_view number, T& value) {
  const std::string_view bare = without_plus(number);
  const char* const end = bare.data() + bare.size();
  const auto result = std::from_chars(bare.data(), end, value);
  return result.ptr == end ? result.ec : std::errc::invalid_argument;
}

// The fast conversion does not tell a number that is too great from one that is too small.
Extraction<double> extract_out_of_range(std::string_view number) {
  std::istringstream stream{std::string(number)};
  stream.imbue(std::locale::classic());
  double value = 0.0;
  stream >> value;
  return {value, !stream.fail(), number.size()};
}

}  // namespace

Extraction<int> extract_integer(std::string_view text) {
  using Limits = std::numeric_limits<int>;
  const std::string_view number = text.substr(0, integer_length(text));
  int value = 0;
  const std::errc error = convert_all(number, value);
  if (error == std::errc()) return {value, true, number.size()};
  if (error != std::errc::result_out_of_range) return {0, false, number.size()};
  return {number.front() == '-' ? Limits::min() : Limits::max(), false, number.size()};
}

Extraction<double> extract_decimal(std::string_view text) {
  const std::string_view number = text.substr(0, decimal_length(text));
  double value = 0.0;
  const std::errc error = convert_all(number, value);
  if (error == std::errc()) return {value, true, number.size()};
  if (error != std::errc::result_out_of_range) return {0.0, false, number.size()};
  return extract_out_of_range(number);
}

}  // namespace Json::detail
