// Checking the XML texts of a file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace Vrel::tool {

/// Where a text stops to be XML, and why.
struct XmlFault {
  std::size_t offset;
  std::string what;
};

/// The first place at which a text is no well-formed XML document; none if it is one. Entities of a
/// document type are not followed. Memory goes with the depth of the elements.
std::optional<XmlFault> find_xml_fault(std::string_view text);

/// What keeps a program from taking the metadata text of a stack; none if nothing does. An empty text
/// is no metadata at all.
/// \param format_version  of the stack: from 3 on the text has to hold a global position.
/// \param rank            of the stack.
std::optional<std::string> find_metadata_fault(const std::string& text,
                                               std::uint32_t format_version, unsigned rank);

}  // namespace Vrel::tool
