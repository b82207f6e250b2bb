#include <vrelio/prop/prop_cast.h>

#include <string>
#include <type_traits>

#include "foundation/raise_internal.h"
#include "prop/kind_list_internal.h"
#include "prop/number_text_internal.h"
#include "prop/numeric_internal.h"

using namespace Vrel::detail;

namespace {

[[noreturn]] std::string raise_no_text() {
  raise(id_plain, "Conversion of unknown type to string!");
}

[[noreturn]] VProp raise_not_from_text() {
  raise(id_plain, "Conversion of string to invalid type!");
}

template <class T>
std::string text_of(const T& value) {
  if constexpr (std::is_same_v<T, VPropstring>) {
    return value.to(VPropstring::encoding_utf8);
  } else if constexpr (is_numeric_kind<T>) {
    std::string text;
    append_text(text, value);
    return text;
  } else {
    raise_no_text();
  }
}

template <class T>
void read_text(const std::string& text, T& value) {
  if constexpr (std::is_same_v<T, VPropstring>) {
    value.from(text, VPropstring::encoding_utf8);
  } else if constexpr (is_numeric_kind<T>) {
    if (!NumberInput(text).take(value)) value = T();
  } else {
    raise_not_from_text();
  }
}

}  // namespace

std::string vrel_val2string(const VProp& value) {
  return with_kind(
      value.get_id(),
      [&value](auto of) { return text_of(value.get<typename decltype(of)::type>()); },
      raise_no_text);
}

// NOLINTNEXTLINE(readability-non-const-parameter): callers link to this signature
VProp vrel_string2val(std::string& text, int id) {
  return with_kind(
      id,
      [&text](auto of) {
        VProp value;
        read_text(text, value.get<typename decltype(of)::type>());
        return value;
      },
      raise_not_from_text);
}
