#include <vrelio/foundation/data_type.h>

#include <complex>

#include "foundation/data_type_list_internal.h"

using namespace Vrel::detail;

const std::type_info* vrel_dt_get_type(int id) {
  switch (id) {
#define VRELIO_RECORDS(row_id, type, name) \
  case row_id:                             \
    return &typeid(type);                  \
  case row_id | complex_flag:              \
    return &typeid(std::complex<type>);
    VRELIO_REAL_TYPES(VRELIO_RECORDS)
#undef VRELIO_RECORDS
    case id_rgb:
      return &typeid(_s_vrel_RGB);
    case id_uint32_alias:
      return &typeid(unsigned int);
    case id_logical:
      return &typeid(bool);
    default:
      return &typeid(void);
  }
}
