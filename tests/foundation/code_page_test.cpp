#include "foundation/code_page_internal.h"

#include <gtest/gtest.h>

#include <boost/locale/encoding.hpp>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "foundation/scoped_digit_groups.h"

namespace {

using Vrel::detail::code_page_name;
using Vrel::testing::ScopedDigitGroups;

std::vector<std::pair<unsigned, std::string>> documented_pages() {
  std::vector<std::pair<unsigned, std::string>> pages = {
      {874, "windows-874"},    {932, "Shift_JIS"},     {936, "GB2312"},
      {949, "KS_C_5601-1987"}, {950, "Big5"},          {20127, "US-ASCII"},
      {20866, "KOI8-R"},       {20932, "EUC-JP"},      {21866, "KOI8-U"},
      {28603, "ISO-8859-13"},  {28605, "ISO-8859-15"}, {50220, "ISO-2022-JP"},
      {50225, "ISO-2022-KR"},  {51932, "EUC-JP"},      {51949, "EUC-KR"},
      {54936, "GB18030"},      {65001, "UTF-8"}};
  for (unsigned number = 1250; number <= 1258; ++number) {
    pages.emplace_back(number, "windows-" + std::to_string(number));
  }
  for (unsigned part = 1; part <= 9; ++part) {
    pages.emplace_back(28590 + part, "ISO-8859-" + std::to_string(part));
  }
  return pages;
}

TEST(CodePageTest, EachNumberHasItsName) {
  for (const auto& [number, name] : documented_pages()) EXPECT_EQ(name, code_page_name(number));
}

TEST(CodePageTest, EachNameIsKnownToTheConverter) {
  namespace conv = boost::locale::conv;
  for (const auto& [number, name] : documented_pages()) {
    const std::string bytes = conv::from_utf<char>(std::string("a"), name, conv::stop);
    EXPECT_EQ("a", conv::to_utf<char>(bytes, name, conv::stop)) << number;
  }
}

TEST(CodePageTest, AnyOtherNumberIsNamedInTheError) {
  for (const unsigned number : {0U, 1249U, 1259U, 28590U, 28600U, 28604U, 65000U}) {
    try {
      code_page_name(number);
      ADD_FAILURE() << number;
    } catch (const std::runtime_error& error) {
      EXPECT_EQ("Unknown codepage " + std::to_string(number), error.what());
    }
  }
}

TEST(CodePageTest, TheNumberInTheErrorIsThatOfNoLocale) {
  const ScopedDigitGroups groups;
  try {
    code_page_name(1259);
    ADD_FAILURE();
  } catch (const std::runtime_error& error) {
    EXPECT_STREQ("Unknown codepage 1259", error.what());
  }
}

}  // namespace
