// Properties found by paths of names and indices.
#include <gtest/gtest.h>
#include <vrelio/remote/property_bridge.h>

#include <string>
#include <utility>

#include "prop/every_kind.h"
#include "prop/nested_cells.h"
#include "remote/trees.h"

namespace {

using namespace Vrel::testing;

// A struct with a member of each kind that paths tell apart.
VProp sample_tree() {
  VProp tree;
  tree["number"] = 2.5;
  tree["inner.list"] = VProparray<int>{1, 2, 3};
  tree["inner.name"] = "piezo";
  tree["cells{0}"] = 7;
  tree["cells{1}.label"] = "x";
  tree["cells{2}{1}"] = VProparray<double>{0.5, 1.5};
  tree["structs(0).a"] = 1;
  tree["structs(1).a.b"] = 2;
  return tree;
}

// What a path leads to, and whether the constant form tells the same.
std::pair<VProp*, std::string> found(VProp& tree, const std::string& path) {
  const auto result = Json::find_property(tree, path);
  const auto constant = Json::find_property(std::as_const(tree), path);
  EXPECT_EQ(result.first, constant.first) << path;
  EXPECT_EQ(result.second, constant.second) << path;
  return result;
}

void expect_found(VProp& tree, const std::string& path, const VProp& property,
                  const std::string& rest) {
  SCOPED_TRACE(path);
  const auto result = found(tree, path);
  EXPECT_EQ(&property, result.first);
  EXPECT_EQ(rest, result.second);
}

void expect_nothing(VProp& tree, const std::string& path) {
  SCOPED_TRACE(path);
  const auto result = found(tree, path);
  EXPECT_EQ(nullptr, result.first);
  EXPECT_EQ("", result.second);
}

const VProp& at(const VProp& tree, const std::string& path) { return tree[path]; }

TEST(PropertyPathTest, AnEmptyPropertyLeadsNowhere) {
  VProp empty;
  expect_nothing(empty, "");
  expect_nothing(empty, "a");
  expect_nothing(empty, "a/b");
}

TEST(PropertyPathTest, ANameFindsTheMemberWhateverItHolds) {
  VProp tree = sample_tree();
  for (const char* const name : {"number", "inner", "cells", "structs"}) {
    expect_found(tree, name, at(tree, name), "");
  }
}

TEST(PropertyPathTest, ANameFindsAnEmptyMember) {
  VProp tree = VPropstruct{{"none", VProp()}};
  expect_found(tree, "none", tree.get<VPropstruct>()[0].second, "");
  expect_nothing(tree, "none/a");
}

TEST(PropertyPathTest, NamesLeadThroughStructs) {
  VProp tree = sample_tree();
  expect_found(tree, "inner/name", at(tree, "inner.name"), "");
}

TEST(PropertyPathTest, AnUnknownNameLeadsNowhere) {
  VProp tree = sample_tree();
  for (const char* const path : {"", "/", "Number", "number ", "other", "other/name", "inner/other",
                                 "/inner", "inner//name", "inner.name"}) {
    expect_nothing(tree, path);
  }
}

TEST(PropertyPathTest, AMemberMayHaveAnEmptyName) {
  VProp tree = VPropstruct{{"", VPropstruct{{"", VProp(1)}}}};
  const VProp& inner = tree.get<VPropstruct>()[0].second;
  expect_found(tree, "", inner, "");
  expect_found(tree, "/", inner.get<VPropstruct>()[0].second, "");
}

TEST(PropertyPathTest, OfTwoMembersOfOneNameTheFirstIsFound) {
  VProp tree = VPropstruct{{"a", VProp(1)}, {"a", VProp(2)}};
  expect_found(tree, "a", tree.get<VPropstruct>()[0].second, "");
}

TEST(PropertyPathTest, APathThroughADoubleLeadsNowhere) {
  VProp tree = sample_tree();
  expect_nothing(tree, "number/a");
  expect_nothing(tree, "number/");
}

TEST(PropertyPathTest, AnIndexLeadsIntoACellArray) {
  VProp tree = sample_tree();
  expect_found(tree, "cells/1/label", at(tree, "cells{1}.label"), "");
  expect_found(tree, "cells/001/label", at(tree, "cells{1}.label"), "");
  expect_found(tree, "cells/2/1/0", at(tree, "cells{2}{1}"), "0");
}

TEST(PropertyPathTest, AnIndexCountsElementsInTheOrderOfTheirStorage) {
  VProp cells = shaped<VProp>({2, 2}, {{}, {}, {}, VPropstruct{{"a", VProp(1)}}});
  expect_found(cells, "3/a", cells(1, 1).get<VPropstruct>()[0].second, "");
}

TEST(PropertyPathTest, AnIndexThatIsNoNumberLeadsNowhere) {
  VProp tree = sample_tree();
  for (const char* const index : {"", "x", "-1", "+1", " 1", "1 ", "1x", "0x1", "1.0", "4294967297",
                                  "-4294967295", "18446744073709551617"}) {
    expect_nothing(tree, std::string("cells/") + index + "/label");
    expect_nothing(tree, std::string("structs/") + index + "/a");
  }
}

TEST(PropertyPathTest, AnIndexBehindTheEndLeadsNowhere) {
  VProp tree = sample_tree();
  for (const char* const index : {"3", "4", "4294967295"}) {
    expect_nothing(tree, std::string("cells/") + index + "/label");
    expect_nothing(tree, std::string("structs/") + index + "/a");
  }
  expect_nothing(tree, "structs/2/a");
}

TEST(PropertyPathTest, ArraysWithoutElementsHaveNoIndex) {
  VProp cells = VProparray<VProp>();
  VProp structs = VProparray<VPropstruct>();
  expect_nothing(cells, "0");
  expect_nothing(cells, "0/a");
  expect_nothing(structs, "0/a");
  expect_found(structs, "0", structs, "0");
}

TEST(PropertyPathTest, AnIndexAtTheEndFindsOnlyWhatAnEmptyPathLeadsOnFrom) {
  VProp array = VProparray<VProp>{VProp(1), VProparray<int>{1, 2}, VProparray<VPropstruct>(1),
                                  VPropstruct{{"", VProp(3)}}, VProp("text")};
  expect_nothing(array, "0");
  expect_found(array, "1", array(1U), "");
  expect_found(array, "2", array(2U), "");
  expect_found(array, "3", array(3U).get<VPropstruct>()[0].second, "");
  expect_nothing(array, "4");
}

TEST(PropertyPathTest, AStructArrayIsFoundWithAnIndex) {
  VProp tree = sample_tree();
  expect_found(tree, "structs/1", at(tree, "structs"), "1");
  expect_found(tree, "structs/", at(tree, "structs"), "");
  expect_found(tree, "structs/any text", at(tree, "structs"), "any text");
}

TEST(PropertyPathTest, AnIndexLeadsIntoAStructOfAnArray) {
  VProp tree = sample_tree();
  expect_found(tree, "structs/0/a", at(tree, "structs(0).a"), "");
  expect_found(tree, "structs/1/a/b", at(tree, "structs(1).a.b"), "");
  expect_nothing(tree, "structs/0/b");
  expect_nothing(tree, "structs/0/");
}

TEST(PropertyPathTest, AnArrayOfScalarsIsFoundWithWhatIsLeft) {
  VProp tree = sample_tree();
  expect_found(tree, "inner/list/2", at(tree, "inner.list"), "2");
  expect_found(tree, "inner/list/2/3/x", at(tree, "inner.list"), "2/3/x");
  expect_found(tree, "inner/list/", at(tree, "inner.list"), "");
}

TEST(PropertyPathTest, EachKindLeadsOnOrNowhere) {
  for (const Kind& kind : every_kind()) {
    SCOPED_TRACE(kind);
    VProp value = kind.plain;
    const bool is_plain_array = kind.is_array && kind.group != KindGroup::complex &&
                                (kind.is_numeric() || kind.name == "char");
    if (is_plain_array) {
      expect_found(value, "", value, "");
      expect_found(value, "1/2", value, "1/2");
    } else {
      expect_nothing(value, "1/2");
    }
  }
}

TEST(PropertyPathTest, WritingToTheResultLeavesWhoSharesTheTree) {
  for (const char* const path : {"inner/name", "cells/1/label", "structs/1/a/b", "number"}) {
    VProp tree = sample_tree();
    const VProp other(tree);
    *Json::find_property(tree, path).first = "changed";
    EXPECT_TRUE(other == sample_tree()) << path;
    EXPECT_FALSE(tree == sample_tree()) << path;
  }
}

TEST(PropertyPathTest, LookingAtAConstantTreeCopiesNothing) {
  const VProp tree = sample_tree();
  const VProp other(tree);
  EXPECT_EQ(Json::find_property(tree, "cells/1/label").first,
            Json::find_property(other, "cells/1/label").first);
}

TEST(PropertyPathTest, DepthTakesNoStack) {
  constexpr int levels = 200000;
  VProp tree = nested_structs(levels, VProparray<int>{1});
  std::string path;
  for (int i = 0; i < levels; ++i) path += "a/";
  const auto result = Json::find_property(tree, path + "7");
  ASSERT_NE(nullptr, result.first);
  EXPECT_EQ(VProp(VProparray<int>{1}), *result.first);
  EXPECT_EQ("7", result.second);
}

}  // namespace
