// Reads documents of property values.
#include <vrelio/prop/prop_xml.h>

#include "foundation/raise_internal.h"
#include "prop/xml_attributes_internal.h"
#include "prop/xml_dom_internal.h"
#include "prop/xml_form_internal.h"
#include "prop/xml_value_reader_internal.h"

using namespace Vrel::detail;

namespace {

bool has_root_version(Xml_view root) {
  const int version = find_integer(root, xml_version_attribute).value_or(0);
  if (version > xml_version) raise(id_plain, "Xml input of newer version than library!");
  if (version == xml_version) return true;
  const char* const old_version = root.attribute(xml_old_version_attribute);
  return old_version != nullptr && *old_version != '\0';
}

Xml_view value_in_data(Xml_view root) {
  const Xml_view version = root.first_child();
  if (!version || version.name() != xml_data_version_name) {
    throw Xml_error("Element 'LVData' does not begin with 'Version'");
  }
  version.text();
  if (!version.next()) throw Xml_error("Element 'LVData' has no value");
  return version.next();
}

// The element of the value.
Xml_view find_value(Xml_view root, int format) {
  int detected = vrel_xml_any;
  Xml_view value = root;
  if (has_root_version(root)) {
    detected = vrel_xml_root;
  } else if (root.name() == xml_data_name) {
    detected = vrel_xml_data;
    value = value_in_data(root);
  }
  if (detected == vrel_xml_any && format == vrel_xml_any) {
    raise(id_plain, "Could not determine xml format!");
  }
  if (detected != vrel_xml_any && format != vrel_xml_any && format != detected) {
    raise(id_plain, "Specified format does not match the xml string!");
  }
  return value;
}

void read_value(Xml_view element, VProp& value) {
  Xml_value_reader reader;
  try {
    reader.read(element, value);
  } catch (const VrelError& error) {
    const std::string message = error.get_msg();
    raise(id_plain, "%s\nLocation:\n%s", message.c_str(), reader.current().path().c_str());
  }
}

}  // namespace

void vrel_import_xml(const std::string& xml, VProp& value, int flags) {
  try {
    const Xml_document document(xml);
    read_value(find_value(document.root(), flags & xml_format_mask), value);
  } catch (const Xml_error& error) {
    raise(id_plain, "Error parsing XML properties:\n%s", error.what());
  }
}
