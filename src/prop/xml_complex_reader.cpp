// Reads complex numbers that are written as two values.
#include <complex>
#include <cstddef>
#include <type_traits>

#include "foundation/raise_internal.h"
#include "prop/kind_list_internal.h"
#include "prop/xml_value_reader_internal.h"

namespace Vrel::detail {
namespace {

[[noreturn]] void raise_malformed() { raise(id_plain, "Malformed 'complex' element!"); }

[[noreturn]] void raise_invalid_type() { raise(id_plain, "Invalid type in 'complex' element!"); }

template <class T>
void join(const T& real, const T& imaginary, VProp& value) {
  value.get<std::complex<T>>() = std::complex<T>(real, imaginary);
}

template <class T>
void join(const VProparray<T>& real, const VProparray<T>& imaginary, VProp& value) {
  if (real.count() != imaginary.count()) raise_malformed();
  auto& joined = value.get<VProparray<std::complex<T>>>();
  joined.resize(real.count(), true);
  for (std::size_t i = 0; i < joined.size(); ++i) {
    joined[i] = std::complex<T>(real[i], imaginary[i]);
  }
  joined.set_size(real.get_size(true), VProparrayBase::set_mode_checked);
}

// Kinds that can be parts of a complex kind.
template <class T>
constexpr bool is_part = number_id<T> != 0;
template <class T>
constexpr bool is_part<VProparray<T>> = number_id<T> != 0;

}  // namespace

void Xml_value_reader::read_complex(VProp& value) {
  if (current_.count_children() != 2) raise_malformed();
  const Xml_view first = current_.first_child();
  VProp real;
  VProp imaginary;
  read(first, real);
  read(first.next(), imaginary);
  if (real.get_id() != imaginary.get_id()) {
    raise(id_plain, "Real and imaginary part have different types in 'complex' element!");
  }
  with_kind(
      real.get_id(),
      [&](auto of) {
        using T = typename decltype(of)::type;
        if constexpr (is_part<T>) {
          join(real.get<T>(), imaginary.get<T>(), value);
        } else {
          raise_invalid_type();
        }
      },
      raise_invalid_type);
}

}  // namespace Vrel::detail
