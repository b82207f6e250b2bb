// Loops over types, for what only a template can ask. Keep their bodies small: each is compiled once a type.
#pragma once

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
void for_each_real_and_bool(Call call) {
  for_each_type<unsigned char, char, unsigned short, short, unsigned int, int, float, double,
                unsigned long long, long long, bool>(call);
}

}  // namespace Vrel::testing
