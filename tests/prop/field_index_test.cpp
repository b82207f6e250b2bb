#include "prop/field_index_internal.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <string>
#include <vector>

#include "support/expect_error.h"

namespace {

using Vrel::detail::Field_index;
using Vrel::detail::Field_search_budget;
using Vrel::detail::Xml_error;

constexpr std::size_t many = 1000;

TEST(FieldIndexTest, AFieldIsAddedOnce) {
  Field_search_budget budget;
  VPropstruct fields;
  Field_index index(fields, many, budget);
  index.at("a") = VProp(1);
  index.at("a") = VProp(2);
  ASSERT_EQ(fields.size(), 1U);
  EXPECT_EQ(fields[0].second, VProp(2));
}

TEST(FieldIndexTest, FieldsThatWereThereAreFound) {
  Field_search_budget budget;
  VPropstruct fields;
  fields.emplace_back("a", VProp(1));
  EXPECT_EQ(Field_index(fields, many, budget).at("a"), VProp(1));
}

TEST(FieldIndexTest, OfFieldsOfTheSameNameTheFirstIsFound) {
  Field_search_budget budget;
  VPropstruct fields;
  fields.emplace_back("a", VProp(1));
  fields.emplace_back("a", VProp(2));
  EXPECT_EQ(Field_index(fields, many, budget).at("a"), VProp(1));
}

TEST(FieldIndexTest, ANameThatIsNoneIsRefused) {
  Field_search_budget budget;
  VPropstruct fields;
  EXPECT_VREL_ERROR(Field_index(fields, many, budget).at("1"),
                    "Error parsing prop path: '1' is not a valid name!", -1);
}

TEST(FieldSearchBudgetTest, ABudgetIsSpentToItsEnd) {
  Field_search_budget budget;
  for (int i = 0; i < 4; ++i) budget.spend(1u << 27);
  EXPECT_STANDARD_ERROR(budget.spend(1), Xml_error,
                        "Too many fields are added to structs that have many");
}

TEST(FieldIndexTest, FewFieldsAreFoundWithoutAnIndex) {
  Field_search_budget budget;
  VPropstruct fields;
  Field_index index(fields, 1, budget);
  index.at("a") = VProp(1);
  EXPECT_TRUE(index.has("a"));
  EXPECT_FALSE(index.has("b"));
  EXPECT_EQ(index.at("a"), VProp(1));
}

// Of a struct whose field `a` has a thousand fields.
void spend_all(const char* path) {
  Field_search_budget budget;
  VPropstruct fields;
  for (int i = 0; i < 1000; ++i) fields["a"].get<VPropstruct>().emplace_back("b", VProp());
  for (int i = 0; i < 600000; ++i) Field_index(fields, many, budget).at(path);
}

TEST(FieldIndexTest, PathsThroughLargeStructsUseUpTheBudget) {
  EXPECT_THROW(spend_all("a.b"), Xml_error);
}

TEST(FieldIndexTest, NamesDoNotUseUpTheBudget) { EXPECT_NO_THROW(spend_all("a")); }

TEST(FieldIndexTest, FieldsThatAreThereUseUpTheBudget) {
  Field_search_budget budget;
  VPropstruct fields(1u << 13);
  for (int i = 0; i < 1 << 13; ++i) Field_index(fields, 8, budget);
  EXPECT_THROW(Field_index(fields, 8, budget), Xml_error);
}

RC_GTEST_PROP(FieldIndexTest, ManyNamesGiveTheFieldsThatTheStructGives, ()) {
  const auto names = *rc::gen::container<std::vector<std::string>>(
      rc::gen::element<std::string>("a", "b", "c.d", "c", "c.e.f", "e."));
  Field_search_budget budget;
  VPropstruct fields;
  VPropstruct plain;
  Field_index index(fields, many, budget);
  for (const std::string& name : names) {
    RC_ASSERT(index.has(name) == plain.has_key(name));
    index.at(name);
    plain[name];
  }
  RC_ASSERT(VProp(fields) == VProp(plain));
}

}  // namespace
