#include "foundation/name_table_internal.h"

#include <gtest/gtest.h>

#include "support/expect_error.h"

namespace {

using Vrel::detail::name_row;
using Vrel::detail::name_table;

constexpr name_row rows[] = {{4, "four"}, {0, "nothing"}, {5, "five"}, {4, "quatre"}, {7, "five"}};
constexpr name_table table(rows);

TEST(NameTableTest, ReadsBothWays) {
  EXPECT_STREQ(table.get_name(5), "five");
  EXPECT_EQ(table.get_id("four"), 4);
}

TEST(NameTableTest, TheFirstOfSeveralRowsCounts) {
  EXPECT_STREQ(table.get_name(4), "four");
  EXPECT_EQ(table.get_id("five"), 5);
  EXPECT_EQ(table.get_id("quatre"), 4);
}

TEST(NameTableTest, AnIdWithoutARowHasTheNameOfZero) {
  EXPECT_STREQ(table.get_name(6), "nothing");
  EXPECT_STREQ(table.get_name(-4), "nothing");
}

TEST(NameTableTest, WithoutARowForZeroAnUnknownIdRaises) {
  static constexpr name_row no_default[] = {{4, "four"}};
  constexpr name_table strict(no_default);
  EXPECT_STREQ(strict.get_name(4), "four");
  EXPECT_VREL_ERROR(strict.get_name(5), "Map entry not found and no default specified!", -1);
  EXPECT_VREL_ERROR(strict.get_name(0), "Map entry not found and no default specified!", -1);
}

TEST(NameTableTest, ANameThatIsNotThereHasTheIdZero) {
  EXPECT_EQ(table.get_id("Four"), 0);
  EXPECT_EQ(table.get_id("fou"), 0);
  EXPECT_EQ(table.get_id("fours"), 0);
  EXPECT_EQ(table.get_id(""), 0);
}

TEST(NameTableTest, TheMaskHoldsForEveryId) {
  static constexpr name_row flagged[] = {{0x10 | 4, "four"}, {0x10, "nothing"}};
  constexpr name_table masked(flagged, 0xF);
  EXPECT_STREQ(masked.get_name(4), "four");
  EXPECT_STREQ(masked.get_name(0x20 | 4), "four");
  EXPECT_STREQ(masked.get_name(3), "nothing");
  EXPECT_EQ(masked.get_id("four"), 4);
}

}  // namespace
