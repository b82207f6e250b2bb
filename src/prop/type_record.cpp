#include <vrelio/foundation/data_type.h>

#include "prop/kind_list_internal.h"

using namespace Vrel::detail;

namespace {

template <class T>
const std::type_info* record(kind<T>) {
  return &typeid(T);
}

}  // namespace

// Beside what a property value holds: the element of cell arrays, arrays of RGB triples, and an id
// that means another.
const std::type_info* vrel_dt_get_type(int id) {
  if (id == id_cell) return &typeid(VProp);
  if (id == (id_rgb | array_flag)) return &typeid(VProparray<_s_vrel_RGB>);
  if ((id & ~array_flag) == id_uint32_alias) id ^= id_uint32_alias ^ id_uint32;
  return with_kind(
      id, [](auto of) { return record(of); },
      []() -> const std::type_info* { return &typeid(void); });
}
