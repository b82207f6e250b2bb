// Identifiers as texts for people.
#include <gtest/gtest.h>
#include <vrelio/container/bf_file.h>
#include <vrelio/foundation/error.h>

#include <string>

namespace {

void report(int id, const char* text) { VrelError()("%s", text)(id).process(); }

TEST(ErrorTextTest, ZeroIsNoError) {
  report(-4, "something");
  EXPECT_STREQ(vrel_bf_get_errorstring(0), "");
}

TEST(ErrorTextTest, ACodeBelowZeroStandsForTheLastError) {
  report(-4, "No VBF file header found!");
  for (const int code : {-4, -1, -99}) {
    EXPECT_STREQ(vrel_bf_get_errorstring(code),
                 "Error in vbf module: Error in file format\nNo VBF file header found!");
  }
}

TEST(ErrorTextTest, WithoutALastErrorThereIsNoText) {
  report(0, "nothing");
  EXPECT_STREQ(vrel_bf_get_errorstring(-99), "");
}

TEST(ErrorTextTest, ACodeAboveZeroIsLookedUpAlone) {
  report(-4, "something");
  EXPECT_STREQ(vrel_bf_get_errorstring(5), "Error in vbf module: Error in vbf routine");
}

TEST(ErrorTextTest, EveryIdentifierHasItsText) {
  struct Row {
    int id;
    const char* text;
  };
  for (const Row& row : {Row{-3, "Filesystem error"}, Row{-4, "Error in file format"},
                         Row{-5, "Error during type conversion"}, Row{-6, "Stack index error"},
                         Row{-7, "Error in vbf routine"}, Row{-8, "Invalid string buffer supplied"},
                         Row{-9, "Problem with vbf handle"}, Row{-10, "Error in vbf filter queue"},
                         Row{-11, "Operation cancelled by caller"}, Row{-1, "Error in vbf routine"},
                         Row{-15, "Error in vbf routine"}, Row{1, "Error in vbf routine"}}) {
    report(row.id, "x");
    EXPECT_EQ(std::string(vrel_bf_get_errorstring(-1)),
              "Error in vbf module: " + std::string(row.text) + "\nx");
  }
}

TEST(ErrorTextTest, EveryTextStandsInTheSamePlace) {
  report(-4, "something");
  const char* const first = vrel_bf_get_errorstring(-1);
  EXPECT_EQ(vrel_bf_get_errorstring(0), first);
  EXPECT_STREQ(first, "");
}

TEST(ErrorTextTest, ALongTextIsCut) {
  report(-3, std::string(4000, 'x').c_str());
  const std::string text = vrel_bf_get_errorstring(-1);
  EXPECT_EQ(text.size(), 2047u);
  EXPECT_EQ(text.back(), 'x');
}

}  // namespace
