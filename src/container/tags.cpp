#include <vrelio/foundation/data_type.h>
#include <vrelio/prop/prop_cast.h>
#include <vrelio/prop/prop_xml.h>

#include <complex>

#include "container/tags_internal.h"
#include "foundation/data_type_list_internal.h"
#include "foundation/raise_internal.h"

namespace Vrel::detail {

namespace {

constexpr int id_value = Vrel::prop_element_id<VProp>;

template <class T>
VProp hold(const void* value) {
  return VProp(*static_cast<const T*>(value));
}

using holder = VProp (*)(const void*);

// Null for a type that no tag has.
holder find_holder(int type) {
  switch (type) {
#define VRELIO_HOLD(id, type, name) \
  case id:                          \
    return hold<type>;              \
  case (id) | complex_flag:         \
    return hold<std::complex<type>>;
    VRELIO_REAL_TYPES(VRELIO_HOLD)
#undef VRELIO_HOLD
    case id_rgb:
      return hold<_s_vrel_RGB>;
    case id_uint32_alias:
      return hold<unsigned int>;
    case id_logical:
      return hold<bool>;
    case id_value:
      return hold<VProp>;
    default:
      return nullptr;
  }
}

holder get_holder(int type) {
  const holder found = find_holder(type);
  if (found == nullptr) raise(id_plain, "Tag type not supported!");
  return found;
}

}  // namespace

std::string make_tag_text(int type, const void* value) {
  std::string text;
  vrel_export_xml(text, get_holder(type)(value), vrel_xml_root);
  return text;
}

void read_tag_text(const std::string& text, int type, void* value) {
  get_holder(type);
  if (type == id_value) {
    vrel_import_xml(text, *static_cast<VProp*>(value), vrel_xml_any);
    return;
  }
  VProp held;
  vrel_import_xml(text, held, vrel_xml_any);
  vrel_prop_cast(held, value, type == id_uint32_alias ? id_uint32 : type);
}

}  // namespace Vrel::detail
