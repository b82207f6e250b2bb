// Conversion of arrays from one element type to another.
#pragma once

#include <vrelio/export.h>

/// Convert `count` elements of one data type to another; join two real planes to complex elements;
/// split complex elements into planes.
///
/// Plain (both imaginary pointers null): real to real, real to complex (imaginary parts 0), complex
/// to complex, 1024 to itself, 2048 as a source only. Join (`source_imaginary` set): two planes of
/// the real `source_type` to the complex `destination_type`. Split (`destination_imaginary` set):
/// the complex `source_type` to two planes of the real `destination_type`.
///
/// Values convert as by a plain cast: nothing is clamped, floating point numbers truncate toward
/// zero, integers wrap. A floating point value that the destination cannot represent gives a fixed
/// result: truncated, then taken modulo two to the width of the destination, if it lies within
/// int32 (destinations of 8 and 16 bits), within int64 (uint32) or within
/// [-2^63, 2^64) (uint64); in every other case, a not-a-number included, 0 for 8 and 16 bits and
/// for uint32, and the value with the highest bit alone set for int32, int64 and uint64.
///
/// Elements convert one after the other, so that a buffer may be converted in place where the
/// elements do not become larger.
///
/// \param source_type       id of the elements of `source` and `source_imaginary`.
/// \param destination_type  id of the elements of `destination` and `destination_imaginary`.
/// \param source       `count` elements, complex ones with real and imaginary part side by side;
///                     need not be aligned.
/// \param destination  room for `count` elements; need not be aligned. The caller owns all buffers;
///                     nothing is allocated.
/// \param count        elements; 0 or less touches nothing.
/// \param source_imaginary       imaginary parts to join, `count` elements; else null.
/// \param destination_imaginary  room for imaginary parts that are split off; else null.
/// \return 0, or -1 without touching anything where the pair of types does not exist in the mode,
/// whatever the count, or where both imaginary pointers are set.
VRELIO_EXPORT int vrel_dt_convert(int source_type, int destination_type, const void* source,
                                  void* destination, int count, const void* source_imaginary,
                                  void* destination_imaginary);
