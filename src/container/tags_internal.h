// Tags that are values: their text, and back.
#pragma once

#include <string>

namespace Vrel::detail {

// The XML text of the value of this type. Raises "Tag type not supported!" (-1), and as
// `vrel_export_xml`.
std::string make_tag_text(int type, const void* value);

// The value of this type that an XML text stands for. Raises "Tag type not supported!" (-1), and as
// `vrel_import_xml` and `vrel_prop_cast`.
void read_tag_text(const std::string& text, int type, void* value);

}  // namespace Vrel::detail
