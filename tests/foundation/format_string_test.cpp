#include <gtest/gtest.h>
#include <vrelio/foundation/format_string.h>

#include <cstdarg>
#include <string>

namespace {

std::string through_list(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  std::string text = format_string(format, arguments);
  va_end(arguments);
  return text;
}

std::wstring through_list(const wchar_t* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  std::wstring text = format_string(format, arguments);
  va_end(arguments);
  return text;
}

TEST(FormatStringTest, FormatsANumber) {
  EXPECT_EQ(format_string("%d", 7), "7");
  EXPECT_EQ(format_string(L"%d", 7), L"7");
  EXPECT_EQ(through_list("%d", 7), "7");
  EXPECT_EQ(through_list(L"%d", 7), L"7");
}

TEST(FormatStringTest, ALiteralZeroIsAnArgument) {
  EXPECT_EQ(format_string("%d and %s", 0, "more"), "0 and more");
  EXPECT_EQ(format_string(L"%d", 0), L"0");
  EXPECT_EQ(format_string("%p", nullptr), through_list("%p", nullptr));
}

TEST(FormatStringTest, AnEmptyFormatGivesAnEmptyText) {
  EXPECT_EQ(format_string(""), "");
  EXPECT_EQ(format_string(L""), L"");
  EXPECT_EQ(through_list(""), "");
  EXPECT_EQ(through_list(L""), L"");
}

TEST(FormatStringTest, TheTextHasTheLengthItNeeds) {
  const std::string narrow(100000, 'x');
  EXPECT_EQ(format_string("%s!", narrow.c_str()), narrow + "!");
  const std::wstring wide(100000, L'\u00b5');
  EXPECT_EQ(format_string(L"%ls!", wide.c_str()), wide + L"!");
}

TEST(FormatStringTest, TheTextEndsAtItsFirstZeroCharacter) {
  EXPECT_EQ(format_string("a%cb", 0), "a");
  EXPECT_EQ(format_string(L"a%cb", 0), L"a");
}

TEST(FormatStringTest, WhatCannotBeFormattedIsEmpty) {
  // Bytes that are no text of the locale cannot become wide characters.
  EXPECT_EQ(format_string(L"%s", "\xff\xfe"), L"");
  // And wide characters that the locale lacks cannot become bytes.
  EXPECT_EQ(format_string("a%ls", L"\u65e5"), "");
}

}  // namespace
