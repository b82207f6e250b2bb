// Property trees in XML files, and changes to them.
#pragma once

#include <vrelio/prop/prop.h>

#include <string>

#include "lib/source.h"

namespace Vrel::tool {

/// A tree and the form of the document that it came from.
struct PropertyDocument {
  VProp tree;
  int format;  ///< a `vrel_xml_format`
};

/// Read the document that is the whole of an input.
/// \throws VrelError as `vrel_import_xml`.
PropertyDocument read_property_document(const Source& source);

/// The document as text, with a line end.
/// \throws VrelError as `vrel_export_xml`.
std::string to_xml(const PropertyDocument& document);

/// Set a value by a text of the form PATH=VALUE.
///
/// A value that is there keeps its kind: a number, a bool, a text, or an array of numbers or bools, of which
/// the elements stand with blanks between them and keep their number. A new value is a bool for `true` and
/// `false`, a number where all of the text is one, else a text.
///
/// \throws VrelError (-1) with a message for the user, before anything changes.
void assign(VProp& tree, const std::string& assignment);

}  // namespace Vrel::tool
