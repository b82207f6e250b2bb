#include "lib/property_document.h"

#include <vrelio/foundation/error.h>
#include <vrelio/prop/prop_xml.h>

#include <vector>

namespace Vrel::tool {

namespace {

// The library refuses more; one byte more is enough to be refused.
constexpr std::size_t highest_size = (std::size_t{64} << 20) + 1;
constexpr std::size_t slice_size = 65536;

std::string read_all(const Source& source) {
  std::string text;
  std::vector<char> slice(slice_size);
  while (text.size() < highest_size) {
    const std::size_t count = source(slice.data(), slice.size());
    if (count == 0) break;
    text.append(slice.data(), count);
  }
  return text;
}

bool is_in_format(const std::string& xml, int format) {
  try {
    VProp tree;
    vrel_import_xml(xml, tree, format);
    return true;
  } catch (const VrelError&) {
    return false;
  }
}

}  // namespace

PropertyDocument read_property_document(const Source& source) {
  const std::string xml = read_all(source);
  PropertyDocument document;
  vrel_import_xml(xml, document.tree, vrel_xml_any);
  document.format = is_in_format(xml, vrel_xml_data) ? vrel_xml_data : vrel_xml_root;
  return document;
}

std::string to_xml(const PropertyDocument& document) {
  std::string xml;
  vrel_export_xml(xml, document.tree, document.format);
  return xml + '\n';
}

}  // namespace Vrel::tool
