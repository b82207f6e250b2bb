#include <tinyxml.h>

#include "prop/xml_dom_internal.h"
#include "prop/xml_guard_internal.h"

namespace Vrel::detail {
namespace {

// The XML library has one setting for the process. It stays: putting it back could take away the blanks of
// a document that another thread is parsing.
void keep_blanks() {
  if (TiXmlBase::IsWhiteSpaceCondensed()) TiXmlBase::SetCondenseWhiteSpace(false);
}

// The following or preceding neighbours of the same name.
template <class Step>
std::size_t count_namesakes(const TiXmlElement* element, Step step) {
  std::size_t count = 0;
  for (const TiXmlNode* node = step(*element); node != nullptr; node = step(*node)) {
    if (node->ToElement() != nullptr && node->ValueStr() == element->ValueStr()) ++count;
  }
  return count;
}

}  // namespace

const std::string& Xml_view::name() const { return element_->ValueStr(); }

const char* Xml_view::attribute(const char* name) const { return element_->Attribute(name); }

std::optional<std::string> Xml_view::find_text() const {
  std::optional<std::string> found;
  for (const TiXmlNode* node = element_->FirstChild(); node != nullptr;
       node = node->NextSibling()) {
    if (node->ToText() == nullptr) continue;
    if (found) {
      *found += node->ValueStr();
    } else {
      found = node->ValueStr();
    }
  }
  return found;
}

std::string Xml_view::text() const {
  std::optional<std::string> found = find_text();
  if (!found) throw Xml_error("Text does not exists in the current element");
  return *std::move(found);
}

Xml_view Xml_view::first_child() const { return Xml_view(element_->FirstChildElement()); }

Xml_view Xml_view::next() const { return Xml_view(element_->NextSiblingElement()); }

Xml_view Xml_view::parent() const {
  return Xml_view(element_->Parent()->ToElement());  // none for the document
}

std::size_t Xml_view::count_children() const {
  std::size_t count = 0;
  for (Xml_view child = first_child(); child; child = child.next()) ++count;
  return count;
}

std::string Xml_view::path() const {
  std::string path;
  for (Xml_view element = *this; element; element = element.parent()) {
    path.insert(0, element.step());
  }
  return path;
}

std::string Xml_view::step() const {
  const auto before = count_namesakes(element_, [](auto& node) { return node.PreviousSibling(); });
  const auto behind = count_namesakes(element_, [](auto& node) { return node.NextSibling(); });
  const std::string step = '/' + name();
  return before + behind == 0 ? step : step + '[' + std::to_string(before + 1) + ']';
}

Xml_document::Xml_document(const std::string& text) : document_(std::make_unique<TiXmlDocument>()) {
  check_xml(text);
  document_->SetTabSize(0);
  keep_blanks();
  document_->Parse(text.c_str(), nullptr, TIXML_ENCODING_UTF8);
  if (document_->Error() || !root()) throw Xml_error(document_->ErrorDesc());
}

Xml_document::~Xml_document() = default;

Xml_view Xml_document::root() const { return Xml_view(document_->RootElement()); }

}  // namespace Vrel::detail
