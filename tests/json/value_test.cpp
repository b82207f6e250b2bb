#include <gtest/gtest.h>
#include <vrelio/json/value.h>

#include <iterator>
#include <limits>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "support/deep_value.h"

using Json::Array;
using Json::Object;
using Json::Value;

namespace {

// One value of each kind, in the order of the kinds.
std::vector<Value> one_of_each_kind() {
  return {Value(),
          Value(true),
          Value(3),
          Value(2.5),
          Value("bytes"),
          Array{Value(1), {}},
          Object{{"key", Value(1)}}};
}

// What a statement that asks for the wrong kind raises.
#define EXPECT_BAD_CAST(statement)                          \
  do {                                                      \
    try {                                                   \
      static_cast<void>(statement);                         \
      ADD_FAILURE() << #statement " raised nothing";        \
    } catch (const std::bad_cast& error) {                  \
      EXPECT_STREQ("bad cast", error.what()) << #statement; \
    }                                                       \
  } while (false)

template <class T>
void expect_only_kind(Json::Kind kind) {
  for (Value& value : one_of_each_kind()) {
    if (value.kind() == kind) {
      EXPECT_NO_THROW(value.get<T>()) << kind;
      EXPECT_NO_THROW(std::as_const(value).get<T>()) << kind;
    } else {
      EXPECT_BAD_CAST(value.get<T>());
      EXPECT_BAD_CAST(std::as_const(value).get<T>());
    }
  }
}

}  // namespace

TEST(ValueTest, ADefaultValueIsNull) {
  EXPECT_EQ(Json::kind_null, Value().kind());
  EXPECT_TRUE(Value().is_null());
  EXPECT_FALSE(Value(false).is_null());
}

TEST(ValueTest, TheKindsAreNumberedInTheirOrder) {
  int number = 0;
  for (const Value& value : one_of_each_kind()) EXPECT_EQ(number++, value.kind());
  EXPECT_EQ(7, number);
}

TEST(ValueTest, AValueHoldsWhatItWasMadeFrom) {
  EXPECT_TRUE(Value(true).get<bool>());
  EXPECT_EQ(-7, Value(-7).get<int>());
  EXPECT_EQ(0.1, Value(0.1).get<double>());
  EXPECT_EQ(std::string("a\0b", 3), Value(std::string("a\0b", 3)).get<std::string>());
  EXPECT_EQ("text", Value("text").get<std::string>());
  EXPECT_EQ(2u, Value(Array{Value(1), Value(2)}).get<Array>().size());
  EXPECT_EQ(1, Value(Object{{"a", 1}}).get<Object>().at("a").get<int>());
  EXPECT_TRUE(Value(nullptr).is_null());
}

TEST(ValueTest, ATextIsNoBooleanAndAPointerIsNoValue) {
  char text[] = "true";
  EXPECT_EQ(Json::kind_string, Value(text).kind());
  EXPECT_EQ(Json::kind_string, Value(static_cast<char*>(text)).kind());
  EXPECT_FALSE((std::is_constructible_v<Value, const int*>));
  EXPECT_FALSE((std::is_constructible_v<Value, Value*>));
}

TEST(ValueTest, ContentIsGivenOutForItsOwnKindOnly) {
  expect_only_kind<bool>(Json::kind_boolean);
  expect_only_kind<int>(Json::kind_integer);
  expect_only_kind<double>(Json::kind_decimal);
  expect_only_kind<std::string>(Json::kind_string);
  expect_only_kind<Array>(Json::kind_array);
  expect_only_kind<Object>(Json::kind_map);
}

TEST(ValueTest, ContentCanBeChangedInPlace) {
  Value value(1);
  value.get<int>() = 5;
  EXPECT_EQ(Value(5), value);
}

TEST(ValueTest, AKeyAccessMakesNullAMap) {
  Value value;
  EXPECT_TRUE(value["a"].is_null());
  EXPECT_EQ(Value(Object{{"a", Value()}}), value);
}

TEST(ValueTest, AKeyAccessFindsOrInserts) {
  Value value(Object{{"a", 1}});
  EXPECT_EQ(Value(1), value["a"]);
  value["b"] = 2;
  value[""] = 3;
  EXPECT_EQ(Value(Object{{"", 3}, {"a", 1}, {"b", 2}}), value);
}

TEST(ValueTest, AKeyAccessToAnotherKindRaises) {
  for (Value& value : one_of_each_kind()) {
    if (value.kind() == Json::kind_null || value.kind() == Json::kind_map) continue;
    const Value before = value;
    EXPECT_BAD_CAST(value["a"]);
    EXPECT_BAD_CAST(value.map());
    EXPECT_BAD_CAST(value.find("a"));
    EXPECT_EQ(before, value);
  }
}

TEST(ValueTest, ABadCastIsTheStandardOne) {
  const std::unique_ptr<std::bad_cast> error = std::make_unique<Json::BadCast>();
  EXPECT_STREQ("bad cast", error->what());
}

TEST(ValueTest, AConstantValueIsNotMadeAMapOrAnArray) {
  const Value null;
  EXPECT_BAD_CAST(null.map());
  EXPECT_BAD_CAST(null.array());
  const Value number(1);
  EXPECT_BAD_CAST(number.array());
}

TEST(ValueTest, FindingDoesNotInsert) {
  const Value value(Object{{"a", 1}});
  ASSERT_NE(nullptr, value.find("a"));
  EXPECT_EQ(Value(1), *value.find("a"));
  EXPECT_EQ(nullptr, value.find("b"));
  EXPECT_EQ(1u, value.map().size());
  EXPECT_EQ(nullptr, Value().find("a"));
}

TEST(ValueTest, AnArrayAccessMakesNullAnEmptyArray) {
  Value value;
  EXPECT_TRUE(value.array().empty());
  EXPECT_EQ(Json::kind_array, value.kind());
}

TEST(ValueTest, AnArrayAccessGivesTheList) {
  Value value(Array{Value(1), Value(2)});
  const Value* const first = &value.array().front();
  EXPECT_EQ(2u, value.array().size());
  EXPECT_EQ(first, &value.array().front());
}

TEST(ValueTest, AnArrayAccessToAnotherKindMakesItTheOnlyItem) {
  for (Value& value : one_of_each_kind()) {
    if (value.kind() == Json::kind_null || value.kind() == Json::kind_array) continue;
    const Value before = value;
    EXPECT_EQ(Array{before}, value.array());
    EXPECT_EQ(Value(Array{before}), value);
  }
}

TEST(ValueTest, ACopyIsDeep) {
  Value original(Object{{"list", Array{Value("a"), Object{{"b", 1}}}}});
  const Value copy = original;
  original["list"].array().back()["b"] = 2;
  EXPECT_EQ(Value(Object{{"list", Array{Value("a"), Object{{"b", 1}}}}}), copy);
}

TEST(ValueTest, EveryKindIsAssignedOverEveryKind) {
  const std::vector<Value> values = one_of_each_kind();
  for (const Value& before : values) {
    for (const Value& after : values) {
      Value value = before;
      value = after;
      EXPECT_EQ(after, value) << before << " became " << value;
    }
  }
}

TEST(ValueTest, AValueCanBecomeAPartOfItself) {
  Value copied(Object{{"a", Array{Value(1), Object{{"b", 2}}}}});
  copied = copied["a"].array().back();
  EXPECT_EQ(Value(Object{{"b", 2}}), copied);

  Value moved(Array{Array{Value("x")}});
  moved = std::move(moved.array().front());
  EXPECT_EQ(Value(Array{Value("x")}), moved);
}

TEST(ValueTest, AnAssignmentToItselfChangesNothing) {
  Value value(Array{Value(1)});
  const Value& same = value;
  value = same;
  EXPECT_EQ(Value(Array{Value(1)}), value);
}

TEST(ValueTest, AMovedValueIsLeftNull) {
  for (Value& value : one_of_each_kind()) {
    const Value copy = value;
    Value target = std::move(value);
    EXPECT_TRUE(value.is_null());  // NOLINT(bugprone-use-after-move): that is what it promises
    EXPECT_EQ(copy, target);
    Value assigned;
    assigned = std::move(target);
    EXPECT_TRUE(target.is_null());  // NOLINT(bugprone-use-after-move)
    EXPECT_EQ(copy, assigned);
  }
}

TEST(ValueTest, PartsStayWhereTheyAreWhenTheWholeIsMoved) {
  Value value(Object{{"a", Array{Value(1)}}});
  Value* const entry = &value["a"];
  Value* const item = &entry->array().front();
  value["b"] = 1;
  entry->array().emplace_back(2);
  Value target = std::move(value);
  EXPECT_EQ(entry, &target["a"]);
  EXPECT_EQ(item, &target["a"].array().front());
}

TEST(ValueTest, ValuesOfDifferentKindsAreNotEqual) {
  const std::vector<Value> values = one_of_each_kind();
  for (const Value& left : values) {
    for (const Value& right : values) {
      EXPECT_EQ(&left == &right, left == right) << left << " and " << right;
      EXPECT_NE(left == right, left != right) << left << " and " << right;
    }
  }
}

TEST(ValueTest, AnIntegerNeverEqualsADecimal) { EXPECT_FALSE(Value(1) == Value(1.0)); }

TEST(ValueTest, NotANumberDiffersFromItself) {
  const Value nan(std::numeric_limits<double>::quiet_NaN());
  EXPECT_FALSE(nan == nan);
  EXPECT_TRUE(nan != nan);
  EXPECT_FALSE(Value(Array{nan}) == Value(Array{nan}));
}

TEST(ValueTest, ZerosOfEitherSignAreEqual) { EXPECT_EQ(Value(0.0), Value(-0.0)); }

TEST(ValueTest, ContentsAreComparedInOrderAndWhole) {
  const Value array(Array{Value(1), Value(2)});
  EXPECT_NE(array, Value(Array{Value(2), Value(1)}));
  EXPECT_NE(array, Value(Array{Value(1)}));
  EXPECT_NE(array, Value(Array{Value(1), Value(2), Value(3)}));
  const Value map(Object{{"a", 1}, {"b", 2}});
  EXPECT_NE(map, Value(Object{{"a", 1}, {"c", 2}}));
  EXPECT_NE(map, Value(Object{{"a", 1}, {"b", 3}}));
  EXPECT_NE(map, Value(Object{{"a", 1}}));
  EXPECT_NE(Value(std::string("a\0b", 3)), Value("a"));
  const Value inner(Array{Array{Array{Value(1)}}});
  EXPECT_NE(inner, Value(Array{Array{Array{Value(2)}}}));
  EXPECT_NE(inner, Value(Array{Array{Array{}}}));
}

TEST(ValueTest, KeysAreOrderedByTheirBytes) {
  Value value;
  for (const char* const key : {"b", "\xC3\xA9", "B", "", "ba", "a"}) value[key];
  std::vector<std::string> keys;
  for (const auto& entry : value.map()) keys.push_back(entry.first);
  EXPECT_EQ((std::vector<std::string>{"", "B", "a", "b", "ba", "\xC3\xA9"}), keys);
}

// The container inside a container.
Value take_container(Value& value) {
  if (value.kind() == Json::kind_map) {
    for (auto& entry : value.map()) {
      if (entry.second.kind() >= Json::kind_array) return std::move(entry.second);
    }
  } else {
    for (Value& item : value.array()) {
      if (item.kind() >= Json::kind_array) return std::move(item);
    }
  }
  return Value();
}

class DeepValueTest : public testing::TestWithParam<Value (*)(int, Value)> {
 protected:
  static Value make(int levels = deep_levels, Value innermost = 1) {
    return GetParam()(levels, std::move(innermost));
  }
};

INSTANTIATE_TEST_SUITE_P(, DeepValueTest, testing::Values(nested_arrays, nested_maps, nested_both));

TEST_P(DeepValueTest, IsDestroyed) {
  auto value = std::make_unique<Value>(make());
  value.reset();
  EXPECT_EQ(nullptr, value);
}

TEST_P(DeepValueTest, IsReplaced) {
  Value value = make();
  value = 5;
  EXPECT_EQ(Value(5), value);
  value = make();
  value = Value(Array());
  EXPECT_EQ(Value(Array()), value);
}

TEST_P(DeepValueTest, IsCopiedAndCompared) {
  const Value value = make();
  Value copy = value;
  EXPECT_TRUE(value == copy);
  EXPECT_FALSE(value == make(deep_levels, 2));
  EXPECT_FALSE(value == make(deep_levels - 2));
}

TEST_P(DeepValueTest, ItsPartsAreDestroyedWhenTakenOut) {
  Value value = make();
  for (int level = 0; level < 10; ++level) value = take_container(value);
  EXPECT_GE(value.kind(), Json::kind_array);
}
