#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>
#include <vrelio/foundation/error.h>
#include <vrelio/foundation/propstring.h>

#include <algorithm>
#include <string>
#include <type_traits>

#include "foundation/scoped_codeset.h"

namespace {

constexpr VPropstring::encoding no_encoding = static_cast<VPropstring::encoding>(3);

using Vrel::testing::ScopedCodeset;

VPropstring utf8(const std::string& text) { return {text, VPropstring::encoding_utf8}; }

// µ, Å, Japanese, a microscope.
const char* const many_planes =
    "\xC2\xB5 \xC3\x85 \xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E \xF0\x9F\x94\xAC";

TEST(VPropstringTest, IsEmptyAtFirst) { EXPECT_TRUE(VPropstring().empty()); }

TEST(VPropstringTest, AddsNothingToTheWideString) {
  EXPECT_EQ(sizeof(std::wstring), sizeof(VPropstring));
  EXPECT_FALSE((std::is_constructible_v<VPropstring, const char*>));
}

TEST(VPropstringTest, TheEncodingsHaveTheirNumbers) {
  EXPECT_EQ(0, VPropstring::encoding_utf8);
  EXPECT_EQ(1, VPropstring::encoding_local);
  EXPECT_EQ(2, VPropstring::encoding_windows1252);
}

TEST(VPropstringTest, AnEmptyTextIsEmptyInEveryEncoding) {
  for (const auto encoding : {VPropstring::encoding_utf8, VPropstring::encoding_local,
                              VPropstring::encoding_windows1252}) {
    EXPECT_EQ("", VPropstring("", encoding).to(encoding));
    EXPECT_TRUE(VPropstring(std::string(), encoding).empty());
  }
}

TEST(VPropstringTest, AnEmptyTextIsNotConverted) {
  const ScopedCodeset unknown("no such codeset");
  EXPECT_EQ("", VPropstring("", VPropstring::encoding_local).to(VPropstring::encoding_local));
}

TEST(VPropstringTest, AsciiEqualsItself) {
  const VPropstring text("abc", VPropstring::encoding_utf8);
  EXPECT_TRUE(text == "abc");
  EXPECT_TRUE(text == std::string("abc"));
  EXPECT_TRUE(text == L"abc");
  EXPECT_TRUE(text == std::wstring(L"abc"));
  EXPECT_TRUE(text == VPropstring(L"abc"));
}

TEST(VPropstringTest, ComparisonIsExact) {
  const VPropstring text(L"abc");
  EXPECT_TRUE(text != "abC");
  EXPECT_TRUE(text != std::string("ab"));
  EXPECT_TRUE(text != L"abcd");
  EXPECT_TRUE(text != std::wstring(L"ABC"));
  EXPECT_TRUE(text != VPropstring(L"ab"));
  EXPECT_FALSE(text != "abc");
}

TEST(VPropstringTest, AZeroCharacterCounts) {
  const VPropstring text(std::string("a\0b", 3), VPropstring::encoding_utf8);
  EXPECT_EQ(3u, text.size());
  EXPECT_TRUE(text == std::string("a\0b", 3));
  EXPECT_FALSE(text == "a");
}

TEST(VPropstringTest, HoldsUtf16Units) {
  const VPropstring text = utf8(many_planes);
  EXPECT_EQ(std::wstring(L"\u00B5 \u00C5 \u65E5\u672C\u8A9E \xD83D\xDD2C"), text);
  EXPECT_EQ(many_planes, text.to(VPropstring::encoding_utf8));
}

TEST(VPropstringTest, AWideUnitAboveSixteenBitsIsWrittenRight) {
  EXPECT_EQ(
      "\xF0\x9F\x94\xAC",
      VPropstring(std::wstring(1, static_cast<wchar_t>(0x1F52C))).to(VPropstring::encoding_utf8));
}

TEST(VPropstringTest, ALoneSurrogateDisappearsInUtf8) {
  const std::wstring text = {L'a', static_cast<wchar_t>(0xD800), L'b'};
  EXPECT_EQ("ab", VPropstring(text).to(VPropstring::encoding_utf8));
}

TEST(VPropstringTest, APairCutByTheEndDisappearsInUtf8) {
  const std::wstring text = {L'a', static_cast<wchar_t>(0xD83D)};
  EXPECT_EQ("a", VPropstring(text).to(VPropstring::encoding_utf8));
}

TEST(VPropstringTest, BytesThatAreNoUtf8Disappear) {
  EXPECT_EQ(std::wstring(L"az"), utf8("a\xC3z"));
  EXPECT_EQ(std::wstring(L"a"), utf8("a\xF0\x9F"));
}

TEST(VPropstringTest, Windows1252HasItsOwnCharacters) {
  const VPropstring text("\x80\xB5\xC5\x9F", VPropstring::encoding_windows1252);
  EXPECT_EQ(std::wstring(L"\u20AC\u00B5\u00C5\u0178"), text);
  EXPECT_EQ("\x80\xB5\xC5\x9F", text.to(VPropstring::encoding_windows1252));
}

TEST(VPropstringTest, WhatAnEncodingLacksDisappears) {
  EXPECT_EQ("\xB5 \xC5  ", utf8(many_planes).to(VPropstring::encoding_windows1252));
  EXPECT_EQ(std::wstring(L"az"), VPropstring("a\x81z", VPropstring::encoding_windows1252));
}

TEST(VPropstringTest, ASurrogatePairReachesAnEncodingThatHasIt) {
  const ScopedCodeset local("GB18030");
  const std::string bytes = utf8("\xF0\x9F\x94\xAC").to(VPropstring::encoding_local);
  EXPECT_EQ(4u, bytes.size());
  EXPECT_EQ(std::wstring(L"\xD83D\xDD2C"), VPropstring(bytes, VPropstring::encoding_local));
}

TEST(VPropstringTest, TheLocalEncodingIsThatOfTheLocale) {
  const VPropstring text = utf8("\xC2\xB5");
  EXPECT_EQ("\xC2\xB5", text.to(VPropstring::encoding_local));
  const ScopedCodeset local("ISO-8859-1");
  EXPECT_EQ("\xB5", text.to(VPropstring::encoding_local));
  EXPECT_EQ(text, VPropstring("\xB5", VPropstring::encoding_local));
}

TEST(VPropstringTest, NarrowTextWithoutAnEncodingIsLocal) {
  const ScopedCodeset local("ISO-8859-1");
  VPropstring text;
  text = "\xB5";
  EXPECT_EQ(std::wstring(L"\u00B5"), text);
  text = std::string("\xC5");
  EXPECT_EQ(std::wstring(L"\u00C5"), text);
  EXPECT_EQ("\xC5", static_cast<std::string>(text));
  EXPECT_TRUE(text == "\xC5");
  EXPECT_TRUE(text == std::string("\xC5"));
}

TEST(VPropstringTest, ACharacterThatTheLocalEncodingLacksComparesAsDropped) {
  const ScopedCodeset local("ISO-8859-1");
  EXPECT_TRUE(utf8("a\xE6\x97\xA5z") == "az");
  EXPECT_FALSE(utf8("a\xE6\x97\xA5z") == L"az");
}

TEST(VPropstringTest, AnAssignedWideTextStandsAsItIs) {
  VPropstring text;
  text = L"\u65E5";
  EXPECT_EQ(std::wstring(L"\u65E5"), text);
  text = std::wstring(L"a\0b", 3);
  EXPECT_EQ(3u, text.size());
  const VPropstring copy = text;
  text = VPropstring();
  EXPECT_EQ(3u, copy.size());
}

TEST(VPropstringTest, AnUnknownEncodingIsNamedAndChangesNothing) {
  VPropstring text(L"before");
  const auto expect_refused = [](const auto& statement) {
    try {
      statement();
      ADD_FAILURE();
    } catch (const VrelError&) {
      ADD_FAILURE() << "is no VrelError";
    } catch (const std::exception& error) {
      EXPECT_STREQ("Unknown encoding '3' found", error.what());
    }
  };
  expect_refused([&] { text.from("a", no_encoding); });
  expect_refused([&] { text.from("", no_encoding); });
  expect_refused([&] { text.to(no_encoding); });
  expect_refused([&] { VPropstring().to(no_encoding); });
  expect_refused([&] { text.size_in(no_encoding); });
  expect_refused([&] { text.from("a", no_encoding, 1); });
  expect_refused([&] { VPropstring("a", no_encoding); });
  expect_refused([&] { VPropstring::size_in(L"a", no_encoding, 1); });
  expect_refused([&] { VPropstring::length_of("a", no_encoding, 1); });
  std::string out = "before";
  unsigned int size = 6;
  expect_refused([&] { text.to(out, no_encoding); });
  expect_refused([&] { text.to(out.data(), size, no_encoding); });
  EXPECT_EQ("before", out);
  EXPECT_EQ(6U, size);
  EXPECT_EQ(std::wstring(L"before"), text);
}

TEST(VPropstringTest, FromGivesItselfBack) {
  VPropstring text;
  EXPECT_EQ(&text, &text.from("a", VPropstring::encoding_utf8));
  EXPECT_EQ(&text, &text.from("a", VPropstring::encoding_utf8, 1));
}

TEST(VPropstringTest, ALengthReadsPastAZeroByte) {
  VPropstring text;
  text.from("a\0b", VPropstring::encoding_utf8, 2);
  EXPECT_EQ(std::wstring(L"a\0", 2), text);
  text.from("a\0b", VPropstring::encoding_utf8, VPropstring::zero_terminated);
  EXPECT_EQ(std::wstring(L"a"), text);
  text.from("abc", VPropstring::encoding_utf8, 0);
  EXPECT_TRUE(text.empty());
}

TEST(VPropstringTest, ABufferOfExactlyTheNeededSizeIsTooSmall) {
  const VPropstring text = utf8("\xC2\xB5m");
  char buffer[] = "....";
  unsigned int size = 3;
  EXPECT_FALSE(text.to(buffer, size, VPropstring::encoding_utf8));
  EXPECT_EQ(3u, size);
  EXPECT_STREQ("....", buffer);
  size = 0;
  EXPECT_FALSE(text.to(nullptr, size, VPropstring::encoding_utf8));
  EXPECT_EQ(3u, size);
}

TEST(VPropstringTest, ALargerBufferTakesTheBytesWithoutATerminator) {
  const VPropstring text = utf8("\xC2\xB5m");
  char buffer[] = "....";
  unsigned int size = 4;
  EXPECT_TRUE(text.to(buffer, size, VPropstring::encoding_utf8));
  EXPECT_EQ(4u, size);
  EXPECT_STREQ("\xC2\xB5m.", buffer);
}

TEST(VPropstringTest, ANamedTextTakesTheBytes) {
  std::string out = "before";
  utf8(many_planes).to(out, VPropstring::encoding_utf8);
  EXPECT_EQ(many_planes, out);
}

TEST(VPropstringTest, SizesCountBytesAndLengthsCountUnits) {
  const VPropstring text = utf8(many_planes);
  EXPECT_EQ(20u, text.size_in(VPropstring::encoding_utf8));
  EXPECT_EQ(5u, text.size_in(VPropstring::encoding_windows1252));
  EXPECT_EQ(10u, VPropstring::length_of(many_planes, VPropstring::encoding_utf8,
                                        VPropstring::zero_terminated));
  EXPECT_EQ(1u, VPropstring::length_of(many_planes, VPropstring::encoding_utf8, 2));
  EXPECT_EQ(2u, VPropstring::size_in(L"\u00B5m", VPropstring::encoding_utf8, 1));
  EXPECT_EQ(3u, VPropstring::size_in(L"\u00B5m", VPropstring::encoding_utf8,
                                     VPropstring::zero_terminated));
  EXPECT_EQ(4u, VPropstring::size_in(L"a\0bc", VPropstring::encoding_utf8, 4));
  EXPECT_EQ(2u, VPropstring::length_of("\xC2\xB5", VPropstring::encoding_windows1252,
                                       VPropstring::zero_terminated));
  EXPECT_EQ(3u, VPropstring::length_of("a\0b", VPropstring::encoding_utf8, 3));
}

RC_GTEST_PROP(VPropstringTest, AnyBytesInWindows1252ComeBackIfTheyAreDefined, (std::string bytes)) {
  for (const char undefined : {'\x81', '\x8D', '\x8F', '\x90', '\x9D'}) {
    bytes.erase(std::remove(bytes.begin(), bytes.end(), undefined), bytes.end());
  }
  const VPropstring text(bytes, VPropstring::encoding_windows1252);
  RC_ASSERT(text.size() == bytes.size());
  RC_ASSERT(text.to(VPropstring::encoding_windows1252) == bytes);
}

}  // namespace
