#include <tinyxml.h>

#include <algorithm>
#include <string_view>
#include <utility>

#include "prop/xml_characters_internal.h"
#include "prop/xml_dom_internal.h"

namespace Vrel::detail {
namespace {

constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";
constexpr std::string_view false_reference = "&#x";

// Whether the library drops a text when it parses it; it takes byte order marks for blanks.
bool is_dropped(std::string_view text) {
  while (!text.empty()) {
    if (text.compare(0, byte_order_mark.size(), byte_order_mark) == 0) {
      text.remove_prefix(byte_order_mark.size());
    } else if (is_xml_blank(text.front())) {
      text.remove_prefix(1);
    } else {
      return false;
    }
  }
  return true;
}

std::unique_ptr<TiXmlText> make_text(const std::string& text) {
  auto node = std::make_unique<TiXmlText>("");
  node->SetValue(text);
  return node;
}

void append_node(TiXmlNode& parent, std::unique_ptr<TiXmlNode> child) {
  parent.LinkEndChild(child.release());
}

}  // namespace

Xml_element::Xml_element(const std::string& name)
    : element_(std::make_unique<TiXmlElement>(name)) {}
Xml_element::Xml_element(Xml_element&& other) noexcept = default;
Xml_element::~Xml_element() = default;

void Xml_element::set_name(const std::string& name) { element_->SetValue(name); }

void Xml_element::set_attribute(const char* name, const std::string& value) {
  element_->SetAttribute(name, value.c_str());
}

// The library's printer takes "&#x" for a reference and leaves it, so such a text goes into several
// nodes, each of which ends with the "&".
void Xml_element::append_text(const std::string& text) {
  std::size_t begin = 0;
  for (std::size_t found = text.find(false_reference); found != std::string::npos;
       found = text.find(false_reference, begin)) {
    append_plain_text(text.substr(begin, found + 1 - begin));
    begin = found + 1;
  }
  append_plain_text(begin == 0 ? text : text.substr(begin));
}

void Xml_element::append_plain_text(const std::string& text) {
  std::unique_ptr<TiXmlText> node = make_text(text);
  node->SetCDATA(!text.empty() && is_dropped(text));
  append_node(*element_, std::move(node));
}

void Xml_element::append(Xml_element child) { append_node(*element_, std::move(child.element_)); }

std::string Xml_element::text() const { return Xml_view(element_.get()).text(); }

std::string Xml_element::print(bool with_declaration) const {
  TiXmlPrinter printer;
  printer.SetStreamPrinting();
  if (with_declaration) TiXmlDeclaration("1.0", "", "yes").Accept(&printer);
  element_->Accept(&printer);
  return printer.Str();
}

}  // namespace Vrel::detail
