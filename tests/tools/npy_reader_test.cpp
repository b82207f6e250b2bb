#include "lib/npy_reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vrelio/foundation/data_type.h>

#include "lib/npy_header.h"
#include "support/expect_error.h"

namespace Vrel::tool {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* invalid = "Invalid .npy header!";

NpyArray array_of(const std::string& type, const std::string& order, const std::string& shape) {
  return read_npy_dictionary("{'descr': " + type + ", 'fortran_order': " + order +
                             ", 'shape': " + shape + ", }  \n");
}

TEST(NpyReaderTest, TheLastAxisOfCOrderIsTheFastest) {
  EXPECT_THAT(array_of("'<u2'", "False", "(4, 6)").sizes, ElementsAre(6, 4));
  EXPECT_THAT(array_of("'<u2'", "True", "(4, 6)").sizes, ElementsAre(4, 6));
  EXPECT_THAT(array_of("'<u2'", "False", "(4,)").sizes, ElementsAre(4));
  EXPECT_THAT(array_of("'<u2'", "False", "()").sizes, IsEmpty());
  EXPECT_THAT(array_of("'<u2'", "False", "(4L, 6L)").sizes, ElementsAre(6, 4));
}

TEST(NpyReaderTest, HeadersOfAllStackTypesAreReadBack) {
  for (const int real : {0x1, 0x2, 0x4, 0x8, 0x10, 0x20, 0x40, 0x80, 0x1000, 0x2000}) {
    for (const int id : {real, real | 0x40000000}) {
      const NpyArray array = read_npy_dictionary(npy_header(id, {6, 4}).substr(10));
      EXPECT_EQ(array.data_type, id) << vrel_dt_get_name(id);
      EXPECT_FALSE(array.is_reversed);
      EXPECT_THAT(array.sizes, ElementsAre(6, 4));
    }
  }
}

TEST(NpyReaderTest, TheSignInFrontOfATypeTellsTheByteOrder) {
  EXPECT_TRUE(array_of("'>f8'", "False", "()").is_reversed);
  EXPECT_FALSE(array_of("'=f8'", "False", "()").is_reversed);
  EXPECT_TRUE(array_of("[('re', '>i4'), ('im', '>i4')]", "False", "()").is_reversed);
}

TEST(NpyReaderTest, TruthValuesAreBytes) {
  EXPECT_EQ(array_of("'|b1'", "False", "()").data_type, 1);
}

TEST(NpyReaderTest, KeysComeInAnyOrderAndQuotes) {
  const NpyArray array =
      read_npy_dictionary(R"({"shape":(2,3),"fortran_order":True,"descr":"<i8"})");
  EXPECT_EQ(array.data_type, 0x2000);
  EXPECT_THAT(array.sizes, ElementsAre(2, 3));
}

TEST(NpyReaderTest, TypesThatNoStackHasAreNamed) {
  for (const char* const type :
       {"<f2", "<f16", "<U4", "|S3", "<M8[s]", "|O", "u1", "", "<", "?u1"}) {
    const std::string message = "No data type for .npy type \"" + std::string(type) + "\"!";
    EXPECT_VREL_ERROR(array_of('\'' + std::string(type) + '\'', "False", "()"), message.c_str(),
                      -5);
  }
}

TEST(NpyReaderTest, RecordsOfOtherFieldsAreRefused) {
  for (const char* const type :
       {"[('a', '<i4'), ('b', '<i4')]", "[('re', '<i4'), ('im', '<i2')]",
        "[('re', '<c8'), ('im', '<c8')]", "[('re', '<i4'), ('im', '>i4')]"}) {
    EXPECT_THROW(array_of(type, "False", "()"), VrelError) << type;
  }
}

TEST(NpyReaderTest, BrokenHeadersAreRefused) {
  for (const char* const text :
       {"", "{", "}", "{}", "{'descr'}", "{'descr': '<u2'}",
        "{'descr': '<u2', 'fortran_order': False}",
        "{'descr': '<u2', 'fortran_order': 0, 'shape': ()}",
        "{'descr': '<u2', 'fortran_order': False, 'shape': (3)}",
        "{'descr': '<u2', 'fortran_order': False, 'shape': (3,}",
        "{'descr': '<u2', 'fortran_order': False, 'shape': (-3,)}",
        "{'descr': '<u2', 'fortran_order': False, 'shape': (18446744073709551616,)}",
        "{'descr': '<u2', 'fortran_order': False, 'shape': (,)}",
        "{'descr': '<u2', 'fortran_order': False, 'shape': (3 4)}",
        "{'descr': '<u2', 'fortran_order': False, 'shape': ()} x",
        "{'descr': '<u2', 'fortran_order': False, 'shape': (), 'more': 1}",
        "{'descr': '<u2', 'descr': '<u2', 'fortran_order': False, 'shape': ()}",
        "{'descr': '\\x3cu2', 'fortran_order': False, 'shape': ()}"}) {
    EXPECT_VREL_ERROR(read_npy_dictionary(text), invalid, -4);
  }
}

TEST(NpyReaderTest, AHeaderThatIsCutOffAnywhereIsRefused) {
  const std::string whole =
      "{'descr': [('re', '<i4'), ('im', '<i4')], 'fortran_order': False, 'shape': (4, 6, )}";
  for (std::size_t size = 0; size < whole.size(); ++size) {
    EXPECT_THROW(read_npy_dictionary(std::string_view(whole).substr(0, size)), VrelError) << size;
  }
  EXPECT_THAT(read_npy_dictionary(whole).sizes, ElementsAre(6, 4));
}

}  // namespace
}  // namespace Vrel::tool
