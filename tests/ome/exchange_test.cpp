#include "ome/exchange_internal.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "support/deep_value.h"

namespace {

using Json::Value;

TEST(OmeExchangeTest, DepthTakesNoStack) {
  Json::Array remains;
  Value value = nested_both(deep_levels, 1);
  EXPECT_TRUE(Ome::exchange_below(value, nested_both(deep_levels, 2), remains));
  EXPECT_EQ(value, nested_both(deep_levels, 2));
  EXPECT_FALSE(Ome::exchange_below(value, nested_both(deep_levels, 2), remains));
  Value maps = nested_maps(deep_levels, 1);
  EXPECT_TRUE(Ome::exchange_below(maps, Value(), remains));
  EXPECT_TRUE(remains.empty());
}

TEST(OmeExchangeTest, ContainersThatGoAreKept) {
  Json::Array remains;
  Value value = Json::Object{{"a", Json::Array{1, 2, 3}}, {"b", Json::Object{{"c", 1}}}, {"d", 4}};
  const Value* const c = &value["b"]["c"];
  const Value* const third = &value["a"].array().back();
  EXPECT_TRUE(Ome::exchange_below(
      value, Json::Object{{"a", Json::Array{1, 2}}, {"b", "text"}, {"d", 5}}, remains));
  ASSERT_EQ(remains.size(), 2U);
  EXPECT_EQ(&*std::find(remains.begin(), remains.end(), Value(3)), third);
  EXPECT_EQ(*c, Value(1));
}

}  // namespace
