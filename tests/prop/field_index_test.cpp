#include "prop/field_index_internal.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <string>
#include <vector>

#include "support/expect_error.h"

namespace {

using Vrel::detail::Field_index;

constexpr std::size_t many = 1000;

TEST(FieldIndexTest, AFieldIsAddedOnce) {
  VPropstruct fields;
  Field_index index(fields, many);
  index.at("a") = VProp(1);
  index.at("a") = VProp(2);
  ASSERT_EQ(fields.size(), 1U);
  EXPECT_EQ(fields[0].second, VProp(2));
}

TEST(FieldIndexTest, FieldsThatWereThereAreFound) {
  VPropstruct fields;
  fields.emplace_back("a", VProp(1));
  EXPECT_EQ(Field_index(fields, many).at("a"), VProp(1));
}

TEST(FieldIndexTest, OfFieldsOfTheSameNameTheFirstIsFound) {
  VPropstruct fields;
  fields.emplace_back("a", VProp(1));
  fields.emplace_back("a", VProp(2));
  EXPECT_EQ(Field_index(fields, many).at("a"), VProp(1));
}

TEST(FieldIndexTest, ANameThatIsNoneIsRefused) {
  VPropstruct fields;
  EXPECT_VREL_ERROR(Field_index(fields, many).at("1"),
                    "Error parsing prop path: '1' is not a valid name!", -1);
}

RC_GTEST_PROP(FieldIndexTest, ManyNamesGiveTheFieldsThatTheStructGives, ()) {
  const auto names = *rc::gen::container<std::vector<std::string>>(
      rc::gen::element<std::string>("a", "b", "c.d", "c", "c.e.f", "e."));
  VPropstruct fields;
  VPropstruct plain;
  Field_index index(fields, many);
  for (const std::string& name : names) {
    RC_ASSERT(index.has(name) == plain.has_key(name));
    index.at(name);
    plain[name];
  }
  RC_ASSERT(VProp(fields) == VProp(plain));
}

}  // namespace
