#include "lib/printable_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Vrel::tool {
namespace {

TEST(PrintableTextTest, ReadableTextStaysAsItIs) {
  EXPECT_EQ(printable("a \"b\" \\ \xC2\xB5m \xE2\x82\xAC \xF0\x9F\x94\xAC"),
            "a \"b\" \\ \xC2\xB5m \xE2\x82\xAC \xF0\x9F\x94\xAC");
}

TEST(PrintableTextTest, ControlCharactersAreEscaped) {
  EXPECT_EQ(printable("\n\r\t\x1B[2J\x7F"), "\\n\\r\\t\\x1B[2J\\x7F");
  EXPECT_EQ(printable(std::string_view("\0", 1)), "\\x00");
  EXPECT_EQ(printable("\xC2\x9B"
                      "2J"),
            "\\u009B2J");
}

TEST(PrintableTextTest, CharactersThatTurnTheReadingDirectionAreEscaped) {
  EXPECT_EQ(printable("\xE2\x80\xAE\xE2\x81\xA6\xE2\x80\xA8"), "\\u202E\\u2066\\u2028");
}

TEST(PrintableTextTest, BytesThatAreNoUtf8AreReplaced) {
  EXPECT_EQ(printable("a\x9B\xFF"
                      "b"),
            "a\xEF\xBF\xBD"
            "b");
}

TEST(PrintableTextTest, QuotedTextEscapesItsMarks) {
  EXPECT_EQ(quote(""), "\"\"");
  EXPECT_EQ(quote("a\"b\\n\n"), "\"a\\\"b\\\\n\\n\"");
}

TEST(PrintableTextTest, LongTextIsCutAndItsSizeTold) {
  EXPECT_EQ(quote(std::string(200, 'a')), '"' + std::string(200, 'a') + '"');
  EXPECT_EQ(quote(std::string(201, 'a')), '"' + std::string(200, 'a') + "\".. (201 bytes)");
}

TEST(PrintableTextTest, CuttingDoesNotSplitACharacter) {
  EXPECT_EQ(quote(std::string(199, 'a') + "\xE2\x82\xAC"),
            '"' + std::string(199, 'a') + "\".. (202 bytes)");
}

TEST(PrintableTextTest, CuttingFindsAnEndInBrokenText) {
  EXPECT_EQ(quote(std::string(1000, '\x80')), "\"\xEF\xBF\xBD\".. (1000 bytes)");
}

}  // namespace
}  // namespace Vrel::tool
