// Numbers and bools as text, alone and in arrays, as a stream with the classic locale and 20 digits writes
// and reads them.
#pragma once

#include <vrelio/prop/prop_array.h>

#include <complex>
#include <string>
#include <string_view>

namespace Vrel::detail {

/// Append the text of a real number or of a bool.
template <class T>
void append_number(std::string& out, T number);

template <class T>
void append_text(std::string& out, const T& number) {
  append_number(out, number);
}

template <class T>
void append_text(std::string& out, const std::complex<T>& number) {
  out += '(';
  append_number(out, number.real());
  out += ',';
  append_number(out, number.imag());
  out += ')';
}

template <class T>
void append_text(std::string& out, const VProparray<T>& array) {
  bool is_first = true;
  for (const T element : array) {
    if (!is_first) out += ' ';
    is_first = false;
    append_text(out, element);
  }
}

/// Takes numbers from the front of a text. What cannot be taken leaves the text and the number as they
/// were; an array keeps the elements in front.
class NumberInput {
 public:
  /// Of a text that outlives this.
  explicit NumberInput(std::string_view text) : rest_(text) {}

  /// What was not taken.
  std::string_view rest() const { return rest_; }

  /// A real number or a bool, behind any white space.
  template <class T>
  bool take(T& number);

  /// A complex number in brackets.
  template <class T>
  bool take(std::complex<T>& number) {
    const std::string_view whole = rest_;
    T real{};
    T imaginary{};
    if (skip('(') && take(real) && skip(',') && take(imaginary) && skip(')')) {
      number = {real, imaginary};
      return true;
    }
    rest_ = whole;
    return false;
  }

  /// Elements with blanks between them, up to the first that has none behind it.
  template <class T>
  bool take(VProparray<T>& array) {
    if (rest_.empty()) return true;
    for (;;) {
      T element{};
      if (!take(element)) return false;
      array.push_back(element);
      if (!skip_blanks()) return true;
    }
  }

 private:
  bool skip(char wanted) {
    if (rest_.empty() || rest_.front() != wanted) return false;
    rest_.remove_prefix(1);
    return true;
  }

  bool skip_blanks() {
    if (!skip(' ')) return false;
    while (skip(' ')) {
    }
    return true;
  }

  std::string_view rest_;
};

}  // namespace Vrel::detail
