#include "lib/utf8.h"

#include <gtest/gtest.h>

namespace Vrel::tool {
namespace {

constexpr const char* replacement = "\xEF\xBF\xBD";

TEST(Utf8Test, WellFormedTextStaysAsItIs) {
  for (const std::string text :
       {"", "plain", "\xC2\x80", "\xDF\xBF", "\xE0\xA0\x80", "\xED\x9F\xBF", "\xEE\x80\x80",
        "\xEF\xBF\xBF", "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF", "\xEF\xBF\xBD"}) {
    EXPECT_EQ(repair_utf8(text), text);
  }
  EXPECT_EQ(repair_utf8(std::string_view("a\0b", 3)), std::string("a\0b", 3));
}

TEST(Utf8Test, WhatIsNotWellFormedBecomesOneReplacementCharacter) {
  for (const std::string text :
       {"\x80", "\xBF", "\xC0\x80", "\xC1\xBF", "\xC2", "\xE0\x9F\xBF", "\xE2\x82", "\xED\xA0\x80",
        "\xED\xBF\xBF", "\xF0\x8F\xBF\xBF", "\xF0\x90\x80", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80",
        "\xFE", "\xFF", "\xFF\xFF\xFF", "\xC2\xC2"}) {
    EXPECT_EQ(repair_utf8(text), replacement) << testing::PrintToString(text);
  }
}

TEST(Utf8Test, RunsOfBrokenBytesAreReplacedOneByOne) {
  const std::string mark = replacement;
  EXPECT_EQ(repair_utf8("\xFF\xFE"
                        "a\xFF"),
            mark + 'a' + mark);
  EXPECT_EQ(repair_utf8("\xE2\x82"
                        "A"),
            mark + 'A');
  EXPECT_EQ(repair_utf8("\xC3\xC3\xA4"), mark + "\xC3\xA4");
}

TEST(Utf8Test, AReplacementCharacterOfTheTextItselfIsKeptBesideARun) {
  const std::string mark = replacement;
  EXPECT_EQ(repair_utf8(mark + '\xFF' + mark), mark + mark + mark);
}

TEST(Utf8Test, CharactersOfEveryLengthAreDecoded) {
  EXPECT_EQ(decode_utf8("A"), U'A');
  EXPECT_EQ(decode_utf8("\xC2\xB5"), 0xB5u);
  EXPECT_EQ(decode_utf8("\xE2\x80\xAE"), 0x202Eu);
  EXPECT_EQ(decode_utf8("\xF4\x8F\xBF\xBF"), 0x10FFFFu);
}

}  // namespace
}  // namespace Vrel::tool
