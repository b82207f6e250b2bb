#include <vrelio/ome/types.h>

#include <stdexcept>

namespace Ome {
namespace {

constexpr int no_id = 0;

struct type_row {
  Type type;
  const char* name;
  int id;
};

// Row i holds the value i.
constexpr type_row type_rows[] = {
    {type_bit, "bit", no_id},
    {type_int8, "int8", 0x2},
    {type_int16, "int16", 0x8},
    {type_int32, "int32", 0x20},
    {type_uint8, "uint8", 0x1},
    {type_uint16, "uint16", 0x4},
    {type_uint32, "uint32", 0x10},
    {type_float, "float", 0x40},
    {type_double, "double", 0x80},
    {type_complex, "complex", 0x40000040},
    {type_double_complex, "double-complex", 0x40000080},
};

struct order_row {
  DimensionOrder order;
  const char* name;
};

// Row i holds the value i.
constexpr order_row order_rows[] = {
    {order_XYZCT, "XYZCT"}, {order_XYZTC, "XYZTC"}, {order_XYCTZ, "XYCTZ"},
    {order_XYCZT, "XYCZT"}, {order_XYTCZ, "XYTCZ"}, {order_XYTZC, "XYTZC"},
};

// The value may come from a number that no enumerator has.
const type_row* find_row(Type type) {
  for (const type_row& row : type_rows)
    if (row.type == type) return &row;
  return nullptr;
}

}  // namespace

Type get_type(int id) {
  for (const type_row& row : type_rows)
    if (row.id == id && id != no_id) return row.type;
  throw std::invalid_argument("Unsupported data type");
}

int get_data_type(Type type) {
  const type_row* row = find_row(type);
  if (!row || row->id == no_id) throw std::invalid_argument("Unsupported stack type");
  return row->id;
}

const char* get_type_name(Type type) {
  const type_row* row = find_row(type);
  return row ? row->name : nullptr;
}

const char* get_dimension_order_name(DimensionOrder order) {
  for (const order_row& row : order_rows)
    if (row.order == order) return row.name;
  return nullptr;
}

}  // namespace Ome
