// The one list of what a property value holds: 48 kinds. Holders, comparison, conversion and text follow
// from it.
#pragma once

#include <vrelio/foundation/data_type.h>
#include <vrelio/foundation/propstring.h>
#include <vrelio/prop/kind.h>
#include <vrelio/prop/prop.h>
#include <vrelio/prop/prop_array.h>
#include <vrelio/prop/prop_struct.h>

#include <complex>

#include "foundation/data_type_list_internal.h"

namespace Vrel::detail {

constexpr int id_none = 0;
constexpr int id_cell = 0x4000;
constexpr int id_struct = 0x8000;
constexpr int id_text = 0x20000;
constexpr int id_cell_array = id_cell | array_flag;
constexpr int id_struct_array = id_struct | array_flag;
constexpr int id_text_array = id_text | array_flag;

/// Stands for a kind where a function is chosen by its type.
template <class T>
struct kind {
  using type = T;
};

/// What `call` gives for the kind of an id, called with a `kind`; what `otherwise` gives for an id
/// that nothing is held under.
template <class Call, class Otherwise>
decltype(auto) with_kind(int id, Call call, Otherwise otherwise) {
#define VRELIO_CASE(T) \
  case prop_id<T>:     \
    return call(kind<T>())
#define VRELIO_CASES_OF_NUMBER(ignored_id, type, name) \
  VRELIO_CASE(type);                                   \
  VRELIO_CASE(std::complex<type>);                     \
  VRELIO_CASE(VProparray<type>);                       \
  VRELIO_CASE(VProparray<std::complex<type>>);
  switch (id) {
    VRELIO_REAL_TYPES(VRELIO_CASES_OF_NUMBER)
    VRELIO_CASE(_s_vrel_RGB);
    VRELIO_CASE(VPropstruct);
    VRELIO_CASE(bool);
    VRELIO_CASE(VPropstring);
    VRELIO_CASE(VProparray<VProp>);
    VRELIO_CASE(VProparray<VPropstruct>);
    VRELIO_CASE(VProparray<bool>);
    VRELIO_CASE(VProparray<VPropstring>);
    default:
      return otherwise();
  }
#undef VRELIO_CASES_OF_NUMBER
#undef VRELIO_CASE
}

/// What `call` gives for the kind of an id, under which something is held for certain.
template <class Call>
auto with_held_kind(int id, Call call) {
  using Result = decltype(call(kind<int>()));
  return with_kind(id, call, [] { return Result(); });
}

}  // namespace Vrel::detail
