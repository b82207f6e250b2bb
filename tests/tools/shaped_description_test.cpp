#include "lib/shaped_description.h"

#include <gtest/gtest.h>

namespace Vrel::tool {
namespace {

std::string described(const std::string& text) {
  const auto axes = read_shaped_description(text);
  if (!axes) return "none";
  std::string found;
  for (const ShapedAxis& axis : *axes) found += axis.label + std::to_string(axis.size) + ' ';
  return found;
}

TEST(ShapedDescriptionTest, TheFastestAxisStandsLast) {
  EXPECT_EQ(described(R"({"shape": [2, 3, 20, 30]})"), "30 20 3 2 ");
  EXPECT_EQ(described(R"({"shape": [2, 3, 20, 30], "axes": "TZYX", "more": [{}]})"),
            "X30 Y20 Z3 T2 ");
  EXPECT_EQ(described(R"({"shape": []})"), "");
}

TEST(ShapedDescriptionTest, LettersOfOtherAxesAreNoLabels) {
  EXPECT_EQ(described(R"({"shape": [2, 3, 4, 5], "axes": "QYXS"})"), "C5 X4 Y3 2 ");
  EXPECT_EQ(described(R"({"shape": [2, 3], "axes": "ZYX"})"), "3 2 ");
  EXPECT_EQ(described(R"({"shape": [2, 3], "axes": 5})"), "3 2 ");
}

TEST(ShapedDescriptionTest, OtherTextsAreNone) {
  for (const char* const text :
       {"", "{", "{}", "[]", "shape", R"({"shape": 3})", R"({"shape": [-1]})",
        R"({"shape": [1.5]})", R"({"shape": ["a"]})", R"({"shape": [18446744073709551616]})",
        R"({"shape": [1],})", "{\"shape\": [1]} x"}) {
    EXPECT_EQ(described(text), "none") << text;
  }
}

TEST(ShapedDescriptionTest, NestingTakesNoStack) {
  EXPECT_EQ(described("{\"shape\":" + std::string(1 << 19, '[')), "none");
  EXPECT_EQ(described("{\"shape\":" + std::string(400000, '[') + std::string(400000, ']') + '}'),
            "none");
}

}  // namespace
}  // namespace Vrel::tool
