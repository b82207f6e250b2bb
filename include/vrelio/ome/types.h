// The pixel types and dimension orders of the OME schema (release 2015-01), and their translation
// to data type ids.
#pragma once

#include <vrelio/export.h>

namespace Ome {

/// Pixel type; the value is the row of the schema's `PixelType` names in `get_type_name`.
enum Type : int {
  type_bit = 0,
  type_int8 = 1,
  type_int16 = 2,
  type_int32 = 3,
  type_uint8 = 4,
  type_uint16 = 5,
  type_uint32 = 6,
  type_float = 7,
  type_double = 8,
  type_complex = 9,
  type_double_complex = 10
};

/// Letters of the axes, the fastest first.
enum DimensionOrder : int {
  order_XYZCT = 0,
  order_XYZTC = 1,
  order_XYCTZ = 2,
  order_XYCZT = 3,
  order_XYTCZ = 4,
  order_XYTZC = 5
};

/// The pixel type of a data type id.
/// \throws std::invalid_argument "Unsupported data type" for an id without one: 0, the 64-bit
/// integers, the integer complex types
///         and everything that is no stack element.
VRELIO_EXPORT Type get_type(int id);

/// The data type id of a pixel type.
/// \throws std::invalid_argument "Unsupported stack type" outside 1 to 10; so "bit" has none.
VRELIO_EXPORT int get_data_type(Type type);

/// The schema's spelling, for instance "double-complex"; null outside the enumeration.
VRELIO_EXPORT const char* get_type_name(Type type);

/// The schema's spelling, for instance "XYZCT"; null outside the enumeration.
VRELIO_EXPORT const char* get_dimension_order_name(DimensionOrder order);

}  // namespace Ome
