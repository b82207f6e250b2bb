#include "lib/axis_letters.h"

#include <gtest/gtest.h>

namespace Vrel::tool {
namespace {

std::string letters(const std::vector<std::string>& labels) {
  std::string text;
  for (const char letter : axis_letters(labels)) text += letter == no_letter ? '-' : letter;
  return text;
}

TEST(AxisLettersTest, ALabelNamesALetter) {
  const std::pair<const char*, char> rows[] = {{"X", 'X'},
                                               {"z", 'Z'},
                                               {"ExpControl Y", 'Y'},
                                               {"GalvoX", 'X'},
                                               {"T", 'T'},
                                               {"Channel", 'C'},
                                               {"TIME", 'T'},
                                               {"stage_t", 'T'},
                                               {"\xCE\x9B", 'C'},
                                               {"lambda", 'C'},
                                               {"", no_letter},
                                               {"yy", no_letter},
                                               {"OPT", no_letter},
                                               {"axis 1", no_letter},
                                               {"X ", no_letter},
                                               {"\xFF", no_letter}};
  for (const auto& [label, letter] : rows) EXPECT_EQ(letter_of(label), letter) << label;
}

TEST(AxisLettersTest, LabelsComeBeforePositions) {
  const std::pair<std::vector<std::string>, const char*> rows[] = {
      {{}, ""},
      {{""}, "X"},
      {{"", "", "", "", ""}, "XYZTC"},
      {{"", "", "", "", "", "", ""}, "XYZTC--"},
      {{"X", "Y", "C", "Z"}, "XYCZ"},
      {{"X", "Y", "C", "", ""}, "XYCZT"},
      {{"T", "X", "Y"}, "TXY"},
      {{"X", "Z"}, "XZ"},
      {{"", "X"}, "ZX"},
      {{"X", "X", "X"}, "XYZ"},
      {{"Y", "Y"}, "YZ"}};
  for (const auto& [labels, expected] : rows) EXPECT_EQ(letters(labels), expected);
}

}  // namespace
}  // namespace Vrel::tool
