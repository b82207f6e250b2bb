// The loops of vrel_dt_convert as templates, to be compiled once per kind of processor.
//
// Everything here has internal linkage and calls no function of the standard library: an inline
// function that is compiled for a new processor and shared by the linker would crash older ones.
#pragma once

#include <cstddef>
#include <type_traits>

#include "foundation/convert_kernels_internal.h"
#include "foundation/convert_value_internal.h"
#include "foundation/data_type_list_internal.h"

namespace Vrel::detail {
namespace {

// Buffers need not be aligned; the compiler turns these copies into single moves.
template <class T>
T load(const unsigned char* address) {
  T value;
  __builtin_memcpy(&value, address, sizeof value);
  return value;
}

template <class T>
void store(unsigned char* address, T value) {
  __builtin_memcpy(address, &value, sizeof value);
}

// Every loop copies the addresses first, which the stores into a buffer could overwrite for all that
// the compiler knows.
template <class From, class To>
struct plain_loop {
  static constexpr bool is_copy = false;
  static void run(const convert_buffers& given, std::size_t count) {
    const convert_buffers buffers = given;
    for (std::size_t i = 0; i < count; ++i) {
      const From value = load<From>(buffers.source + i * sizeof(From));
      store(buffers.destination + i * sizeof(To), convert_value<To>(value));
    }
  }
};

template <class Type>
struct plain_loop<Type, Type> {
  static constexpr bool is_copy = true;
  static void run(const convert_buffers& buffers, std::size_t count) {
    __builtin_memmove(buffers.destination, buffers.source, count * sizeof(Type));
  }
};

template <class From, class To>
struct to_complex_loop {
  static constexpr bool is_copy = false;
  static void run(const convert_buffers& given, std::size_t count) {
    const convert_buffers buffers = given;
    for (std::size_t i = 0; i < count; ++i) {
      const From value = load<From>(buffers.source + i * sizeof(From));
      store(buffers.destination + 2 * i * sizeof(To), convert_value<To>(value));
      store(buffers.destination + (2 * i + 1) * sizeof(To), To{0});
    }
  }
};

template <class From, class To>
struct join_loop {
  static constexpr bool is_copy = false;
  static void run(const convert_buffers& given, std::size_t count) {
    const convert_buffers buffers = given;
    for (std::size_t i = 0; i < count; ++i) {
      const From real = load<From>(buffers.source + i * sizeof(From));
      const From imaginary = load<From>(buffers.source_imaginary + i * sizeof(From));
      store(buffers.destination + 2 * i * sizeof(To), convert_value<To>(real));
      store(buffers.destination + (2 * i + 1) * sizeof(To), convert_value<To>(imaginary));
    }
  }
};

template <class From, class To>
struct split_loop {
  static constexpr bool is_copy = false;
  static void run(const convert_buffers& given, std::size_t count) {
    const convert_buffers buffers = given;
    for (std::size_t i = 0; i < count; ++i) {
      const From real = load<From>(buffers.source + 2 * i * sizeof(From));
      const From imaginary = load<From>(buffers.source + (2 * i + 1) * sizeof(From));
      store(buffers.destination + i * sizeof(To), convert_value<To>(real));
      store(buffers.destination_imaginary + i * sizeof(To), convert_value<To>(imaginary));
    }
  }
};

// Pairs whose results are the same bytes share a loop: an integer that becomes narrower, or only
// changes its sign, loses nothing by being read as unsigned, and the sign of a destination matters
// to no integer source, nor to a floating point source where it has 8 or 16 bits.
template <class Type, bool IsUnsigned>
using unsigned_if =
    typename std::conditional_t<IsUnsigned, std::make_unsigned<Type>, std::common_type<Type>>::type;

template <class From, class To, bool = std::is_integral_v<To>>
struct shared_loop {
  using source = From;
  using destination = To;
};

template <class From, class To>
struct shared_loop<From, To, true> {
  static constexpr bool from_integer = std::is_integral_v<From>;
  using source = unsigned_if<From, from_integer && sizeof(To) <= sizeof(From)>;
  using destination = unsigned_if<To, from_integer || sizeof(To) < sizeof(int)>;
};

template <template <class, class> class Loop, class From, class To>
constexpr convert_loop make_loop() {
  using loop =
      Loop<typename shared_loop<From, To>::source, typename shared_loop<From, To>::destination>;
  return {&loop::run, loop::is_copy};
}

template <template <class, class> class Loop, class From, class... To>
constexpr convert_table::row make_row(type_list<To...>) {
  return {{make_loop<Loop, From, To>()...}};
}

template <template <class, class> class Loop, class... From>
constexpr convert_table make_table(type_list<From...> types) {
  return {{make_row<Loop, From>(types)...}};
}

constexpr convert_kernels make_kernels() {
  return {make_table<plain_loop>(real_types()), make_table<to_complex_loop>(real_types()),
          make_table<join_loop>(real_types()), make_table<split_loop>(real_types())};
}

}  // namespace
}  // namespace Vrel::detail
