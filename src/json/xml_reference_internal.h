// The characters that XML text holds under a name, between an ampersand and a semicolon.
#pragma once

#include <algorithm>
#include <array>
#include <string_view>

namespace Json::detail {

struct XmlReference {
  std::string_view name;
  char character;
};

constexpr std::array<XmlReference, 5> xml_references = {
    {{"lt", '<'}, {"gt", '>'}, {"amp", '&'}, {"apos", '\''}, {"quot", '"'}}};

/// The reference of this name; null if there is none.
inline const XmlReference* find_xml_reference(std::string_view name) {
  const auto* const found =
      std::find_if(xml_references.begin(), xml_references.end(),
                   [name](const XmlReference& reference) { return reference.name == name; });
  return found == xml_references.end() ? nullptr : found;
}

/// The reference that stands for this character; null for a character that stands for itself.
inline const XmlReference* find_xml_reference(char character) {
  const auto* const found = std::find_if(
      xml_references.begin(), xml_references.end(),
      [character](const XmlReference& reference) { return reference.character == character; });
  return found == xml_references.end() ? nullptr : found;
}

}  // namespace Json::detail
