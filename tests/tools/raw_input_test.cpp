#include "lib/raw_input.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vrelio/foundation/data_type.h>

namespace Vrel::tool {
namespace {

using testing::ElementsAre;
using testing::Optional;

TEST(RawInputTest, SizesAreSeparatedByCrossesOrCommas) {
  EXPECT_THAT(read_sizes("133x130x45"), Optional(ElementsAre(133, 130, 45)));
  EXPECT_THAT(read_sizes("133 x 130 x 45"), Optional(ElementsAre(133, 130, 45)));
  EXPECT_THAT(read_sizes("133,130,45"), Optional(ElementsAre(133, 130, 45)));
  EXPECT_THAT(read_sizes(" 133, 130 ,45 "), Optional(ElementsAre(133, 130, 45)));
  EXPECT_THAT(read_sizes("7"), Optional(ElementsAre(7)));
  EXPECT_THAT(read_sizes("0x3"), Optional(ElementsAre(0, 3)));
  EXPECT_THAT(read_sizes("18446744073709551615"), Optional(ElementsAre(18446744073709551615ull)));
}

TEST(RawInputTest, TextsOfOtherFormsAreNoSizes) {
  for (const char* const text : {"", " ", "x", "2x", "x2", "2xx3", "2,3x4", "2;3", "-1", "+1",
                                 "2.0", "1 2", "0b1", "18446744073709551616", ",", "2,"}) {
    EXPECT_FALSE(read_sizes(text)) << text;
  }
}

TEST(RawInputTest, TypesAreTheTwentyElementTypesOfStacks) {
  int count = 0;
  for (const int real : {0x1, 0x2, 0x4, 0x8, 0x10, 0x20, 0x40, 0x80, 0x1000, 0x2000}) {
    for (const int id : {real, real | 0x40000000}) {
      EXPECT_EQ(read_type_name(vrel_dt_get_name(id)), id);
      ++count;
    }
  }
  EXPECT_EQ(count, 20);
}

TEST(RawInputTest, OtherNamesAreNoElementTypes) {
  for (const int id : {1024, 2048, 0x4000, 0x10000, 0x100, 0x200}) {
    EXPECT_EQ(read_type_name(vrel_dt_get_name(id)), 0) << vrel_dt_get_name(id);
  }
  for (const char* const name : {"", "none", "UINT8", "uint8 ", "float"}) {
    EXPECT_EQ(read_type_name(name), 0) << name;
  }
}

}  // namespace
}  // namespace Vrel::tool
