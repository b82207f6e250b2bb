// Text on its way to a stream, gathered so that the stream is called once for many pieces.
#pragma once

#include <algorithm>
#include <cstddef>
#include <ostream>
#include <string>
#include <string_view>

namespace Json::detail {

/// Gathers text for a stream. What was not handed over by `finish` is lost.
class TextOutput {
 public:
  explicit TextOutput(std::ostream& out) : out_(out) {}

  void put(char c) {
    text_.push_back(c);
    if (text_.size() >= capacity) hand_over();
  }
  void put(std::string_view text) {
    text_.append(text);
    if (text_.size() >= capacity) hand_over();
  }
  /// A text in which each character that `is_special` is left to `put_special`, which puts something
  /// else.
  template <class IsSpecial, class PutSpecial>
  void put_escaped(std::string_view text, IsSpecial is_special, PutSpecial put_special) {
    while (true) {
      const auto special = std::find_if(text.begin(), text.end(), is_special);
      const auto length = static_cast<std::size_t>(special - text.begin());
      put(text.substr(0, length));
      if (special == text.end()) return;
      put_special(*special);
      text.remove_prefix(length + 1);
    }
  }
  /// "true" or "false".
  void put_boolean(bool boolean) { put(boolean ? std::string_view("true") : "false"); }
  /// Plain decimal digits.
  void put_integer(int integer);
  /// One decimal place where there is no fraction, else up to 10 significant digits, with an exponent
  /// where that is shorter. What is not finite becomes "inf", "-inf", "nan" or "-nan".
  void put_decimal(double decimal);

  /// Give the stream what is left.
  void finish() { hand_over(); }

 private:
  static constexpr std::size_t capacity = 32768;

  void hand_over();

  std::ostream& out_;
  std::string text_;
};

}  // namespace Json::detail
