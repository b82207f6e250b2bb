// Writes a value as XML text. docs/values.md has the mapping.
#pragma once

#include <vrelio/export.h>
#include <vrelio/json/value.h>

#include <iosfwd>

namespace Json {

/// Write the XML declaration and the elements that a map stands for, without line ends and indentation.
///
/// An entry of the map is an element of that name; an array stands for one element per item. What is null
/// or an empty string stands for none. In an element that is a map, the non-empty keys are its
/// attributes and the empty key is its content. Names are written as they are; text is escaped.
///
/// \param[in] value  a map, or null for a document without elements.
/// \param[out] out  takes the text; after an exception it has an unspecified part of it.
///
/// \throws BadCast "bad cast" if `value` is neither a map nor null; nothing is written.
/// \throws std::invalid_argument "No xml attribute" if an attribute is an array or a map.
/// \throws std::invalid_argument "No xml content" if an array stands where one element's content does.
VRELIO_EXPORT void write_xml(const Value& value, std::ostream& out);

}  // namespace Json
