#include <algorithm>
#include <vector>

#include "lib/verify_texts.h"

namespace Vrel::tool {

namespace {

bool is_blank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

bool is_name_start(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == ':' ||
         static_cast<unsigned char>(c) >= 0x80;
}

bool is_name(char c) { return is_name_start(c) || (c >= '0' && c <= '9') || c == '-' || c == '.'; }

bool is_forbidden(char c) { return static_cast<unsigned char>(c) < 0x20 && !is_blank(c); }

// Walks over a document once and stops where it is none.
class Scanner {
 public:
  explicit Scanner(std::string_view text) : text_(text) {}

  std::optional<XmlFault> run() {
    take("\xEF\xBB\xBF");
    while (!fault_ && !at_end()) read_item();
    if (!fault_ && !open_.empty())
      fail("the element '" + std::string(open_.back()) + "' is not closed");
    if (!fault_ && !has_root_) fail("there is no element");
    return fault_;
  }

 private:
  bool at_end() const { return place_ >= text_.size(); }
  char here() const { return at_end() ? '\0' : text_[place_]; }

  bool take(std::string_view word) {
    if (text_.substr(place_, word.size()) != word) return false;
    place_ += word.size();
    return true;
  }

  void fail(std::string what) {
    if (!fault_) fault_ = XmlFault{std::min(place_, text_.size()), std::move(what)};
  }

  void skip_blanks() {
    while (!at_end() && is_blank(here())) ++place_;
  }

  void skip_behind(std::string_view end, const char* what) {
    const std::size_t found = text_.find(end, place_);
    if (found == std::string_view::npos) return fail(std::string(what) + " has no end");
    place_ = found + end.size();
  }

  void read_item() {
    if (here() != '<') return read_text();
    if (take("<!--")) return skip_behind("-->", "a comment");
    if (take("<?")) return skip_behind("?>", "an instruction");
    if (take("<!DOCTYPE")) return read_document_type();
    if (take("<![CDATA[")) return read_literal_text();
    if (take("</")) return read_end_tag();
    ++place_;
    read_start_tag();
  }

  void read_literal_text() {
    if (open_.empty()) return fail("text stands outside of the root element");
    skip_behind("]]>", "a CDATA section");
  }

  void read_document_type() {
    if (has_root_) return fail("the document type stands behind the root element");
    has_document_type_ = true;
    int depth = 0;
    for (; !at_end(); ++place_) {
      const char c = here();
      if (c == '"' || c == '\'') {
        const std::size_t end = text_.find(c, place_ + 1);
        if (end == std::string_view::npos) break;
        place_ = end;
      } else if (c == '[' || c == '<') {
        ++depth;
      } else if (c == ']' || (c == '>' && depth > 0)) {
        --depth;
      } else if (c == '>') {
        ++place_;
        return;
      }
    }
    fail("the document type has no end");
  }

  void read_text() {
    for (; !fault_ && !at_end() && here() != '<'; ++place_) {
      if (open_.empty() && !is_blank(here()))
        return fail("text stands outside of the root element");
      check_character();
    }
  }

  void check_character() {
    if (is_forbidden(here())) fail("a control character");
    if (here() == '&') check_reference();
  }

  void check_reference() {
    constexpr std::size_t longest = 64;
    const std::string_view rest = text_.substr(place_ + 1, longest);
    const std::string_view name = rest.substr(0, rest.find(';'));
    const bool is_ended = name.size() < rest.size();
    if (!is_ended || name.empty() || !(name[0] == '#' ? is_number(name) : is_entity(name))) {
      fail("a reference that stands for nothing");
    }
  }

  static bool is_number(std::string_view name) {
    const bool is_hexadecimal = name.size() > 1 && name[1] == 'x';
    const std::string_view digits = name.substr(is_hexadecimal ? 2 : 1);
    const char* const allowed = is_hexadecimal ? "0123456789abcdefABCDEF" : "0123456789";
    return !digits.empty() && digits.find_first_not_of(allowed) == std::string_view::npos;
  }

  bool is_entity(std::string_view name) const {
    if (has_document_type_) return is_name_start(name[0]);
    return name == "amp" || name == "lt" || name == "gt" || name == "quot" || name == "apos";
  }

  std::string_view read_name() {
    const std::size_t begin = place_;
    if (!is_name_start(here())) fail("a name is missing");
    while (!at_end() && is_name(here())) ++place_;
    return text_.substr(begin, place_ - begin);
  }

  void read_end_tag() {
    const std::string_view name = read_name();
    if (fault_) return;
    if (open_.empty() || open_.back() != name) {
      return fail("the end tag '" + std::string(name.substr(0, 100)) + "' closes no element");
    }
    open_.pop_back();
    skip_blanks();
    if (!take(">")) fail("the end tag has no end");
  }

  void read_start_tag() {
    if (open_.empty() && has_root_) return fail("there is a second root element");
    has_root_ = true;
    const std::string_view name = read_name();
    std::vector<std::string_view> attributes;
    while (!fault_) {
      const bool is_apart = is_blank(here());
      skip_blanks();
      if (take("/>")) break;
      if (take(">")) {
        open_.push_back(name);
        break;
      }
      if (!is_apart) fail("the start tag has no end");
      if (!fault_) attributes.push_back(read_attribute());
    }
    check_attributes(attributes);
  }

  std::string_view read_attribute() {
    const std::string_view name = read_name();
    skip_blanks();
    if (!take("=")) fail("the attribute has no value");
    skip_blanks();
    const char quote = here();
    if (quote != '"' && quote != '\'') fail("the attribute has no value");
    for (++place_; !fault_ && here() != quote; ++place_) {
      if (at_end() || here() == '<') return fail("the attribute's value has no end"), name;
      check_character();
    }
    ++place_;
    return name;
  }

  void check_attributes(std::vector<std::string_view>& names) {
    std::sort(names.begin(), names.end());
    if (!fault_ && std::adjacent_find(names.begin(), names.end()) != names.end()) {
      fail("an attribute stands twice");
    }
  }

  std::string_view text_;
  std::size_t place_ = 0;
  std::vector<std::string_view> open_;
  bool has_root_ = false;
  bool has_document_type_ = false;
  std::optional<XmlFault> fault_;
};

}  // namespace

std::optional<XmlFault> find_xml_fault(std::string_view text) { return Scanner(text).run(); }

}  // namespace Vrel::tool
