// Takes a document from the front.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

#include "prop/xml_characters_internal.h"
#include "prop/xml_error_internal.h"

namespace Vrel::detail {

/// A text and a place in it.
class Xml_scanner {
 public:
  explicit Xml_scanner(std::string_view text) : text_(text) {}

  std::size_t place() const { return at_; }
  bool is_at_end() const { return at_ == text_.size(); }
  void go_to(std::size_t place) { at_ = place; }

  /// The next byte; behind the end a zero byte.
  char peek() const { return at_ < text_.size() ? text_[at_] : '\0'; }

  std::string_view between(std::size_t begin, std::size_t end) const {
    return text_.substr(begin, end - begin);
  }

  /// Where a byte comes next.
  /// \throws Xml_error if it does not.
  std::size_t find(char c, const char* otherwise) const {
    const std::size_t found = text_.find(c, at_);
    require(found != std::string_view::npos, otherwise);
    return found;
  }

  bool take(std::string_view expected) {
    if (text_.compare(at_, expected.size(), expected) != 0) return false;
    at_ += expected.size();
    return true;
  }

  bool skip_blanks() {
    const std::size_t begin = at_;
    while (is_xml_blank(peek())) ++at_;
    return at_ != begin;
  }

  void skip_behind(std::string_view end, const char* otherwise) {
    const std::size_t found = text_.find(end, at_);
    require(found != std::string_view::npos, otherwise);
    at_ = found + end.size();
  }

  std::string_view take_name() {
    require(is_xml_name_start(peek()), "A tag has no name");
    return take_name_bytes();
  }

  std::string_view take_name_bytes() {
    const std::size_t begin = at_;
    while (is_xml_name_byte(peek())) ++at_;
    return between(begin, at_);
  }

  [[noreturn]] void fail(const char* what) const {
    const auto line = 1 + std::count(text_.begin(), text_.begin() + at_, '\n');
    throw Xml_error(std::string(what) + " (line " + std::to_string(line) + ")");
  }

  void require(bool condition, const char* otherwise) const {
    if (!condition) fail(otherwise);
  }

 private:
  std::string_view text_;
  std::size_t at_ = 0;
};

/// Pass the references up to a place, and go there.
/// \throws Xml_error if one is not well-formed, or is neither to a character nor to one of the five
///   entities that XML has by itself.
void check_xml_references(Xml_scanner& scanner, std::size_t end);

/// Pass what begins with `<?` or `<!` outside of the root element, the first of the two taken.
/// \throws Xml_error if the XML library could find another end than the next `>`, and for what is no
///   instruction, declaration or document type, or may not stand behind the start of the root.
void check_xml_prolog(Xml_scanner& scanner, bool is_behind_root);

}  // namespace Vrel::detail
