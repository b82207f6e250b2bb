// What a property value can hold: each type and its id.
#pragma once

#include <complex>
#include <type_traits>

class VProp;
class VPropstring;
class VPropstruct;
template <class T>
class VProparray;
struct _s_vrel_RGB;

namespace Vrel {

/// The data type id of a real number; 0 for any other type.
// clang-format off
template <class T> inline constexpr int number_id = 0;
template <> inline constexpr int number_id<unsigned char>      = 0x1;     ///< uint8
template <> inline constexpr int number_id<char>               = 0x2;     ///< int8
template <> inline constexpr int number_id<unsigned short>     = 0x4;     ///< uint16
template <> inline constexpr int number_id<short>              = 0x8;     ///< int16
template <> inline constexpr int number_id<unsigned int>       = 0x10;    ///< uint32
template <> inline constexpr int number_id<int>                = 0x20;    ///< int32
template <> inline constexpr int number_id<float>              = 0x40;    ///< single
template <> inline constexpr int number_id<double>             = 0x80;    ///< double
template <> inline constexpr int number_id<unsigned long long> = 0x1000;  ///< uint64
template <> inline constexpr int number_id<long long>          = 0x2000;  ///< int64
// clang-format on

/// Marks the id of a complex number.
inline constexpr int prop_complex_flag = 0x40000000;
/// Marks the id of an array.
inline constexpr int prop_array_flag = -0x7FFFFFFF - 1;

/// The id under which a property value holds a T; 0 for a type that it cannot hold. There are 48 such
/// types.
template <class T>
inline constexpr int prop_id = number_id<T>;
/// Complex numbers, but none of bool.
template <class T>
inline constexpr int prop_id<std::complex<T>> =
    number_id<T> == 0 ? 0 : number_id<T> | prop_complex_flag;
template <>
inline constexpr int prop_id<_s_vrel_RGB> = 0x400;  ///< an RGB triple, alone
template <>
inline constexpr int prop_id<VPropstruct> = 0x8000;  ///< named values
template <>
inline constexpr int prop_id<bool> = 0x10000;  ///< logical
template <>
inline constexpr int prop_id<VPropstring> = 0x20000;  ///< text

/// The id of the elements of an array that a value can hold; 0 for any other type.
template <class T>
inline constexpr int prop_element_id = prop_id<T> <= 0 ? 0 : prop_id<T>;
template <>
inline constexpr int prop_element_id<_s_vrel_RGB> = 0;
template <>
inline constexpr int prop_element_id<VProp> = 0x4000;  ///< values of any kind, in a cell array

/// Arrays.
template <class T>
inline constexpr int prop_id<VProparray<T>> =
    prop_element_id<T> == 0 ? 0 : prop_element_id<T> | prop_array_flag;

/// The type that stands for T in a property value: for an integer type without an id of its own the one
/// of its size and sign, else T itself.
template <class T>
using prop_type = std::conditional_t<
    std::is_same_v<T, signed char>, char,
    std::conditional_t<
        std::is_same_v<T, long>, std::conditional_t<sizeof(long) == 8, long long, int>,
        std::conditional_t<std::is_same_v<T, unsigned long>,
                           std::conditional_t<sizeof(long) == 8, unsigned long long, unsigned int>,
                           T>>>;

}  // namespace Vrel
