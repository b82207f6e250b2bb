#include <gtest/gtest.h>
#include <vrelio/foundation/data_type.h>
#include <vrelio/foundation/propstring.h>
#include <vrelio/prop/prop.h>
#include <vrelio/prop/prop_array.h>
#include <vrelio/prop/prop_struct.h>

#include <climits>
#include <complex>
#include <cstring>
#include <set>
#include <string>
#include <vector>

namespace {

constexpr int array_flag = INT_MIN;

struct Row {
  int id;
  const char* name;
  int size;
  const std::type_info* type;
};

const std::vector<Row>& rows() {
  static const std::vector<Row> all = {
      {0, "none", 0, &typeid(void)},
      {1, "uint8", 1, &typeid(unsigned char)},
      {2, "int8", 1, &typeid(char)},
      {4, "uint16", 2, &typeid(unsigned short)},
      {8, "int16", 2, &typeid(short)},
      {16, "uint32", 4, &typeid(unsigned int)},
      {32, "int32", 4, &typeid(int)},
      {64, "single", 4, &typeid(float)},
      {128, "double", 8, &typeid(double)},
      {1024, "none", 3, &typeid(_s_vrel_RGB)},
      {2048, "none", 4, &typeid(unsigned int)},
      {4096, "uint64", 8, &typeid(unsigned long long)},
      {8192, "int64", 8, &typeid(long long)},
      {16384, "cell", 0, nullptr},
      {32768, "struct", 0, nullptr},
      {65536, "logical", 1, &typeid(bool)},
      {131072, "char", 0, nullptr},
      {0x40000001, "cplx_uint8", 2, &typeid(std::complex<unsigned char>)},
      {0x40000002, "cplx_int8", 2, &typeid(std::complex<char>)},
      {0x40000004, "cplx_uint16", 4, &typeid(std::complex<unsigned short>)},
      {0x40000008, "cplx_int16", 4, &typeid(std::complex<short>)},
      {0x40000010, "cplx_uint32", 8, &typeid(std::complex<unsigned int>)},
      {0x40000020, "cplx_int32", 8, &typeid(std::complex<int>)},
      {0x40000040, "cplx_single", 8, &typeid(std::complex<float>)},
      {0x40000080, "cplx_double", 16, &typeid(std::complex<double>)},
      {0x40001000, "cplx_uint64", 16, &typeid(std::complex<unsigned long long>)},
      {0x40002000, "cplx_int64", 16, &typeid(std::complex<long long>)},
      {0x40010000, "cplx_logical", 0, &typeid(void)},
  };
  return all;
}

// All single bits, all pairs of bits, and some ids that are none.
std::vector<int> ids_without_row() {
  std::set<int> ids = {-1, INT_MAX, 0x40000000, 3, 7, 0x400001, 0x40000400, 0x40000800};
  for (unsigned first = 0; first < 31; ++first)
    for (unsigned second = 0; second <= first; ++second)
      ids.insert(static_cast<int>(1u << first | 1u << second));
  for (const Row& row : rows()) ids.erase(row.id);
  return {ids.begin(), ids.end()};
}

TEST(DataTypeTest, EveryRowHasItsSize) {
  for (const Row& row : rows()) EXPECT_EQ(vrel_dt_get_size(row.id), row.size) << row.id;
}

TEST(DataTypeTest, EveryRowHasItsName) {
  for (const Row& row : rows()) EXPECT_STREQ(vrel_dt_get_name(row.id), row.name) << row.id;
}

TEST(DataTypeTest, EveryRowHasItsRunTimeType) {
  for (const Row& row : rows()) {
    if (!row.type) continue;
    EXPECT_EQ(*vrel_dt_get_type(row.id), *row.type) << row.id;
  }
}

TEST(DataTypeTest, EveryNameButNoneReadsBack) {
  for (const Row& row : rows()) {
    if (std::strcmp(row.name, "none") == 0) continue;
    EXPECT_EQ(vrel_dt_from_name(row.name), row.id);
  }
}

TEST(DataTypeTest, ASizeIsThatOfTheElement) {
  EXPECT_EQ(vrel_dt_get_size(1024), static_cast<int>(sizeof(_s_vrel_RGB)));
  EXPECT_EQ(vrel_dt_get_size(65536), static_cast<int>(sizeof(bool)));
}

TEST(DataTypeTest, WhatHasNoRowHasNeitherSizeNorNameNorType) {
  for (const int id : ids_without_row()) {
    EXPECT_EQ(vrel_dt_get_size(id), 0) << id;
    EXPECT_STREQ(vrel_dt_get_name(id), "none") << id;
    EXPECT_EQ(*vrel_dt_get_type(id), typeid(void)) << id;
  }
}

TEST(DataTypeTest, TheArrayFlagTakesTheSizeAndLeavesTheName) {
  for (const Row& row : rows()) {
    EXPECT_EQ(vrel_dt_get_size(row.id | array_flag), 0) << row.id;
    EXPECT_STREQ(vrel_dt_get_name(row.id | array_flag), row.name) << row.id;
  }
}

TEST(DataTypeTest, AnArrayHasNotTheRunTimeTypeOfItsElement) {
  for (const Row& row : rows()) {
    if (!row.type || *row.type == typeid(void)) continue;
    EXPECT_NE(*vrel_dt_get_type(row.id | array_flag), *row.type) << row.id;
  }
}

TEST(DataTypeTest, ThePropertyKindsHaveTheTypesOfTheirClasses) {
  EXPECT_EQ(*vrel_dt_get_type(0x4000), typeid(VProp));
  EXPECT_EQ(*vrel_dt_get_type(0x8000), typeid(VPropstruct));
  EXPECT_EQ(*vrel_dt_get_type(0x20000), typeid(VPropstring));
}

TEST(DataTypeTest, AnArrayHasTheTypeOfAnArrayOfItsElements) {
  EXPECT_EQ(*vrel_dt_get_type(64 | array_flag), typeid(VProparray<float>));
  EXPECT_EQ(*vrel_dt_get_type(0x40000080 | array_flag), typeid(VProparray<std::complex<double>>));
  EXPECT_EQ(*vrel_dt_get_type(1024 | array_flag), typeid(VProparray<_s_vrel_RGB>));
  EXPECT_EQ(*vrel_dt_get_type(2048 | array_flag), typeid(VProparray<unsigned int>));
  EXPECT_EQ(*vrel_dt_get_type(0x4000 | array_flag), typeid(VProparray<VProp>));
  EXPECT_EQ(*vrel_dt_get_type(0x8000 | array_flag), typeid(VProparray<VPropstruct>));
  EXPECT_EQ(*vrel_dt_get_type(0x10000 | array_flag), typeid(VProparray<bool>));
  EXPECT_EQ(*vrel_dt_get_type(0x20000 | array_flag), typeid(VProparray<VPropstring>));
}

TEST(DataTypeTest, AnArrayOfWhatHasNoTypeHasNone) {
  EXPECT_EQ(*vrel_dt_get_type(array_flag), typeid(void));
  EXPECT_EQ(*vrel_dt_get_type(0x40010000 | array_flag), typeid(void));
  for (const int id : ids_without_row()) {
    EXPECT_EQ(*vrel_dt_get_type(id | array_flag), typeid(void)) << id;
  }
}

TEST(DataTypeTest, AnRgbTripleHasASizeButNoName) {
  EXPECT_STREQ(vrel_dt_get_name(1024), "none");
  EXPECT_EQ(vrel_dt_get_size(1024), 3);
}

TEST(DataTypeTest, AComplexLogicalHasANameButNoSize) {
  EXPECT_STREQ(vrel_dt_get_name(0x40010000), "cplx_logical");
  EXPECT_EQ(vrel_dt_get_size(0x40010000), 0);
}

TEST(DataTypeTest, BothIdsOfAnUnsigned32BitIntegerHaveOneRecord) {
  EXPECT_EQ(vrel_dt_get_type(2048), vrel_dt_get_type(16));
}

TEST(DataTypeTest, NamesAreReadExactly) {
  for (const char* name : {"float", "Single", "SINGLE", "single ", " single", "singl", "", "none",
                           "cplx_", "cplx_none", "cplx_cell", "RGB"})
    EXPECT_EQ(vrel_dt_from_name(name), 0) << name;
}

TEST(DataTypeTest, NoTextHasTheIdZero) { EXPECT_EQ(vrel_dt_from_name(nullptr), 0); }

}  // namespace
