#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>
#include <vrelio/prop/prop.h>
#include <vrelio/prop/prop_array.h>
#include <vrelio/prop/prop_struct.h>

#include <string>
#include <utility>

#include "support/expect_error.h"

namespace {

using Sizes = VProparrayBase::index_list;

// --- Creating

TEST(PropPathTest, WhatIsMissingIsCreated) {
  VProp value;
  value["a.b"] = 1;
  EXPECT_EQ(value.get_id(), Vrel::prop_id<VPropstruct>);
  EXPECT_EQ(std::as_const(value)["a"].get_id(), Vrel::prop_id<VPropstruct>);
  EXPECT_EQ(std::as_const(value)["a"]["b"].get<int>(), 1);
}

TEST(PropPathTest, CellsAndStructArraysAreCreated) {
  VProp value;
  value["x{2}(1,2).y"] = 1;
  EXPECT_EQ(std::as_const(value)["x"].get_arr(true)->get_size(true), (Sizes{1, 3}));
  EXPECT_EQ(std::as_const(value)["x{2}"].get_arr(true)->get_size(true), (Sizes{2, 3}));
  EXPECT_EQ(std::as_const(value)["x{2}(1,2).y"].get<int>(), 1);
}

TEST(PropPathTest, APathMayBeginWithAPosition) {
  VProp value;
  value["{1,2}{3}"] = 1;
  EXPECT_EQ(std::as_const(value)(1, 2)(3).get<int>(), 1);
}

TEST(PropPathTest, AnEmptyPathIsTheValueItself) {
  VProp value(7);
  EXPECT_EQ(&value[""], &value);
  EXPECT_EQ(&std::as_const(value)[""], &value);
}

TEST(PropPathTest, ADotAtTheEndIsTakenAway) {
  VProp value;
  value["a."] = 1;
  EXPECT_EQ(std::as_const(value)["a"].get<int>(), 1);
}

TEST(PropPathTest, AnArrayThatWasCreatedBeforeAnErrorStaysAsItHasGrown) {
  VProp value;
  EXPECT_VREL_ERROR(value["a(1)"], "Path ...'(1)' ends in struct array!", -1);
  EXPECT_EQ(std::as_const(value)["a"], VProp(VProparray<VPropstruct>()));
  EXPECT_VREL_ERROR(value["a(1).1"], "Error parsing prop path: '1' is not a valid name!", -1);
  EXPECT_EQ(std::as_const(value)["a"], VProp(VProparray<VPropstruct>(2)));
  EXPECT_VREL_ERROR(value["b{2}(0)"], "Path ...'(0)' ends in struct array!", -1);
  EXPECT_EQ(std::as_const(value)["b"].get_arr(true)->count(), 3U);
}

TEST(PropPathTest, WhatWasCreatedBeforeAnErrorStays) {
  VProp value;
  EXPECT_VREL_ERROR(value["a.b.1"], "Error parsing prop path: '1' is not a valid name!", -1);
  EXPECT_TRUE(std::as_const(value)["a.b"].empty());
}

// --- Reading

TEST(PropPathTest, AMemberThatIsMissingIsNotCreated) {
  VProp value;
  value["b"] = 1;
  EXPECT_VREL_ERROR(value.getp("a", false), "Struct member 'a' does not exist!", -1);
  EXPECT_VREL_ERROR(std::as_const(value).getp("a"), "Struct member 'a' does not exist!", -1);
  EXPECT_EQ(value.get<VPropstruct>().size(), 1U);
}

TEST(PropPathTest, WithoutCreatingAnEmptyValueHasNoMembers) {
  VProp value;
  EXPECT_VREL_ERROR(value.getp("a", false), "Struct member 'a' does not exist!", -1);
  EXPECT_VREL_ERROR(std::as_const(value).getp("a"), "Struct member 'a' does not exist!", -1);
  EXPECT_VREL_ERROR(value.getp("{0}", false),
                    "Path ...'{0}' references cell content from a non-cell array!", -1);
  EXPECT_VREL_ERROR(value.getp("(0).a", false),
                    "Path ...'(0).a' references struct from a non-struct array!", -1);
  EXPECT_TRUE(value.empty());
}

TEST(PropPathTest, ReadingLeavesValuesShared) {
  VProp value;
  value["a{0}.b"] = 1;
  const VProp copy(value);
  EXPECT_EQ(copy["a{0}.b"].get<int>(), 1);
  EXPECT_EQ(copy.value_ptr(), std::as_const(value).value_ptr());
}

TEST(PropPathTest, WithoutCreatingArraysDoNotGrow) {
  VProp value;
  value["a{1}"] = 1;
  EXPECT_VREL_ERROR(value.getp("a{2}", false), "Index 1 out of bounds! (2 >= 2)!", -1);
  EXPECT_VREL_ERROR(std::as_const(value)["a{2}"], "Index 1 out of bounds! (2 >= 2)!", -1);
  value["s(0).x"] = 1;
  EXPECT_VREL_ERROR(std::as_const(value)["s(1).x"], "Index 1 out of bounds! (1 >= 1)!", -1);
}

TEST(PropPathTest, AMemberOfNoStructIsRefused) {
  VProp value(1);
  EXPECT_VREL_ERROR(value["a"], "Type mismatch: found int32, expected struct", -1);
  EXPECT_VREL_ERROR(std::as_const(value)["a"], "Type mismatch: found int32, expected struct", -1);
}

TEST(PropPathTest, AnElementOfNoArrayIsRefused) {
  VProp value(1);
  EXPECT_VREL_ERROR(value["{0}.x"],
                    "Path ...'{0}.x' references cell content from a non-cell array!", -1);
  EXPECT_VREL_ERROR(value["(0).x"], "Path ...'(0).x' references struct from a non-struct array!",
                    -1);
  EXPECT_VREL_ERROR(value["(0)"], "Path ...'(0)' references struct from a non-struct array!", -1);
}

TEST(PropPathTest, CellsAndStructsOfArraysAreToldApart) {
  VProp value;
  value["c{0}"] = 1;
  value["s(0).x"] = 1;
  EXPECT_VREL_ERROR(value["c(0).x"], "Path ...'(0).x' references struct from a non-struct array!",
                    -1);
  EXPECT_VREL_ERROR(value["s{0}"], "Path ...'{0}' references cell content from a non-cell array!",
                    -1);
}

TEST(PropPathTest, OneIndexOfAShapedArrayIsAColumnOfItsFirstRow) {
  VProp value;
  value["x{1,1}"] = 4;
  value["x{0,1}"] = 3;
  EXPECT_EQ(std::as_const(value)["x{1}"].get<int>(), 3);
}

// --- Grammar

TEST(PropPathTest, AnEmptySegmentIsRefused) {
  VProp value;
  EXPECT_VREL_ERROR(value["a..b"], "Error parsing prop path: '.b' starts with an empty segment!",
                    -1);
  EXPECT_VREL_ERROR(value[".a"], "Error parsing prop path: '.a' starts with an empty segment!", -1);
}

TEST(PropPathTest, ANameThatIsNoneIsRefused) {
  VProp value;
  EXPECT_VREL_ERROR(value["a b"], "Error parsing prop path: 'a b' is not a valid name!", -1);
  EXPECT_VREL_ERROR(value["a}"], "Error parsing prop path: 'a}' is not a valid name!", -1);
}

TEST(PropPathTest, AnIndexThatIsNoNumberIsZero) {
  VProp value;
  value["a{x}"] = 1;
  value["b{}"] = 2;
  value["c{1z, 2}"] = 3;
  value["d{\t1+,\r\n2\b}"] = 4;
  value["e{\b1}"] = 5;
  EXPECT_EQ(std::as_const(value)["a{0}"].get<int>(), 1);
  EXPECT_EQ(std::as_const(value)["b{0}"].get<int>(), 2);
  EXPECT_EQ(std::as_const(value)["c{1,+2}"].get<int>(), 3);
  EXPECT_EQ(std::as_const(value)["d{1,2}"].get<int>(), 4);
  EXPECT_EQ(std::as_const(value)["e{0}"].get<int>(), 5);
}

TEST(PropPathTest, ANegativeIndexIsRefused) {
  VProp value;
  EXPECT_VREL_ERROR(value["a{-1}"], "Invalid index '-1' specified in segment '{-1}'!", -1);
  EXPECT_VREL_ERROR(value["a{-4294967297}"],
                    "Invalid index '-4294967297' specified in segment '{-4294967297}'!", -1);
  EXPECT_VREL_ERROR(value["a(0,-99999999999)"],
                    "Invalid index '-99999999999' specified in segment '(0,-99999999999)'!", -1);
}

TEST(PropPathTest, BracketsHaveToMatch) {
  VProp value;
  for (const char* path : {"{1,2", "{1)", "(1}", "{", "(", "{1}x"}) {
    const std::string message = std::string("Brackets not matched in '") + path + "'!";
    EXPECT_VREL_ERROR(value[path], message.c_str(), -1);
  }
}

TEST(PropPathTest, AStructInAnArrayIsNoValue) {
  VProp value;
  EXPECT_VREL_ERROR(value["a(1)"], "Path ...'(1)' ends in struct array!", -1);
  value["a(1).b"] = 1;
  EXPECT_VREL_ERROR(std::as_const(value)["a(1)"], "Path ...'(1)' ends in struct array!", -1);
}

TEST(PropPathTest, BehindAStructInAnArrayStandsAField) {
  VProp value;
  EXPECT_VREL_ERROR(value["(1){2}"], "Expected path ...'{2}' to start with struct member!", -1);
  EXPECT_VREL_ERROR(value["(1)(2).a"], "Expected path ...'(2).a' to start with struct member!", -1);
}

TEST(PropPathTest, AnArrayDoesNotGrowBeyondWhatCanBeCounted) {
  VProp value;
  EXPECT_VREL_ERROR(value["a{65535,65535}"], "Property array too large!", -1);
}

// --- Asking

TEST(PropPathTest, NamesBeginWithALetterOrAnUnderscore) {
  for (const char* name : {"a", "_", "a1", "a-", "_a-1", "Z9_-"}) {
    EXPECT_TRUE(vrel_prop_is_valid_name(name)) << name;
  }
  for (const char* name :
       {"", "-a", "1", "1a", "a b", "a.b", "a{0}", " a", "a\n", "\xE9", "a\xE9"}) {
    EXPECT_FALSE(vrel_prop_is_valid_name(name)) << name;
  }
  EXPECT_FALSE(vrel_prop_is_valid_name(std::string("a\0", 2)));
}

TEST(PropPathTest, PathsThatCanBeCreatedAreValid) {
  for (const char* path :
       {"", "a", "a.b", "a{1}.b", "a(2,3).x", "{1,2}{3}", "_a-1.b{0}", "a.", "a{x}", "(1).b",
        "a{2147483647}", "a{99999999999}", "a{4294967295}", "a{18446744073709551615}", "a{-0}"}) {
    EXPECT_TRUE(vrel_prop_is_valid_path(path)) << path;
  }
}

TEST(PropPathTest, OtherPathsAreNot) {
  for (const char* path : {"a b", ".", "a..b", "a(1)", "a(1){2}.b", "(1)", "a{-1}", "a{1,2", "1",
                           "a.{", "a{65535,65535}", "(1)."}) {
    EXPECT_FALSE(vrel_prop_is_valid_path(path)) << path;
  }
}

bool can_be_created(const std::string& path) {
  try {
    VProp value;
    value[path] = 1;
    return true;
  } catch (const VrelError&) {
    return false;
  }
}

std::string any_path() {
  const auto piece = rc::gen::element<std::string>("a", "b1", "_", ".", "{", "}", "(", ")", "0",
                                                   "2", ",", "-", " ", "{1}", "(0).x", "{0,1}");
  std::string path;
  for (const std::string& part :
       *rc::gen::resize(12, rc::gen::container<std::vector<std::string>>(piece))) {
    path += part;
  }
  return path;
}

RC_GTEST_PROP(PropPathTest, APathIsValidExactlyIfItCanBeCreated, ()) {
  const std::string path = any_path();
  RC_CLASSIFY(vrel_prop_is_valid_path(path));
  RC_ASSERT(vrel_prop_is_valid_path(path) == can_be_created(path));
}

RC_GTEST_PROP(PropPathTest, WhatWasWrittenAtAPathIsReadThere, ()) {
  const std::string path = any_path();
  RC_PRE(vrel_prop_is_valid_path(path));
  VProp value;
  value[path] = 7;
  RC_ASSERT(std::as_const(value)[path].get<int>() == 7);
  RC_ASSERT(value.getp(path, false).get<int>() == 7);
}

}  // namespace
