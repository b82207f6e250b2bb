// Documents of values as text: one that is the whole of an input, and what makes it fit for output.
#pragma once

#include <vrelio/json/value.h>

#include "lib/output.h"
#include "lib/source.h"

namespace Vrel::tool {

/// Read the one JSON object of an input. Only whitespace may follow it.
/// \throws VrelError (-1) with the reader's text, or with what else is wrong, and the number of the byte
///   at fault, the first being 1.
Json::Object read_json_document(const Source& source);

/// Read the one XML document of an input; see the other function.
Json::Value read_xml_document(const Source& source);

/// Write JSON text and a line end. What strings hold of control characters is escaped, so that every
/// reader of JSON takes it.
void write_json_document(const Json::Value& value, Output& output);

/// Write XML text and a line end.
/// \throws VrelError (-1) before anything is written if there is not exactly one root element, or if a
///   key that is to be a name is none.
/// \throws std::invalid_argument as `Json::write_xml` does.
void write_xml_document(const Json::Object& object, Output& output);

}  // namespace Vrel::tool
