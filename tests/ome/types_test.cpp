#include <gtest/gtest.h>
#include <vrelio/foundation/data_type.h>
#include <vrelio/ome/types.h>

#include <climits>
#include <stdexcept>

#include "support/expect_error.h"

namespace {

struct TypeRow {
  int value;
  Ome::Type type;
  const char* name;
  int id;
};

constexpr TypeRow type_rows[] = {{1, Ome::type_int8, "int8", 2},
                                 {2, Ome::type_int16, "int16", 8},
                                 {3, Ome::type_int32, "int32", 32},
                                 {4, Ome::type_uint8, "uint8", 1},
                                 {5, Ome::type_uint16, "uint16", 4},
                                 {6, Ome::type_uint32, "uint32", 16},
                                 {7, Ome::type_float, "float", 64},
                                 {8, Ome::type_double, "double", 128},
                                 {9, Ome::type_complex, "complex", 0x40000040},
                                 {10, Ome::type_double_complex, "double-complex", 0x40000080}};

TEST(OmeTypeTest, EveryTypeHasItsValueAndName) {
  EXPECT_EQ(Ome::type_bit, 0);
  EXPECT_STREQ(Ome::get_type_name(Ome::type_bit), "bit");
  for (const TypeRow& row : type_rows) {
    EXPECT_EQ(row.type, row.value);
    EXPECT_STREQ(Ome::get_type_name(row.type), row.name);
  }
}

TEST(OmeTypeTest, TypesAndIdsTranslateBothWays) {
  for (const TypeRow& row : type_rows) {
    EXPECT_EQ(Ome::get_type(row.id), row.type) << row.name;
    EXPECT_EQ(Ome::get_data_type(row.type), row.id) << row.name;
  }
}

TEST(OmeTypeTest, AnIdWithoutPixelTypeIsUnsupported) {
  for (const int id : {0, 4096, 8192, 1024, 2048, 0x4000, 0x8000, 0x10000, 0x20000, 0x40000001,
                       0x40000020, 0x40002000, 0x40010000, 3, -1, INT_MIN | 64})
    EXPECT_STANDARD_ERROR(Ome::get_type(id), std::invalid_argument, "Unsupported data type");
}

TEST(OmeTypeTest, ABitCannotBecomeAStack) {
  EXPECT_STANDARD_ERROR(Ome::get_data_type(Ome::type_bit), std::invalid_argument,
                        "Unsupported stack type");
}

TEST(OmeTypeTest, AValueOutsideTheEnumerationIsUnsupportedAndNameless) {
  for (const int value : {-1, 11, 15, 16, 1000, INT_MIN, INT_MAX}) {
    const Ome::Type type = static_cast<Ome::Type>(value);
    EXPECT_STANDARD_ERROR(Ome::get_data_type(type), std::invalid_argument,
                          "Unsupported stack type");
    EXPECT_EQ(Ome::get_type_name(type), nullptr) << value;
  }
}

TEST(OmeTypeTest, TheNamesDifferFromThoseOfTheRegistry) {
  EXPECT_STREQ(vrel_dt_get_name(Ome::get_data_type(Ome::type_float)), "single");
  EXPECT_STREQ(vrel_dt_get_name(Ome::get_data_type(Ome::type_complex)), "cplx_single");
  EXPECT_STREQ(vrel_dt_get_name(Ome::get_data_type(Ome::type_double_complex)), "cplx_double");
}

TEST(OmeDimensionOrderTest, EveryOrderHasItsValueAndName) {
  constexpr Ome::DimensionOrder orders[] = {Ome::order_XYZCT, Ome::order_XYZTC, Ome::order_XYCTZ,
                                            Ome::order_XYCZT, Ome::order_XYTCZ, Ome::order_XYTZC};
  constexpr const char* names[] = {"XYZCT", "XYZTC", "XYCTZ", "XYCZT", "XYTCZ", "XYTZC"};
  for (int value = 0; value < 6; ++value) {
    EXPECT_EQ(orders[value], value);
    EXPECT_STREQ(Ome::get_dimension_order_name(orders[value]), names[value]);
  }
}

TEST(OmeDimensionOrderTest, AValueOutsideTheEnumerationIsNameless) {
  for (const int value : {-1, 6, 7, 100, INT_MIN, INT_MAX})
    EXPECT_EQ(Ome::get_dimension_order_name(static_cast<Ome::DimensionOrder>(value)), nullptr);
}

}  // namespace
