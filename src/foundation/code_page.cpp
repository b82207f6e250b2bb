#include "foundation/code_page_internal.h"

#include <vrelio/foundation/format_string.h>

#include <stdexcept>

namespace Vrel::detail {

namespace {

struct CodePage {
  unsigned int number;
  const char* name;
};

// clang-format off
constexpr CodePage code_pages[] = {
    {874, "windows-874"},
    {932, "Shift_JIS"},
    {936, "GB2312"},
    {949, "KS_C_5601-1987"},
    {950, "Big5"},
    {1250, "windows-1250"},
    {1251, "windows-1251"},
    {1252, "windows-1252"},
    {1253, "windows-1253"},
    {1254, "windows-1254"},
    {1255, "windows-1255"},
    {1256, "windows-1256"},
    {1257, "windows-1257"},
    {1258, "windows-1258"},
    {20127, "US-ASCII"},
    {20866, "KOI8-R"},
    {20932, "EUC-JP"},
    {21866, "KOI8-U"},
    {28591, "ISO-8859-1"},
    {28592, "ISO-8859-2"},
    {28593, "ISO-8859-3"},
    {28594, "ISO-8859-4"},
    {28595, "ISO-8859-5"},
    {28596, "ISO-8859-6"},
    {28597, "ISO-8859-7"},
    {28598, "ISO-8859-8"},
    {28599, "ISO-8859-9"},
    {28603, "ISO-8859-13"},
    {28605, "ISO-8859-15"},
    {50220, "ISO-2022-JP"},
    {50225, "ISO-2022-KR"},
    {51932, "EUC-JP"},
    {51949, "EUC-KR"},
    {54936, "GB18030"},
    {65001, "UTF-8"},
};
// clang-format on

}  // namespace

std::string code_page_name(unsigned int number) {
  for (const CodePage& page : code_pages) {
    if (page.number == number) return page.name;
  }
  throw std::runtime_error(format_string("Unknown codepage %u", number));
}

}  // namespace Vrel::detail
