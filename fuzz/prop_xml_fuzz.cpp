// Any text as property XML: it is read or refused, and what was read is written and read again as the
// same. The first byte chooses the form that is asked for.
#include <vrelio/foundation/error.h>
#include <vrelio/prop/prop_xml.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

void require(bool condition) {
  if (!condition) std::abort();
}

bool read(const std::string& xml, VProp& value, int format) {
  try {
    vrel_import_xml(xml, value, format);
    return true;
  } catch (const VrelError&) {
    return false;
  }
}

bool write(const VProp& value, std::string& xml) {
  try {
    vrel_export_xml(xml, value, vrel_xml_root);
    return true;
  } catch (const VrelError&) {
    return false;
  }
}

// Not-a-numbers equal nothing, so the written text stands for the value.
void require_same_again(const std::string& xml) {
  VProp value;
  require(read(xml, value, vrel_xml_root));
  std::string again;
  require(write(value, again));
  require(again == xml);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  VProp value;
  if (!read(std::string(data + 1, data + size), value, data[0] % 4)) return 0;
  std::string xml;
  if (write(value, xml)) require_same_again(xml);
  return 0;
}
