#include "prop/every_kind.h"

#include <vrelio/foundation/data_type.h>
#include <vrelio/foundation/propstring.h>
#include <vrelio/prop/prop_array.h>
#include <vrelio/prop/prop_struct.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <iterator>
#include <ostream>
#include <type_traits>

namespace Vrel::testing {

namespace {

using Number = std::complex<double>;
using Numbers = std::vector<Number>;
using Bits = std::vector<std::uint64_t>;

constexpr int complex_flag = 0x40000000;
constexpr int array_flag = -0x7FFFFFFF - 1;

// --- One number

template <class T>
struct real_of {
  using type = T;
};
template <class T>
struct real_of<std::complex<T>> {
  using type = T;
};
template <class T>
using real_type = typename real_of<T>::type;

template <class T>
constexpr bool is_complex = !std::is_same_v<T, real_type<T>>;

template <class T>
T number_of(const Number& number) {
  using Real = real_type<T>;
  if constexpr (is_complex<T>) {
    return {static_cast<Real>(number.real()), static_cast<Real>(number.imag())};
  } else {
    return static_cast<T>(number.real());
  }
}

template <class T>
T real_of_bits(std::uint64_t bits) {
  if constexpr (!std::is_floating_point_v<T>) {
    return static_cast<T>(bits);
  } else {
    T value;
    std::memcpy(&value, &bits, sizeof value);
    return std::isnan(value) ? T{} : value;
  }
}

template <class T>
T number_of_bits(const std::uint64_t* bits) {
  if constexpr (is_complex<T>) {
    return {real_of_bits<real_type<T>>(bits[0]), real_of_bits<real_type<T>>(bits[1])};
  } else {
    return real_of_bits<T>(bits[0]);
  }
}

// --- Values

template <class T>
VProp array_of(const Numbers& numbers) {
  VProp value;
  auto& array = value.get<VProparray<T>>();
  value.get_arr(true)->resize(static_cast<unsigned int>(numbers.size()), false);
  for (std::size_t i = 0; i < numbers.size(); ++i) array[i] = number_of<T>(numbers[i]);
  return value;
}

template <class T>
VProp array_of_bits(const Bits& bits) {
  VProp value;
  auto& array = value.get<VProparray<T>>();
  value.get_arr(true)->resize(static_cast<unsigned int>(bits.size() / 2), false);
  for (std::size_t i = 0; i < bits.size() / 2; ++i) array[i] = number_of_bits<T>(&bits[2 * i]);
  return value;
}

template <class T>
VProp scalar_of(const Numbers& numbers) {
  return number_of<T>(numbers.front());
}

template <class T>
VProp scalar_of_bits(const Bits& bits) {
  return number_of_bits<T>(bits.data());
}

template <class T>
VProp array_of_two(const T& first, const T& second) {
  VProp value;
  auto& array = value.get<VProparray<T>>();
  value.get_arr(true)->resize(2, false);
  array[0] = first;
  array[1] = second;
  return value;
}

// --- Kinds

template <class T>
Kind make_kind(int id, const std::string& name, KindGroup group) {
  Kind kind{};
  kind.id = id;
  kind.name = name;
  kind.group = group;
  kind.is_array = id < 0;
  kind.type = &typeid(T);
  kind.plain = T();
  kind.read = [](const VProp& value) -> const void* { return &value.get<T>(); };
  kind.write = [](VProp& value) -> void* { return &value.get<T>(); };
  return kind;
}

template <class T>
Kind make_number(int id, const std::string& name, KindGroup group) {
  Kind kind = make_kind<T>(id, name, group);
  kind.of_numbers = scalar_of<T>;
  kind.of_bits = scalar_of_bits<T>;
  kind.sample = kind.of_numbers({{1, 2}});
  kind.changed = kind.of_numbers({is_complex<T> ? Number(1, 3) : Number(0)});
  kind.text = is_complex<T> ? "(1,2)" : "1";
  return kind;
}

template <class T>
Kind make_array(int id, const std::string& name, KindGroup group) {
  Kind kind = make_kind<VProparray<T>>(id | array_flag, name, group);
  kind.of_numbers = array_of<T>;
  kind.of_bits = array_of_bits<T>;
  kind.sample = kind.of_numbers({{1, 2}, 0});
  kind.changed = kind.of_numbers({{1, 2}, is_complex<T> ? Number(0, 1) : Number(1)});
  kind.text = is_complex<T> ? "(1,2) (0,0)" : "1 0";
  return kind;
}

template <class T>
void add_number(std::vector<Kind>& kinds, int id, const std::string& name, KindGroup group) {
  kinds.push_back(make_number<T>(id, name, group));
  kinds.push_back(make_array<T>(id, name, group));
}

template <class T>
void add_number_and_complex(std::vector<Kind>& kinds, int id, const std::string& name) {
  const bool is_integer = std::is_integral_v<T>;
  add_number<T>(kinds, id, name, is_integer ? KindGroup::integer : KindGroup::decimal);
  add_number<std::complex<T>>(kinds, id | complex_flag, "cplx_" + name, KindGroup::complex);
}

Kind with_samples(Kind kind, const VProp& sample, const VProp& changed, const char* text = "") {
  kind.sample = sample;
  kind.changed = changed;
  kind.text = text;
  return kind;
}

void add_others(std::vector<Kind>& kinds) {
  const auto other = KindGroup::other;
  const VPropstring one(L"1\xB5");
  const VPropstring two(L"1\xB6");
  const VPropstruct fields{{"a", VProp(1)}};
  const VPropstruct changed{{"a", VProp(2)}};
  kinds.push_back(
      with_samples(make_kind<VPropstring>(0x20000, "char", other), one, two, "1\xC2\xB5"));
  kinds.push_back(
      with_samples(make_kind<VProparray<VPropstring>>(0x20000 | array_flag, "char", other),
                   array_of_two(one, {}), array_of_two(one, two)));
  kinds.push_back(with_samples(make_kind<VPropstruct>(0x8000, "struct", other), fields, changed));
  kinds.push_back(
      with_samples(make_kind<VProparray<VPropstruct>>(0x8000 | array_flag, "struct", other),
                   array_of_two(fields, fields), array_of_two(fields, changed)));
  kinds.push_back(with_samples(make_kind<VProparray<VProp>>(0x4000 | array_flag, "cell", other),
                               array_of_two<VProp>(1, {}), array_of_two<VProp>(1, 0)));
  kinds.push_back(with_samples(make_kind<_s_vrel_RGB>(0x400, "none", other), _s_vrel_RGB{1, 2, 3},
                               _s_vrel_RGB{1, 2, 4}));
}

std::vector<Kind> make_every_kind() {
  std::vector<Kind> kinds;
  add_number_and_complex<unsigned char>(kinds, 1, "uint8");
  add_number_and_complex<char>(kinds, 2, "int8");
  add_number_and_complex<unsigned short>(kinds, 4, "uint16");
  add_number_and_complex<short>(kinds, 8, "int16");
  add_number_and_complex<unsigned int>(kinds, 16, "uint32");
  add_number_and_complex<int>(kinds, 32, "int32");
  add_number_and_complex<float>(kinds, 64, "single");
  add_number_and_complex<double>(kinds, 128, "double");
  add_number_and_complex<unsigned long long>(kinds, 4096, "uint64");
  add_number_and_complex<long long>(kinds, 8192, "int64");
  add_number<bool>(kinds, 65536, "logical", KindGroup::logical);
  add_others(kinds);
  return kinds;
}

}  // namespace

const std::vector<Kind>& every_kind() {
  static const std::vector<Kind> kinds = make_every_kind();
  return kinds;
}

const Kind& kind_of(int id) {
  return *std::find_if(every_kind().begin(), every_kind().end(),
                       [id](const Kind& kind) { return kind.id == id; });
}

std::vector<Kind> every_numeric_kind() {
  std::vector<Kind> kinds;
  std::copy_if(every_kind().begin(), every_kind().end(), std::back_inserter(kinds),
               [](const Kind& kind) { return kind.is_numeric(); });
  return kinds;
}

std::string full_name(const Kind& kind) { return kind.name + (kind.is_array ? "[]" : ""); }

std::ostream& operator<<(std::ostream& out, const Kind& kind) {
  const auto flags = out.setf(std::ios::hex, std::ios::basefield);
  out << full_name(kind) << " (id 0x" << static_cast<unsigned int>(kind.id) << ')';
  out.flags(flags);
  return out;
}

}  // namespace Vrel::testing
