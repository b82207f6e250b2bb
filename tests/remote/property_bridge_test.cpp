// The error that programs raise, and merging.
#include <gtest/gtest.h>
#include <vrelio/remote/property_bridge.h>

#include <string>

#include "remote/trees.h"
#include "support/deep_value.h"
#include "support/expect_error.h"

using Json::Array;
using Json::Object;
using Json::Value;

namespace {

using namespace Vrel::testing;

TEST(NoParameterErrorTest, ItsTextHasTheName) {
  EXPECT_STREQ("No parameter 'gain'", Json::NoParameterError("gain").what());
  EXPECT_STREQ("No parameter ''", Json::NoParameterError("").what());
  EXPECT_STREQ("No parameter '%s%n'", Json::NoParameterError("%s%n").what());
}

TEST(NoParameterErrorTest, IsCaughtAsItselfAndAsAnInvalidArgument) {
  EXPECT_STANDARD_ERROR(throw Json::NoParameterError("gain"), Json::NoParameterError,
                        "No parameter 'gain'");
  EXPECT_STANDARD_ERROR(throw Json::NoParameterError("gain"), std::invalid_argument,
                        "No parameter 'gain'");
}

TEST(NoParameterErrorTest, CopiesHaveTheSameText) {
  const Json::NoParameterError error("gain");
  const Json::NoParameterError copy(error);
  Json::NoParameterError assigned("other");
  assigned = error;
  EXPECT_STREQ("No parameter 'gain'", copy.what());
  EXPECT_STREQ("No parameter 'gain'", assigned.what());
}

std::string merged(const Object& source, Object target) {
  Json::merge(source, target);
  return text_of(target);
}

TEST(MergeTest, TheTargetWins) {
  EXPECT_EQ(R"({"a":2})", merged({{"a", Value(1)}}, {{"a", Value(2)}}));
}

TEST(MergeTest, WhatTheTargetLacksIsCopied) {
  const Object source{{"a", Value(1)}, {"c", Object{{"x", Array{Value(2.5)}}}}, {"", Value("e")}};
  EXPECT_EQ(R"({"":"e","a":1,"b":true,"c":{"x":[2.5]}})", merged(source, {{"b", Value(true)}}));
}

TEST(MergeTest, MapsUnderOneKeyAreMerged) {
  EXPECT_EQ(R"({"m":{"x":1,"y":2}})",
            merged({{"m", Object{{"x", Value(1)}}}}, {{"m", Object{{"y", Value(2)}}}}));
}

TEST(MergeTest, MapsInMapsAreMergedAndTheTargetWinsThereToo) {
  const Value source(Object{{"m", Object{{"n", Object{{"x", Value(1)}, {"y", Value(1)}}}}}});
  const Value target(Object{{"m", Object{{"n", Object{{"y", Value(2)}, {"z", Value(2)}}}}}});
  EXPECT_EQ(R"({"m":{"n":{"x":1,"y":2,"z":2}}})", merged(source.map(), target.map()));
}

TEST(MergeTest, AValueOfTheTargetStaysWhateverTheKindsAre) {
  const Object map{{"x", Value(1)}};
  EXPECT_EQ(R"({"m":1})", merged({{"m", map}}, {{"m", Value(1)}}));
  EXPECT_EQ(R"({"m":{"x":1}})", merged({{"m", Value(1)}}, {{"m", map}}));
  EXPECT_EQ(R"({"m":null})", merged({{"m", map}}, {{"m", Value()}}));
  EXPECT_EQ("{\"m\":[2]}", merged({{"m", Array{Value(1)}}}, {{"m", Array{Value(2)}}}));
}

TEST(MergeTest, TheSourceStaysAsItIs) {
  const Object source{{"m", Object{{"x", Value(1)}}}};
  Object target{{"m", Object{{"y", Value(2)}}}};
  Json::merge(source, target);
  target["m"]["x"] = 3;
  EXPECT_EQ(R"({"m":{"x":1}})", text_of(source));
}

TEST(MergeTest, NothingComesOfNothing) {
  EXPECT_EQ("{}", merged({}, {}));
  EXPECT_EQ(R"({"a":1})", merged({{"a", Value(1)}}, {}));
  EXPECT_EQ(R"({"a":1})", merged({}, {{"a", Value(1)}}));
}

TEST(MergeTest, AMapMergedIntoItselfStays) {
  Object map{{"m", Object{{"x", Value(1)}}}};
  Json::merge(map, map);
  EXPECT_EQ(R"({"m":{"x":1}})", text_of(map));
}

TEST(MergeTest, DepthTakesNoStack) {
  const Value source = nested_maps(deep_levels, Object{{"s", Value(1)}});
  Value target = nested_maps(deep_levels, Object{{"t", Value(2)}});
  Json::merge(source.map(), target.map());
  const Value expected = nested_maps(deep_levels, Object{{"s", Value(1)}, {"t", Value(2)}});
  EXPECT_TRUE(target == expected);
}

}  // namespace
