#include "foundation/file_name_internal.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using Vrel::detail::to_codeset;
using Vrel::detail::to_system_name;
using Vrel::detail::to_utf8;

TEST(FileNameTest, TheCLocaleMeansUtf8) {
  EXPECT_EQ(to_system_name(L"10 \u00b5m"), "10 \xc2\xb5m");
}

TEST(FileNameTest, EachPlaneOfUnicodeHasItsBytes) {
  EXPECT_EQ(to_utf8(L"a"), "a");
  EXPECT_EQ(to_utf8(L"\u00e4"), "\xc3\xa4");
  EXPECT_EQ(to_utf8(L"\u65e5"), "\xe6\x97\xa5");
  EXPECT_EQ(to_utf8(L"\U0001f52c"), "\xf0\x9f\x94\xac");
  EXPECT_EQ(to_utf8(L""), "");
}

TEST(FileNameTest, APairOfSurrogatesIsOneCharacter) {
  const std::wstring pair = {wchar_t{0xD83D}, wchar_t{0xDD2C}};
  EXPECT_EQ(to_utf8(pair), "\xf0\x9f\x94\xac");
}

TEST(FileNameTest, ATextThatIsNoUnicodeHasNoBytes) {
  EXPECT_EQ(to_utf8({wchar_t{0xD83D}}), std::nullopt);
  EXPECT_EQ(to_utf8({wchar_t{0xD83D}, L'a'}), std::nullopt);
  EXPECT_EQ(to_utf8({wchar_t{0xDD2C}}), std::nullopt);
  EXPECT_EQ(to_utf8({static_cast<wchar_t>(0x110000)}), std::nullopt);
}

TEST(FileNameTest, ANameWithAZeroCharacterIsNone) {
  EXPECT_EQ(to_system_name(std::wstring(L"a\0b", 3)), std::nullopt);
}

TEST(FileNameTest, ACodesetOfOneByteTakesWhatItHasAndNothingElse) {
  EXPECT_EQ(to_codeset(L"10 \u00b5m", "ISO-8859-1"), "10 \xb5m");
  EXPECT_EQ(to_codeset(L"\u65e5", "ISO-8859-1"), std::nullopt);
}

TEST(FileNameTest, ALookAlikeIsNoConversion) {
  EXPECT_EQ(to_codeset(L"\uff21", "ISO-8859-1"), std::nullopt);
}

TEST(FileNameTest, AnUnknownCodesetTakesNothing) {
  EXPECT_EQ(to_codeset(L"a", "no such codeset"), std::nullopt);
}

}  // namespace
