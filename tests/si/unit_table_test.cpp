#include "si/unit_table_internal.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "si/print_values.h"

namespace si::detail {
namespace {

TEST(UnitTableTest, TheFirstRowsAreTheBaseUnitsByDimension) {
  constexpr const char* names[] = {"m", "kg", "s", "A", "K", "mol", "cd", "rad", "sr"};
  for (std::size_t i = 0; i < dimension_count; ++i) {
    exponent_list exponents;
    exponents[i] = 1;
    EXPECT_EQ(unit_table()[i].name, names[i]);
    EXPECT_EQ(unit_table()[i], value(1.0, exponents)) << names[i];
  }
}

TEST(UnitTableTest, IsBuiltOnceAndHasAllRows) {
  EXPECT_EQ(unit_table().size(), 41u);
  EXPECT_EQ(&unit_table(), &unit_table());
}

TEST(UnitTableTest, DerivedUnitsAreProductsOfOthers) {
  struct {
    const char* name;
    const char* product;
  } const rows[] = {{"", "1"},
                    {"Hz", "s^-1"},
                    {"N", "kg*m/s^2"},
                    {"Pa", "N/m^2"},
                    {"J", "N*m"},
                    {"W", "J/s"},
                    {"C", "A*s"},
                    {"V", "W/A"},
                    {"F", "C/V"},
                    {"ohm", "V/A"},
                    {"S", "A/V"},
                    {"Wb", "V*s"},
                    {"T", "Wb/m^2"},
                    {"H", "Wb/A"},
                    {"lm", "cd*sr"},
                    {"lux", "lm/m^2"},
                    {"Bq", "1/s"},
                    {"Gy", "J/kg"},
                    {"g", "kg/1000"},
                    {"t", "1000*kg"},
                    {"deg", "rad/57.29577951308232"},
                    {"angstrom", "0.1 nm"},
                    {"fermi", "fm"},
                    {"barn", "100*fm^2"},
                    {"h", "3600 s"},
                    {"eV", "e*V"},
                    {"bar", "100000 Pa"},
                    {"G", "1e-4 T"},
                    {"Ci", "37 GBq"}};
  for (const auto& [name, product] : rows) {
    ASSERT_NE(find_unit(name), nullptr) << name;
    EXPECT_EQ(*find_unit(name), value(std::string(product))) << name;
  }
}

TEST(UnitTableTest, MeasuredFactorsAreThoseOfTheTable) {
  EXPECT_EQ(find_unit("pc")->value_in_baseunits(), 3.0856775807e16);
  EXPECT_EQ(find_unit("e")->value_in_baseunits(), 1.60217733e-19);
  EXPECT_EQ(find_unit("deg")->value_in_baseunits(), 0.017453292519943295);
}

TEST(UnitTableTest, OfTwoRowsOfOneNameTheFirstCounts) {
  EXPECT_EQ(find_unit("Bq"), &unit_table()[25]);
  EXPECT_EQ(unit_table()[39].name, "Bq");
}

TEST(UnitTableTest, ANameThatIsNoneIsNotFound) {
  for (const char* const name : {"M", "mm", "HZ", "m ", "Ohm"}) EXPECT_EQ(find_unit(name), nullptr);
  EXPECT_EQ(find_unit(std::string_view("m\0", 2)), nullptr);
}

TEST(UnitTableTest, LimitsOfPrefixesFollowTheRows) {
  struct {
    const char* name;
    int min_exp;
    int max_exp;
  } const rows[] = {{"m", -24, 3},  {"kg", 0, 0}, {"s", -24, 0}, {"K", -24, 0},  {"mol", -24, 0},
                    {"rad", -3, 0}, {"sr", 0, 0}, {"g", -24, 3}, {"t", 0, 24},   {"deg", 0, 0},
                    {"e", 0, 0},    {"h", 0, 0},  {"", -24, 24}, {"eV", -24, 24}};
  for (const auto& [name, min_exp, max_exp] : rows) {
    EXPECT_EQ(find_unit(name)->min_exp, min_exp) << name;
    EXPECT_EQ(find_unit(name)->max_exp, max_exp) << name;
  }
}

// The prefix for atto is written but not read.
bool is_readable(const std::string& unit_text) {
  return unit_text.front() != 'a' || unit_text == "angstrom";
}

// Reads the text, writes what it names, and reads that.
void expect_round_trip(const std::string& text) {
  const value read(text);
  ASSERT_TRUE(read.is_valid()) << text;
  std::string number, unit_text;
  read.format(number, unit_text, 15, format_separate | format_prefix);
  if (unit_text.empty() || is_readable(unit_text)) {
    EXPECT_EQ(value(number + ' ' + unit_text), read) << text;
  }
}

TEST(UnitTableTest, EveryUnitWithEveryPrefixThatItMayTakeIsWrittenAndReadAgain) {
  int texts = 0;
  for (const unit& row : unit_table()) {
    expect_round_trip("2.5 " + row.name);
    for (int exponent = row.min_exp; exponent <= row.max_exp; ++exponent) {
      const std::string prefix = written_prefix(exponent);
      if (prefix.empty() || read_prefix(prefix[0]) == no_prefix) continue;
      if (row.name == "t" && exponent < 2) continue;
      const std::string text = "2.5 " + prefix + row.name;
      if (find_unit(prefix + row.name) == nullptr) {
        const value expected(2.5 * power_of_ten(exponent) * row.value_in_baseunits(),
                             row.exponents());
        EXPECT_EQ(value(text), expected) << text;
      }
      expect_round_trip(text);
      ++texts;
    }
  }
  EXPECT_EQ(texts, 529);
}

TEST(UnitPrefixTest, WhatIsWrittenIsReadButForAtto) {
  for (const int exponent :
       {-24, -21, -15, -12, -9, -6, -3, -2, -1, 2, 3, 6, 9, 12, 15, 18, 21, 24}) {
    const std::string written = written_prefix(exponent);
    ASSERT_EQ(written.size(), 1u) << exponent;
    EXPECT_EQ(read_prefix(written[0]), exponent);
  }
  EXPECT_STREQ(written_prefix(-18), "a");
  EXPECT_EQ(read_prefix('a'), no_prefix);
}

TEST(UnitPrefixTest, MicroIsReadInTwoWays) {
  EXPECT_STREQ(written_prefix(-6), "\xB5");
  EXPECT_EQ(read_prefix('\xB5'), -6);
  EXPECT_EQ(read_prefix('u'), -6);
}

TEST(UnitPrefixTest, NothingIsWrittenForOne) { EXPECT_STREQ(written_prefix(0), ""); }

TEST(UnitPrefixTest, OtherExponentsAndCharactersHaveAMark) {
  for (const int exponent : {1, -4, 5, 25, -27, 1000})
    EXPECT_STREQ(written_prefix(exponent), "\x80");
  for (const char c : {'\0', ' ', 'K', 'x', '1', '\x80', '('}) EXPECT_EQ(read_prefix(c), 1000);
}

TEST(PowerOfTenTest, SmallPowersAreExact) {
  EXPECT_EQ(power_of_ten(0), 1.0);
  EXPECT_EQ(power_of_ten(1), 10.0);
  EXPECT_EQ(power_of_ten(22), 1e22);
  EXPECT_EQ(power_of_ten(-3), 1e-3);
  EXPECT_EQ(power_of_ten(-22), 1 / 1e22);
}

TEST(PowerOfTenTest, LargePowersAreCloseToTheirWorth) {
  for (int exponent = -307; exponent <= 308; ++exponent) {
    const double expected = std::stod("1e" + std::to_string(exponent));
    EXPECT_NEAR(power_of_ten(exponent) / expected, 1.0, 1e-14) << exponent;
  }
}

TEST(PowerOfTenTest, WhatADoubleCannotHoldIsInfinityOrZero) {
  EXPECT_EQ(power_of_ten(309), std::numeric_limits<double>::infinity());
  EXPECT_EQ(power_of_ten(-400), 0.0);
}

}  // namespace
}  // namespace si::detail
