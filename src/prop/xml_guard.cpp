#include "prop/xml_guard_internal.h"

#include <array>
#include <string_view>

#include "prop/tree_depth_internal.h"
#include "prop/xml_scanner_internal.h"

namespace Vrel::detail {
namespace {

constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";

class Guard {
 public:
  explicit Guard(std::string_view text)
      : text_(text), elements_left_(highest_xml_element_count(text.size())) {
    text_.go_to(valid_xml_length(text));
    text_.require(text_.is_at_end(), "A character is none that a document can hold");
    text_.go_to(0);
  }

  void check() {
    text_.take(byte_order_mark);
    while (!text_.is_at_end()) check_next();
    text_.require(has_root_, "There is no element");
    text_.require(depth_ == 0, "An element has no end");
  }

 private:
  void check_next() {
    if (text_.take("<")) {
      check_markup();
    } else if (depth_ != 0) {
      check_text(text_.find('<', "An element has no end"));
    } else {
      text_.require(text_.skip_blanks(), "There is text outside of the root element");
    }
  }

  void check_markup() {
    if (text_.take("!--")) return check_comment();
    if (text_.take("![CDATA[")) return check_cdata();
    if (text_.take("/")) return check_end_tag();
    const char next = text_.peek();
    if (next != '?' && next != '!') return check_start_tag();
    text_.require(depth_ == 0, "A declaration stands in an element");
    check_xml_prolog(text_, has_root_);
  }

  void check_text(std::size_t end) {
    const bool has_end = text_.between(text_.place(), end).find("]]>") != std::string_view::npos;
    text_.require(!has_end, "A text has the end of a CDATA section");
    check_xml_references(text_, end);
  }

  void check_comment() {
    text_.skip_behind("--", "A comment has no end");
    text_.require(text_.take(">"), "A comment has two hyphens");
  }

  void check_cdata() {
    text_.require(depth_ != 0, "There is text outside of the root element");
    text_.skip_behind("]]>", "A CDATA section has no end");
  }

  void check_start_tag() {
    text_.require(depth_ != 0 || !has_root_, "There is a second root element");
    text_.require(depth_ < highest_depth, "Elements are nested too deep");
    text_.require(elements_left_ != 0, "There are too many elements");
    --elements_left_;
    has_root_ = true;
    open_[depth_++] = text_.take_name();
    check_attributes();
    if (text_.take("/")) --depth_;
    text_.require(text_.take(">"), "A tag has no end");
  }

  void check_end_tag() {
    text_.require(depth_ != 0, "An end tag belongs to no element");
    text_.require(text_.take_name() == open_[depth_ - 1],
                  "An end tag has another name than its element");
    text_.skip_blanks();
    text_.require(text_.take(">"), "A tag has no end");
    --depth_;
  }

  void check_attributes() {
    std::size_t count = 0;
    while (text_.skip_blanks() && is_xml_name_start(text_.peek())) {
      text_.require(++count <= highest_attribute_count, "An element has too many attributes");
      check_attribute();
    }
  }

  void check_attribute() {
    text_.take_name();
    text_.skip_blanks();
    text_.require(text_.take("="), "An attribute has no value");
    text_.skip_blanks();
    const char quote = text_.peek();
    text_.require(quote == '"' || quote == '\'', "The value of an attribute has no quotes");
    text_.go_to(text_.place() + 1);
    const std::size_t end = text_.find(quote, "The value of an attribute has no end");
    const bool has_bracket = text_.between(text_.place(), end).find('<') != std::string_view::npos;
    text_.require(!has_bracket, "The value of an attribute has a bracket");
    check_xml_references(text_, end);
    text_.go_to(end + 1);
  }

  Xml_scanner text_;
  bool has_root_ = false;
  std::size_t elements_left_;
  std::size_t depth_ = 0;
  std::array<std::string_view, highest_depth> open_;  // names of the open elements
};

}  // namespace

void check_xml(const std::string& text) {
  if (text.size() > highest_xml_size) throw Xml_error("The text is larger than 64 MiB");
  Guard(text).check();
}

}  // namespace Vrel::detail
