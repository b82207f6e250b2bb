// Every codeset that a system reports by a number, as the local encoding.
#include <gtest/gtest.h>
#include <vrelio/foundation/propstring.h>

#include <boost/locale/encoding_errors.hpp>
#include <string>

#include "foundation/scoped_codeset.h"
#include "support/expect_error.h"

namespace {

using Vrel::testing::ScopedCodeset;

struct Row {
  const char* codeset;
  const char* bytes;
  const wchar_t* kept;
};

// What becomes of a micro sign, an Angstrom, the word "Japanese" and a microscope.
const Row rows[] = {
    {"windows-874", "   ", L"   "},
    {"Shift_JIS", "  \x93\xFA\x96{\x8C\xEA ", L"  \u65E5\u672C\u8A9E "},
    {"GB2312", "  \xC8\xD5\xB1\xBE ", L"  \u65E5\u672C "},
    {"KS_C_5601-1987", "  \xEC\xED\xDC\xE2\xE5\xDE ", L"  \u65E5\u672C\u8A9E "},
    {"Big5", "  \xA4\xE9\xA5\xBB\xBBy ", L"  \u65E5\u672C\u8A9E "},
    {"windows-1250", "\xB5   ", L"\u00B5   "},
    {"windows-1251", "\xB5   ", L"\u00B5   "},
    {"windows-1252", "\xB5 \xC5  ", L"\u00B5 \u00C5  "},
    {"windows-1253", "\xB5   ", L"\u00B5   "},
    {"windows-1254", "\xB5 \xC5  ", L"\u00B5 \u00C5  "},
    {"windows-1255", "\xB5   ", L"\u00B5   "},
    {"windows-1256", "\xB5   ", L"\u00B5   "},
    {"windows-1257", "\xB5 \xC5  ", L"\u00B5 \u00C5  "},
    {"windows-1258", "\xB5 \xC5  ", L"\u00B5 \u00C5  "},
    {"US-ASCII", "   ", L"   "},
    {"KOI8-R", "   ", L"   "},
    {"EUC-JP", " \x8F\xAA\xA9 \xC6\xFC\xCB\xDC\xB8\xEC ", L" \u00C5 \u65E5\u672C\u8A9E "},
    {"KOI8-U", "   ", L"   "},
    {"ISO-8859-1", "\xB5 \xC5  ", L"\u00B5 \u00C5  "},
    {"ISO-8859-2", "   ", L"   "},
    {"ISO-8859-3", "\xB5   ", L"\u00B5   "},
    {"ISO-8859-4", " \xC5  ", L" \u00C5  "},
    {"ISO-8859-5", "   ", L"   "},
    {"ISO-8859-6", "   ", L"   "},
    {"ISO-8859-7", "   ", L"   "},
    {"ISO-8859-8", "\xB5   ", L"\u00B5   "},
    {"ISO-8859-9", "\xB5 \xC5  ", L"\u00B5 \u00C5  "},
    {"ISO-8859-13", "\xB5 \xC5  ", L"\u00B5 \u00C5  "},
    {"ISO-8859-15", "\xB5 \xC5  ", L"\u00B5 \u00C5  "},
    {"ISO-2022-JP", "  \x1B$BF|K\\8l\x1B(B ", L"  \u65E5\u672C\u8A9E "},
    {"ISO-2022-KR", "\x1B$)C  \x0Elm\\be^\x0F ", L"  \u65E5\u672C\u8A9E "},
    {"EUC-KR", "  \xEC\xED\xDC\xE2\xE5\xDE ", L"  \u65E5\u672C\u8A9E "},
    {"GB18030", "\x81\x30\x85\x38 \x81\x30\x87\x33 \xC8\xD5\xB1\xBE\xD5Z \x94\x39\xE7\x34",
     L"\u00B5 \u00C5 \u65E5\u672C\u8A9E \xD83D\xDD2C"},
    {"UTF-8", "\xC2\xB5 \xC3\x85 \xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E \xF0\x9F\x94\xAC",
     L"\u00B5 \u00C5 \u65E5\u672C\u8A9E \xD83D\xDD2C"},
};

VPropstring all_of_it() { return std::wstring(L"\u00B5 \u00C5 \u65E5\u672C\u8A9E \xD83D\xDD2C"); }

TEST(CodesetTest, WhatACodesetHasIsWrittenAndAllElseDropped) {
  for (const Row& row : rows) {
    const ScopedCodeset local(row.codeset);
    EXPECT_EQ(all_of_it().to(VPropstring::encoding_local), row.bytes) << row.codeset;
  }
}

TEST(CodesetTest, WhatWasWrittenIsRead) {
  for (const Row& row : rows) {
    const ScopedCodeset local(row.codeset);
    EXPECT_EQ(VPropstring(row.bytes, VPropstring::encoding_local), std::wstring(row.kept))
        << row.codeset;
  }
}

TEST(CodesetTest, ALoneSurrogateIsDropped) {
  const VPropstring text = std::wstring{L'a', wchar_t{0xD800}, L'b', wchar_t{0xDC00}, L'c'};
  for (const Row& row : rows) {
    const ScopedCodeset local(row.codeset);
    const std::string bytes = text.to(VPropstring::encoding_local);
    EXPECT_EQ(VPropstring(bytes, VPropstring::encoding_local), std::wstring(L"abc")) << row.codeset;
  }
}

TEST(CodesetTest, ASequenceOfTwoOrThreeBytesThatTheEndCutsIsDropped) {
  for (const char* const codeset :
       {"Shift_JIS", "GB2312", "KS_C_5601-1987", "Big5", "EUC-JP", "EUC-KR", "GB18030", "UTF-8"}) {
    const ScopedCodeset local(codeset);
    const VPropstring text = std::wstring(L"a\u65E5");
    std::string bytes = text.to(VPropstring::encoding_local);
    while (bytes.size() > 2) {
      bytes.pop_back();
      EXPECT_EQ(VPropstring(bytes, VPropstring::encoding_local), std::wstring(L"a")) << codeset;
    }
  }
}

struct Cut {
  const char* codeset;
  const char* bytes;
  const wchar_t* left;
};

TEST(CodesetTest, OfACutSequenceBytesThatAreCharactersStay) {
  for (const Cut& cut :
       {Cut{"GB18030", "a\x81", L"a"}, Cut{"GB18030", "a\x81\x30", L"a0"},
        Cut{"GB18030", "a\x81\x30\x85", L"a0"}, Cut{"ISO-2022-JP", "a\x1B", L"a"},
        Cut{"ISO-2022-JP", "a\x1B$", L"a$"}, Cut{"ISO-2022-KR", "\x1B$)", L"$)"}}) {
    const ScopedCodeset local(cut.codeset);
    EXPECT_EQ(VPropstring(cut.bytes, VPropstring::encoding_local), std::wstring(cut.left))
        << cut.codeset;
  }
}

TEST(CodesetTest, ACodesetThatIsNotKnownIsRefused) {
  const ScopedCodeset local("no such codeset");
  VPropstring text(L"before");
  const char* const message = "Invalid or unsupported charset:no such codeset";
  EXPECT_STANDARD_ERROR(text.to(VPropstring::encoding_local),
                        boost::locale::conv::invalid_charset_error, message);
  EXPECT_STANDARD_ERROR(text.from("a", VPropstring::encoding_local),
                        boost::locale::conv::invalid_charset_error, message);
  EXPECT_EQ(text, std::wstring(L"before"));
}

}  // namespace
