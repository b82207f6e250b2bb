#include <vrelio/foundation/data_type.h>

#include "foundation/data_type_list_internal.h"
#include "foundation/name_table_internal.h"

namespace Vrel::detail {
namespace {

#define VRELIO_NAMES(id, type, name) {id, #name}, {id | complex_flag, "cplx_" #name},
constexpr name_row rows[] = {{id_logical, "logical"},
                             {id_logical | complex_flag, "cplx_logical"},
                             VRELIO_REAL_TYPES(VRELIO_NAMES){0x4000, "cell"},
                             {0x8000, "struct"},
                             {0x20000, "char"},
                             {0, "none"}};
#undef VRELIO_NAMES

constexpr name_table names(rows, ~array_flag);

}  // namespace
}  // namespace Vrel::detail

using namespace Vrel::detail;

int vrel_dt_get_size(int id) {
  switch (id) {
#define VRELIO_SIZES(row_id, type, name) \
  case row_id:                           \
    return sizeof(type);                 \
  case row_id | complex_flag:            \
    return 2 * sizeof(type);
    VRELIO_REAL_TYPES(VRELIO_SIZES)
#undef VRELIO_SIZES
    case id_rgb:
      return sizeof(_s_vrel_RGB);
    case id_uint32_alias:
      return sizeof(unsigned int);
    case id_logical:
      return sizeof(bool);
    default:
      return 0;
  }
}

const char* vrel_dt_get_name(int id) { return names.get_name(id); }

int vrel_dt_from_name(const char* name) { return name ? names.get_id(name) : 0; }
