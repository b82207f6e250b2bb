#include "lib/ome_units.h"

#include <gtest/gtest.h>

namespace Vrel::tool {
namespace {

// Factor and dimension; 0 for no unit.
double metres(const std::string& name) {
  const auto unit = ome_unit(name);
  return unit && unit->exponents()[0] == si::fraction(1) ? unit->value_in_baseunits() : 0.0;
}

double seconds(const std::string& name) {
  const auto unit = ome_unit(name);
  return unit && unit->exponents()[2] == si::fraction(1) ? unit->value_in_baseunits() : 0.0;
}

TEST(OmeUnitsTest, EveryLengthOfTheSchemaIsAUnit) {
  for (const char* const name :
       {"Ym",   "Zm", "Em", "Pm",        "Tm", "Gm", "Mm", "km", "hm", "dam", "m",
        "dm",   "cm", "mm", "\xC2\xB5m", "nm", "pm", "fm", "am", "zm", "ym",  "\xE2\x84\xAB",
        "thou", "li", "in", "ft",        "yd", "mi", "ua", "ly", "pc", "pt"}) {
    EXPECT_GT(metres(name), 0.0) << name;
  }
}

TEST(OmeUnitsTest, EveryTimeOfTheSchemaIsAUnit) {
  for (const char* const name :
       {"Ys", "Zs", "Es",        "Ps", "Ts", "Gs", "Ms", "ks", "hs", "das", "s", "ds",
        "cs", "ms", "\xC2\xB5s", "ns", "ps", "fs", "as", "zs", "ys", "min", "h", "d"}) {
    EXPECT_GT(seconds(name), 0.0) << name;
  }
}

TEST(OmeUnitsTest, FactorsAreThoseOfTheUnits) {
  EXPECT_EQ(metres("\xC2\xB5m"), 1e-6);
  EXPECT_EQ(metres("\xE2\x84\xAB"), 1e-10);
  EXPECT_EQ(metres("in"), 0.0254);
  EXPECT_EQ(metres("ly"), 9460730472580800.0);
  EXPECT_EQ(seconds("min"), 60.0);
  EXPECT_EQ(seconds("das"), 10.0);
  EXPECT_EQ(metres("Mm"), 1e6);
  EXPECT_EQ(metres("mm"), 1e-3);
}

TEST(OmeUnitsTest, WhatIsNoLengthAndNoTimeIsNoUnit) {
  for (const char* const name :
       {"", "pixel", "reference frame", "um", "\xB5m", "W", "xm", "m ", "mmm"}) {
    EXPECT_FALSE(ome_unit(name)) << name;
  }
}

TEST(OmeUnitsTest, SignsThatLookAlikeAreSpelledAsTheSchemaDoes) {
  EXPECT_EQ(ome_spelling("\xCE\xBCm"), "\xC2\xB5m");
  EXPECT_EQ(ome_spelling("\xC3\x85"), "\xE2\x84\xAB");
  EXPECT_EQ(ome_spelling("nm"), "nm");
}

}  // namespace
}  // namespace Vrel::tool
