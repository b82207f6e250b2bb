// The one door to the XML library: documents, elements, attributes and texts.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "prop/xml_error_internal.h"

class TiXmlDocument;
class TiXmlElement;

namespace Vrel::detail {

/// An element that is built. It is printed without blanks that nobody wrote, so that what is parsed again
/// is what was put in.
class Xml_element {
 public:
  /// An element that nobody names has this name.
  static constexpr const char* default_name =
      "DefaultValueCausedByCreatingAnElementWithNoParameters";

  explicit Xml_element(const std::string& name = default_name);
  Xml_element(Xml_element&& other) noexcept;
  ~Xml_element();

  void set_name(const std::string& name);
  /// \param value  with none of the characters that have to be escaped.
  void set_attribute(const char* name, const std::string& value);
  /// Add a text, of any characters that a document can hold.
  void append_text(const std::string& text);
  void append(Xml_element child);
  /// The text in it.
  /// \throws Xml_error "Text does not exists in the current element" if no text was added.
  std::string text() const;

  /// The document of this element.
  std::string print(bool with_declaration) const;

 private:
  void append_plain_text(const std::string& text);

  std::unique_ptr<TiXmlElement> element_;
};

/// An element of a document that was parsed, or none. The document has to stay.
class Xml_view {
 public:
  Xml_view() = default;
  explicit Xml_view(const TiXmlElement* element) : element_(element) {}

  explicit operator bool() const { return element_ != nullptr; }

  const std::string& name() const;
  /// Null if there is no attribute of this name.
  const char* attribute(const char* name) const;
  /// All texts in it one after the other; nothing if there are none.
  std::optional<std::string> find_text() const;
  /// \throws Xml_error "Text does not exists in the current element" if there is none.
  std::string text() const;

  Xml_view first_child() const;
  Xml_view next() const;
  Xml_view parent() const;
  std::size_t count_children() const;
  /// The names from the root, such as `/root/item[2]/x`, with the place among the neighbours of the same
  /// name where there are any.
  std::string path() const;

 private:
  std::string step() const;

  const TiXmlElement* element_ = nullptr;
};

/// A document that was parsed.
class Xml_document {
 public:
  /// \throws Xml_error if the text is no document; see `check_xml`.
  explicit Xml_document(const std::string& text);
  ~Xml_document();
  Xml_document(const Xml_document&) = delete;
  Xml_document& operator=(const Xml_document&) = delete;

  Xml_view root() const;

 private:
  std::unique_ptr<TiXmlDocument> document_;
};

}  // namespace Vrel::detail
