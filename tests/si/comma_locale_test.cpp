// What the tests of numbers rely on.
#include "si/comma_locale.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <string>

namespace {

std::string written(double value) {
  std::ostringstream stream;
  stream << value;
  return stream.str();
}

TEST(CommaLocaleTest, StreamsWriteACommaForAsLongAsItLives) {
  {
    const si::testing::CommaLocale commas;
    EXPECT_EQ(written(1234.5), "1.234,5");
  }
  EXPECT_EQ(written(1234.5), "1234.5");
}

TEST(CommaLocaleTest, TheCLibraryReadsACommaForAsLongAsItLives) {
  const char* const path = std::getenv("LOCPATH");
  if (path == nullptr || !std::filesystem::exists(std::filesystem::path(path) / "de_DE.UTF-8")) {
    GTEST_SKIP() << "localedef has built no locale with a decimal comma";
  }
  {
    const si::testing::CommaLocale commas;
    EXPECT_STREQ(std::localeconv()->decimal_point, ",");
    EXPECT_EQ(std::strtod("1,5", nullptr), 1.5);
  }
  EXPECT_STREQ(std::localeconv()->decimal_point, ".");
}

}  // namespace
