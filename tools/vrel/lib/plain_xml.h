// XML text of any make in the form that the library's XML reader takes.
#pragma once

#include <string>
#include <string_view>

namespace Vrel::tool {

/// Stands in front of every attribute and text, so that none is taken for a number or a truth value
/// and each stays as it was.
constexpr char xml_text_mark = 'x';

/// The same document without prolog, comments and blank texts, with its CDATA sections and numeric
/// references as plain characters, and `xml_text_mark` in front of every attribute and text.
///
/// \param skipped  an element, by its name without prefix, that is left out with all that it holds;
///   empty for none.
/// \throws VrelError "Invalid XML!" (-4) for what is no XML, for document types and references to
/// entities of their own, for more than 64 MiB and for a nesting of more than 64 elements.
std::string plain_xml(std::string_view text, std::string_view skipped);

}  // namespace Vrel::tool
