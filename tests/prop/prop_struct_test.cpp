#include <gtest/gtest.h>
#include <vrelio/prop/prop_struct.h>

#include <string>
#include <utility>
#include <vector>

#include "support/expect_error.h"

namespace {

std::vector<std::string> names(const VPropstruct& fields) {
  std::vector<std::string> all;
  for (const auto& field : fields) all.push_back(field.first);
  return all;
}

using Names = std::vector<std::string>;

TEST(PropstructTest, FieldsKeepTheOrderInWhichTheyCame) {
  VPropstruct fields;
  fields["z"] = 1;
  fields["a"] = 2;
  fields["m"] = 3;
  EXPECT_EQ(names(fields), (Names{"z", "a", "m"}));
}

TEST(PropstructTest, ErasingLeavesTheOthersInOrder) {
  VPropstruct fields;
  fields["z"] = 1;
  fields["a"] = 2;
  fields["m"] = 3;
  EXPECT_TRUE(fields.erase("a"));
  EXPECT_EQ(names(fields), (Names{"z", "m"}));
  EXPECT_FALSE(fields.erase("a"));
}

TEST(PropstructTest, ErasingByPlaceIsThatOfTheVector) {
  VPropstruct fields;
  fields["z"] = 1;
  fields["a"] = 2;
  fields.erase(fields.begin());
  EXPECT_EQ(names(fields), Names{"a"});
}

TEST(PropstructTest, NamesAreComparedByteByByte) {
  VPropstruct fields;
  fields["a"] = 1;
  EXPECT_TRUE(fields.has_key("a"));
  EXPECT_FALSE(fields.has_key("A"));
  EXPECT_FALSE(fields.has_key("a "));
}

TEST(PropstructTest, ANameIsNoPath) {
  VPropstruct fields;
  fields["a.b"] = 1;
  EXPECT_FALSE(fields.has_key("a.b"));
  EXPECT_EQ(fields.find("a.b"), fields.end());
}

TEST(PropstructTest, OfANameThatStandsTwiceTheFirstCounts) {
  VPropstruct fields;
  fields.emplace_back("a", VProp(1));
  fields.emplace_back("a", VProp(2));
  EXPECT_EQ(fields["a"].get<int>(), 1);
  EXPECT_EQ(std::as_const(fields).find("a")->second.get<int>(), 1);
  fields.erase("a");
  EXPECT_EQ(fields["a"].get<int>(), 2);
}

TEST(PropstructTest, PlacesAreThoseOfTheVector) {
  VPropstruct fields;
  fields["a"] = 1;
  EXPECT_EQ(fields[0].first, "a");
}

TEST(PropstructTest, AnEmptyPathIsNone) {
  VPropstruct fields;
  EXPECT_VREL_ERROR(fields.getp("", true), "Error parsing prop path: empty path!", -1);
  EXPECT_VREL_ERROR(std::as_const(fields).getp(""), "Error parsing prop path: empty path!", -1);
}

TEST(PropstructTest, APathBeginsWithAField) {
  VPropstruct fields;
  EXPECT_VREL_ERROR(fields.getp("{0}.a", true),
                    "Expected path ...'{0}.a' to start with struct member!", -1);
  EXPECT_VREL_ERROR(fields.getp("(0).a", true),
                    "Expected path ...'(0).a' to start with struct member!", -1);
}

TEST(PropstructTest, APathLeadsThroughFields) {
  VPropstruct fields;
  fields["a.b{1}"] = 7;
  EXPECT_EQ(std::as_const(fields)["a.b{1}"].get<int>(), 7);
}

TEST(PropstructTest, AMissingFieldIsNamed) {
  VPropstruct fields;
  fields["a.b"] = 1;
  EXPECT_VREL_ERROR(std::as_const(fields)["a.x"], "Struct member 'x' does not exist!", -1);
  EXPECT_VREL_ERROR(fields.getp("y", false), "Struct member 'y' does not exist!", -1);
  EXPECT_EQ(names(fields), Names{"a"});
}

TEST(PropstructTest, AddingFieldsMovesThoseThatStand) {
  VPropstruct fields;
  fields["a"] = "text";
  fields["a"].lock();
  const void* const held = std::as_const(fields)["a"].value_ptr();
  for (int i = 0; i < 100; ++i) fields["f" + std::to_string(i)] = i;
  EXPECT_EQ(std::as_const(fields)["a"].value_ptr(), held);
}

TEST(PropstructTest, ReservingMovesWithoutCopies) {
  VPropstruct fields;
  fields["a"] = "text";
  fields["a"].lock();
  const void* const held = std::as_const(fields)["a"].value_ptr();
  vrel_prop_reserve(fields, 100);
  EXPECT_GE(fields.capacity(), 100U);
  EXPECT_EQ(names(fields), Names{"a"});
  EXPECT_EQ(std::as_const(fields)["a"].value_ptr(), held);
}

TEST(PropstructTest, ReservingTakesANewPlaceUnlessThereIsMoreRoom) {
  VPropstruct fields;
  fields.reserve(10);
  fields["a"] = 1;
  const auto* const place = fields.data();
  vrel_prop_reserve(fields, 9);
  EXPECT_EQ(fields.data(), place);
  vrel_prop_reserve(fields, 10);
  EXPECT_NE(fields.data(), place);
  EXPECT_EQ(names(fields), Names{"a"});
}

}  // namespace
