// The 48 kinds of values, to be gone through: as types, and at run time.
#pragma once

#include <vrelio/foundation/data_type.h>
#include <vrelio/foundation/propstring.h>
#include <vrelio/prop/prop.h>
#include <vrelio/prop/prop_array.h>
#include <vrelio/prop/prop_struct.h>

#include <complex>
#include <memory>
#include <string>
#include <vector>

namespace Vrel::testing {

template <class T>
struct type_tag {
  using type = T;
};

/// Calls with a tag of each of the types.
template <class... T, class Call>
void for_each_type(Call call) {
  (call(type_tag<T>()), ...);
}

template <class Call>
void for_each_real(Call call) {
  for_each_type<unsigned char, char, unsigned short, short, unsigned int, int, float, double,
                unsigned long long, long long>(call);
}

template <class Call>
void for_each_real_and_bool(Call call) {
  for_each_real(call);
  for_each_type<bool>(call);
}

template <class Call>
void for_each_complex(Call call) {
  for_each_real(
      [&call](auto tag) { call(type_tag<std::complex<typename decltype(tag)::type>>()); });
}

/// The numbers and bool.
template <class Call>
void for_each_number(Call call) {
  for_each_real_and_bool(call);
  for_each_complex(call);
}

enum class KindGroup { real, complex, other };

/// A kind with a value of its own, held by a handle and to be written to.
struct Kind {
  int id;
  KindGroup group;
  bool is_array;
  VProp sample;                  ///< 1 or (1,2); as an array with 0 behind it
  std::shared_ptr<void> target;  ///< 0, or an array of two
  VProp (*held)(const void*);    ///< the target as a value
};

template <class T>
Kind make_kind(KindGroup group, bool is_array, const T& sample, const T& target) {
  return {prop_id<T>,
          group,
          is_array,
          VProp(sample),
          std::make_shared<T>(target),
          [](const void* value) { return VProp(*static_cast<const T*>(value)); }};
}

template <class T>
void add_kinds(std::vector<Kind>& kinds, KindGroup group, const T& sample) {
  kinds.push_back(make_kind(group, false, sample, T()));
  VProparray<T> array(2);
  array[0] = sample;
  kinds.push_back(make_kind(group, true, array, VProparray<T>(2)));
}

inline std::vector<Kind> make_every_kind() {
  std::vector<Kind> kinds;
  for_each_real_and_bool([&kinds](auto tag) {
    using T = typename decltype(tag)::type;
    add_kinds(kinds, KindGroup::real, static_cast<T>(1));
  });
  for_each_real([&kinds](auto tag) {
    using T = typename decltype(tag)::type;
    add_kinds(kinds, KindGroup::complex, std::complex<T>(T{1}, T{2}));
  });
  add_kinds(kinds, KindGroup::other, VPropstring(L"1"));
  add_kinds(kinds, KindGroup::other, VPropstruct{{"a", VProp(1)}});
  kinds.push_back(make_kind(KindGroup::other, true, VProparray<VProp>(2), VProparray<VProp>(2)));
  kinds.push_back(make_kind(KindGroup::other, false, _s_vrel_RGB{1, 2, 3}, _s_vrel_RGB{0, 0, 0}));
  return kinds;
}

}  // namespace Vrel::testing
