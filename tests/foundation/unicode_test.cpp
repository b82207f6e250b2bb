#include "foundation/unicode_internal.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <string>

namespace {

using Vrel::detail::append_utf16;
using Vrel::detail::append_utf8;
using Vrel::detail::utf16_of;
using Vrel::detail::utf8_of;

std::wstring units(std::initializer_list<int> list) {
  std::wstring text;
  for (const int unit : list) text += static_cast<wchar_t>(unit);
  return text;
}

bool is_surrogate(char32_t code) { return code >= 0xD800 && code <= 0xDFFF; }

TEST(UnicodeTest, EveryCodePointGoesToBothEncodingsAndBack) {
  for (char32_t code = 0; code <= 0x10FFFF; ++code) {
    if (is_surrogate(code)) continue;
    std::string utf8;
    append_utf8(utf8, code);
    std::wstring utf16;
    append_utf16(utf16, code);
    ASSERT_EQ(utf16, utf16_of(utf8)) << std::hex << static_cast<unsigned>(code);
    ASSERT_EQ(utf8, utf8_of(utf16)) << std::hex << static_cast<unsigned>(code);
    ASSERT_EQ(code < 0x80 ? 1u : code < 0x800 ? 2u : code < 0x10000 ? 3u : 4u, utf8.size());
    ASSERT_EQ(code < 0x10000 ? 1u : 2u, utf16.size());
  }
}

TEST(UnicodeTest, AWideUnitAboveSixteenBitsIsTheCodePointThatItIs) {
  EXPECT_EQ("\xF0\x9F\x94\xAC", utf8_of(units({0x1F52C})));
  EXPECT_EQ("", utf8_of(units({0x110000})));
  EXPECT_EQ("ab", utf8_of(units({'a', -1, 'b'})));
}

TEST(UnicodeTest, ALoneSurrogateDisappearsAndNothingElse) {
  EXPECT_EQ("ab", utf8_of(units({'a', 0xD800, 'b'})));
  EXPECT_EQ("ab", utf8_of(units({'a', 0xDC00, 'b'})));
  EXPECT_EQ("a", utf8_of(units({'a', 0xD83D})));
  EXPECT_EQ("\xF0\x9F\x94\xAC", utf8_of(units({0xD83D, 0xD83D, 0xDD2C})));
  EXPECT_EQ("", utf8_of(units({0xDD2C, 0xD83D})));
}

TEST(UnicodeTest, BytesThatAreNoUtf8DisappearAndNothingElse) {
  const struct {
    const char* bytes;
    const wchar_t* text;
  } rows[] = {
      {"a\x80z", L"az"},                      // a byte that only follows
      {"a\xC3z", L"az"},                      // cut by a letter
      {"a\xE2\x82z", L"az"},                  // cut later
      {"a\xE2\xC3\xA4z", L"a\u00E4z"},        // cut by another sequence
      {"a\xF0\x9F\x94", L"a"},                // cut by the end
      {"a\xC0\xAFz", L"az"},                  // longer than it needs to be
      {"a\xE0\x80\xAFz", L"az"},              // the same in three bytes
      {"a\xF0\x80\x80\xAFz", L"az"},          // and in four
      {"a\xED\xA0\x80z", L"az"},              // a surrogate
      {"a\xF4\x90\x80\x80z", L"az"},          // beyond Unicode
      {"a\xF8\x88\x80\x80\x80z", L"az"},      // five bytes
      {"a\xFF\xFEz", L"az"},                  // bytes that never occur
      {"\xF4\x8F\xBF\xBF", L"\xDBFF\xDFFF"},  // the last code point
  };
  for (const auto& row : rows) EXPECT_EQ(row.text, utf16_of(row.bytes)) << row.bytes;
}

RC_GTEST_PROP(UnicodeTest, AnyBytesBecomeTextThatStaysTheSame, (const std::string& bytes)) {
  const std::wstring text = utf16_of(bytes);
  RC_ASSERT(text == utf16_of(utf8_of(text)));
  RC_ASSERT(text.size() <= bytes.size());
}

}  // namespace
