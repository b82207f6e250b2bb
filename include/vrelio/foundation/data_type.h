// The data type registry: one integer that names the element type of stacks, of their files and of
// property values.
#pragma once

#include <vrelio/export.h>

#include <typeinfo>

/// One element of id 1024: three bytes of colour.
struct VRELIO_EXPORT _s_vrel_RGB {
  unsigned char r;  ///< red
  unsigned char g;  ///< green
  unsigned char b;  ///< blue
};

/// Size of one element in bytes; 0 for what has no fixed size, for every id with the array flag
/// 0x80000000 and for unknown ids.
///
/// 1 uint8, 2 int8, 4 uint16, 8 int16, 16 uint32, 32 int32, 64 single, 128 double, 4096 uint64,
/// 8192 int64; the complex flag 0x40000000 doubles these; 1024 is an RGB triple of 3 bytes, 2048 an
/// unsigned of 4 bytes, 0x10000 a bool of 1 byte.
VRELIO_EXPORT int vrel_dt_get_size(int id);

/// The run-time type of one element, or with the array flag of a `VProparray` of them; that of void for
/// every id without one. The pointer is valid as long as the library is loaded.
VRELIO_EXPORT const std::type_info* vrel_dt_get_type(int id);

/// The registry's name of an id, for instance "cplx_single", the array flag disregarded; "none" for
/// an id without a name.
VRELIO_EXPORT const char* vrel_dt_get_name(int id);

/// The id of exactly this name; 0 for any other text, as for "none".
VRELIO_EXPORT int vrel_dt_from_name(const char* name);
