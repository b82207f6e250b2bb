#include "lib/byte_order.h"

#include <gtest/gtest.h>

#include <string>

namespace Vrel::tool {
namespace {

std::string reversed(std::string bytes, unsigned width) {
  reverse_bytes(bytes.data(), bytes.size(), width);
  return bytes;
}

TEST(ByteOrderTest, EachNumberIsReversedByItself) {
  EXPECT_EQ(reversed("abcdefgh", 1), "abcdefgh");
  EXPECT_EQ(reversed("abcdefgh", 2), "badcfehg");
  EXPECT_EQ(reversed("abcdefgh", 4), "dcbahgfe");
  EXPECT_EQ(reversed("abcdefgh", 8), "hgfedcba");
  EXPECT_EQ(reversed("", 8), "");
}

TEST(ByteOrderTest, NumbersNeedNotBeAligned) {
  std::string bytes = "xabcdefgh";
  reverse_bytes(bytes.data() + 1, 8, 8);
  EXPECT_EQ(bytes, "xhgfedcba");
}

TEST(ByteOrderTest, TheNumbersOfAComplexSampleAreItsParts) {
  EXPECT_EQ(number_width(0x80), 8u);
  EXPECT_EQ(number_width(0x40000080), 8u);
  EXPECT_EQ(number_width(0x40000002), 1u);
  EXPECT_EQ(number_width(0x4), 2u);
}

}  // namespace
}  // namespace Vrel::tool
