// Looks through a text before the XML library, which recurses for each element, parses it.
#pragma once

#include <cstddef>
#include <string>

namespace Vrel::detail {

/// Bytes that a document may have.
constexpr std::size_t highest_xml_size = 64u << 20;
/// Elements that a document of so many bytes may have. The library takes some 220 bytes for an element, which
/// can be written in 4; this library writes none in less than 38.
constexpr std::size_t highest_xml_element_count(std::size_t size) { return 65536 + size / 16; }
/// Attributes that an element may have; the library looks through all of them for each.
constexpr std::size_t highest_attribute_count = 256;

/// Pass documents that have one root, that nest at most `highest_depth` elements, that have not too many of
/// them for their size, and that the library takes for the same elements.
///
/// The library is lenient in ways that hide tags: it takes the bytes behind the start of a broken UTF-8
/// sequence, all between "&#x" and the next ";", and unquoted values. So what is not written in the
/// plain form is refused: well-formed UTF-8; tags of a name and quoted attributes without "<";
/// comments without "--" and CDATA sections; well-formed references, of which the library drops others;
/// declarations and document types without "<" and ">" inside, and only in front of the root;
/// instructions outside of the root.
///
/// \throws Xml_error with the line for everything else. Takes one pass and no memory but for the message.
void check_xml(const std::string& text);

}  // namespace Vrel::detail
