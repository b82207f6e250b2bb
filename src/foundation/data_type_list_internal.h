// The one list of the ten real element types. The ten complex types, the sizes, the run-time types
// and the tables of conversions follow from it.
#pragma once

#include <type_traits>

// One X(id, type, name) per row. The order carries no meaning; whatever the rows make counts in it.
// clang-format off
#define VRELIO_REAL_TYPES(X)           \
  X(0x1,    unsigned char,      uint8)  \
  X(0x2,    char,               int8)   \
  X(0x4,    unsigned short,     uint16) \
  X(0x8,    short,              int16)  \
  X(0x10,   unsigned int,       uint32) \
  X(0x20,   int,                int32)  \
  X(0x40,   float,              single) \
  X(0x80,   double,             double) \
  X(0x1000, unsigned long long, uint64) \
  X(0x2000, long long,          int64)
// clang-format on

namespace Vrel::detail {

static_assert(std::is_signed_v<char>,
              "int8 is plain char, so this has to be built with a signed one");
static_assert(sizeof(short) == 2 && sizeof(int) == 4 && sizeof(long long) == 8);
static_assert(sizeof(float) == 4 && sizeof(double) == 8 && sizeof(bool) == 1);

constexpr int complex_flag = 0x40000000;
constexpr int array_flag = -0x7FFFFFFF - 1;

constexpr int id_uint8 = 0x1;
constexpr int id_uint32 = 0x10;
constexpr int id_single = 0x40;
constexpr int id_double = 0x80;

// Ids beside the list. An RGB triple converts to itself alone, the alias as a source alone, a
// logical value not at all.
constexpr int id_rgb = 0x400;
constexpr int id_uint32_alias = 0x800;
constexpr int id_logical = 0x10000;

template <class... Types>
struct type_list {
  static constexpr int size = sizeof...(Types);
};

template <class Ignored, class... Types>
using type_list_of_rest = type_list<Types...>;

#define VRELIO_NEXT_TYPE(id, type, name) , type
using real_types = type_list_of_rest<void VRELIO_REAL_TYPES(VRELIO_NEXT_TYPE)>;
#undef VRELIO_NEXT_TYPE

// The row of a real id in the list; -1 for any other id.
constexpr int real_row(int id) {
  int row = 0;
#define VRELIO_COMPARE_ROW(row_id, type, name) \
  if (id == row_id) return row;                \
  ++row;
  VRELIO_REAL_TYPES(VRELIO_COMPARE_ROW)
#undef VRELIO_COMPARE_ROW
  return -1;
}

// The row of the real type that a complex id is made of; -1 for any other id.
constexpr int complex_row(int id) {
  return (id & complex_flag) != 0 ? real_row(id ^ complex_flag) : -1;
}

}  // namespace Vrel::detail
