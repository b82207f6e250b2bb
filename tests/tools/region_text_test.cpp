#include "lib/region_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Vrel::tool {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr u64 top = 18446744073709551615ull;

std::string message_of(const std::string& text) {
  try {
    parse_region(text);
    return "";
  } catch (const RegionError& error) {
    return error.what();
  }
}

TEST(RegionTextTest, TextsThatNameRanges) {
  struct Row {
    const char* text;
    const char* axis;
    std::optional<u64> first;
    std::optional<u64> end;
    bool is_single;
  };
  const Row rows[] = {{"x=100:200", "x", 100, 200, false},
                      {"x=:200", "x", std::nullopt, 200, false},
                      {"x=100:", "x", 100, std::nullopt, false},
                      {"x=:", "x", std::nullopt, std::nullopt, false},
                      {"z=5", "z", 5, std::nullopt, true},
                      {"0=0:1", "0", 0, 1, false},
                      {"x=007", "x", 7, std::nullopt, true},
                      {" ExpControl X = 1 : 2 ", "ExpControl X", 1, 2, false},
                      {"a=b=3", "a=b", 3, std::nullopt, true},
                      {"\xCE\x9B=1", "\xCE\x9B", 1, std::nullopt, true},
                      {"x=18446744073709551615", "x", top, std::nullopt, true}};
  for (const Row& row : rows) {
    const std::vector<AxisChoice> choices = parse_region(row.text);
    ASSERT_EQ(choices.size(), 1u) << row.text;
    EXPECT_EQ(choices[0].axis, row.axis) << row.text;
    EXPECT_EQ(choices[0].first, row.first) << row.text;
    EXPECT_EQ(choices[0].end, row.end) << row.text;
    EXPECT_EQ(choices[0].is_single, row.is_single) << row.text;
  }
}

TEST(RegionTextTest, AxesFollowOneAnotherBehindCommas) {
  const std::vector<AxisChoice> choices = parse_region("x=1:2, y=3,z=:4");
  ASSERT_EQ(choices.size(), 3u);
  EXPECT_EQ(choices[0].axis, "x");
  EXPECT_EQ(choices[1].axis, "y");
  EXPECT_EQ(choices[2].axis, "z");
}

TEST(RegionTextTest, TextsThatNameNone) {
  const std::pair<const char*, const char*> rows[] = {
      {"", R"("" is not of the form AXIS=FIRST:END)"},
      {",", R"("" is not of the form AXIS=FIRST:END)"},
      {"x=1,", R"("" is not of the form AXIS=FIRST:END)"},
      {"x", R"("x" is not of the form AXIS=FIRST:END)"},
      {"=1", R"("=1" is not of the form AXIS=FIRST:END)"},
      {" =1", R"("=1" is not of the form AXIS=FIRST:END)"},
      {"x=", R"("" is no index from 0 on)"},
      {"x=-1", R"("-1" is no index from 0 on)"},
      {"x=+1", R"("+1" is no index from 0 on)"},
      {"x=1e3", R"("1e3" is no index from 0 on)"},
      {"x=1:2:3", R"("2:3" is no index from 0 on)"},
      {"x=1 2", R"("1 2" is no index from 0 on)"},
      {"x=18446744073709551616", R"("18446744073709551616" is no index from 0 on)"},
      {"x=3:3", R"("3:3" holds no index, the end does not count)"},
      {"x=4:3", R"("4:3" holds no index, the end does not count)"},
      {"x=:0", R"(":0" holds no index, the end does not count)"},
      {"x=\x1B[2J", R"("\x1B[2J" is no index from 0 on)"}};
  for (const auto& [text, message] : rows) EXPECT_EQ(message_of(text), message) << text;
}

TEST(RegionTextTest, AnyBytesAreReadOrRefused) {
  std::string text;
  for (int i = 0; i < 20000; ++i) text += static_cast<char>(i * 7919 >> 3);
  EXPECT_NE(message_of(text), "");
  EXPECT_NE(message_of(std::string(100000, ',')), "");
  EXPECT_NE(message_of("x=" + std::string(100000, '9')), "");
}

const std::vector<std::string> labels = {"X", "Y", "Stage Z", "depth", "y"};
const std::vector<std::uint32_t> sizes = {10, 20, 30, 40, 50};

// First index and end of each axis.
std::vector<std::pair<u64, u64>> chosen(const std::string& text) {
  std::vector<std::pair<u64, u64>> ranges;
  for (const AxisRange& range : choose_region(parse_region(text), labels, sizes)) {
    ranges.emplace_back(range.first, range.end);
  }
  return ranges;
}

std::string refusal(const std::string& text) {
  try {
    chosen(text);
    return "";
  } catch (const RegionError& error) {
    return error.what();
  }
}

TEST(RegionTest, AxesThatAreNotNamedAreWhole) {
  EXPECT_THAT(chosen("x=2:3"), ElementsAre(std::pair(2, 3), std::pair(0, 20), std::pair(0, 30),
                                           std::pair(0, 40), std::pair(0, 50)));
  const Region whole = choose_region({}, labels, sizes);
  EXPECT_EQ(number_of_samples(whole), 10u * 20 * 30 * 40 * 50);
  EXPECT_TRUE(choose_region({}, {}, {}).empty());
}

TEST(RegionTest, TheFirstKindOfNameThatFitsCounts) {
  EXPECT_EQ(chosen("Y=1")[1], std::pair(u64{1}, u64{2}));
  EXPECT_EQ(chosen("y=1")[4], std::pair(u64{1}, u64{2}));
  EXPECT_EQ(chosen("x=1")[0], std::pair(u64{1}, u64{2}));
  EXPECT_EQ(chosen("STAGE z=1")[2], std::pair(u64{1}, u64{2}));
  EXPECT_EQ(chosen("z=1")[2], std::pair(u64{1}, u64{2}));
  EXPECT_EQ(chosen("t=1")[3], std::pair(u64{1}, u64{2}));
  EXPECT_EQ(chosen("4=1")[4], std::pair(u64{1}, u64{2}));
}

TEST(RegionTest, ASingleIndexIsToldFromARangeOfOne) {
  EXPECT_TRUE(choose_region(parse_region("x=1"), labels, sizes)[0].is_single);
  EXPECT_FALSE(choose_region(parse_region("x=1:2"), labels, sizes)[0].is_single);
}

TEST(RegionTest, OpenEndsReachToTheEndsOfTheAxis) {
  EXPECT_EQ(chosen("x=:3")[0], std::pair(u64{0}, u64{3}));
  EXPECT_EQ(chosen("x=3:")[0], std::pair(u64{3}, u64{10}));
  EXPECT_EQ(chosen("x=:")[0], std::pair(u64{0}, u64{10}));
}

TEST(RegionTest, WhatTheStackDoesNotHaveIsRefused) {
  const char* const indices = "has the indices from 0 up to, not including, 10";
  for (const char* const text :
       {"x=10", "x=0:11", "x=10:", "x=10:11", "x=18446744073709551615", "x=0:18446744073709551615",
        "x=18446744073709551614:18446744073709551615"}) {
    EXPECT_THAT(refusal(text), HasSubstr(indices)) << text;
  }
  EXPECT_THAT(refusal("q=1"), HasSubstr(R"("q" is no axis: the stack has 0 "X", 1 "Y")"));
  EXPECT_THAT(refusal("5=1"), HasSubstr(R"("5" is no axis)"));
  EXPECT_THAT(refusal("18446744073709551616=1"), HasSubstr("is no axis"));
  EXPECT_EQ(refusal("x=1,0=1"), R"(The axis "0" is named twice)");
}

TEST(RegionTest, ALabelOfTwoAxesIsRefused) {
  const auto choose = [](const char* text) {
    return choose_region(parse_region(text), {"a", "a", "B", "b"}, {2, 2, 2, 2});
  };
  EXPECT_THROW(choose("a=1"), RegionError);
  EXPECT_EQ(choose("b=1")[3].first, 1u);
  EXPECT_EQ(choose("1=1")[1].first, 1u);
}

TEST(RegionTest, AnAxisWithoutIndicesHasNone) {
  EXPECT_THROW(choose_region(parse_region("x=0"), {"x"}, {0}), RegionError);
  EXPECT_THROW(choose_region(parse_region("x=:"), {"x"}, {0}), RegionError);
  EXPECT_EQ(number_of_samples(choose_region({}, {"x"}, {0})), 0u);
}

}  // namespace
}  // namespace Vrel::tool
