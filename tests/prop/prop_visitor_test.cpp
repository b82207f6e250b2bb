#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vrelio/prop/prop_visitor.h>

#include <string>
#include <type_traits>
#include <vector>

#include "prop/nested_cells.h"
#include "support/expect_error.h"

// Visitors have no virtual destructor.
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr unsigned int all = VPropPos::no_index;

// Writes down each call with the path where it came, and answers as it is told.
class Log : public VPropVisitor {
 public:
  using VPropVisitor::is_container;

  bool visit(const VPropstring&) override {
    return note("text " + std::to_string(cur_item)) != answer_at;
  }
  int visit(const VPropstruct&) override { return answer("element"); }
  int visit(const VProp&) override { return answer("value"); }
  int visit_exit(const VPropstruct&) override { return answer("element exit"); }
  bool visit_exit(const VProp&) override { return answer("value exit") != 0; }

  std::vector<std::string> calls;
  std::string answer_at;  // a call that is not answered by `visit_go`
  int answer_given = visit_stop;

 private:
  std::string note(const std::string& name) {
    const std::string path = get_cur_path(all);
    return calls.emplace_back(path.empty() ? name : name + ' ' + path);
  }
  int answer(const std::string& name) { return note(name) == answer_at ? answer_given : visit_go; }
};

std::vector<std::string> calls_for(const VProp& value) {
  Log log;
  EXPECT_TRUE(log.process(value));
  return log.calls;
}

VProp two_fields() {
  VProp value;
  value["a"] = 1;
  value["b"] = 2;
  return value;
}

TEST(PropPosTest, AFreshPositionHasNoKey) { EXPECT_EQ(VPropPos().get_cur_key(), ""); }

TEST(PropPosTest, AFreshPositionHasNoIndex) {
  EXPECT_EQ(VPropPos().get_cur_idx(), VPropPos::no_index);
}

TEST(PropPosTest, GoingDownToAKeyLeavesNoIndex) {
  VPropPos pos;
  EXPECT_TRUE(pos.decend(std::string("a")));
  EXPECT_EQ(pos.get_cur_key(), "a");
  EXPECT_EQ(pos.get_cur_idx(), VPropPos::no_index);
}

TEST(PropPosTest, GoingDownToAnIndexLeavesNoKey) {
  VPropPos pos;
  EXPECT_TRUE(pos.decend(7U));
  EXPECT_EQ(pos.get_cur_key(), "");
  EXPECT_EQ(pos.get_cur_idx(), 7U);
}

TEST(PropPosTest, GoingUpShowsTheLevelAbove) {
  VPropPos pos;
  pos.decend(std::string("a"));
  pos.decend(7U);
  pos.ascend();
  EXPECT_EQ(pos.get_cur_key(), "a");
}

TEST(PropPosTest, GoingUpFromTheRootStaysThere) {
  VPropPos pos;
  pos.ascend();
  EXPECT_EQ(pos.get_cur_idx(), VPropPos::no_index);
}

TEST(PropPosTest, AKeyReplacesThatOfTheDeepestLevel) {
  VPropPos pos;
  pos.decend(VPropPos::no_index);
  EXPECT_TRUE(pos.set_key("a"));
  EXPECT_TRUE(pos.set_key("b"));
  EXPECT_EQ(pos.get_cur_key(), "b");
}

TEST(PropPosTest, TheRootTakesNoKey) {
  VPropPos pos;
  EXPECT_FALSE(pos.set_key("a"));
  EXPECT_EQ(pos.get_cur_key(), "");
}

TEST(PropPosTest, AResetLeavesNoIndex) {
  VPropPos pos;
  pos.decend(7U);
  pos.reset();
  EXPECT_EQ(pos.get_cur_idx(), VPropPos::no_index);
}

TEST(PropPosTest, AResetLeavesTheKeys) {
  VPropPos pos;
  pos.decend(std::string("a"));
  pos.reset();
  EXPECT_EQ(pos.get_cur_key(), "a");
}

TEST(PropPosTest, ACopyHasThePositionOfItsOwn) {
  VPropPos pos;
  pos.decend(7U);
  VPropPos copy(pos);
  copy.ascend();
  EXPECT_EQ(pos.get_cur_idx(), 7U);
}

// Writes down every operation that a visitor can override, in its order.
class Steps : public VPropVisitor {
 public:
  void reset() override { note("reset"); }
  bool decend(const std::string& key) override { return note("decend to " + key); }
  bool decend(unsigned int idx) override {
    note(idx == no_index ? "decend" : "decend to " + std::to_string(idx));
    return VPropVisitor::decend(idx);
  }
  bool set_key(const std::string& key) override {
    note("key " + key);
    return VPropVisitor::set_key(key);
  }
  void ascend() override {
    note("ascend");
    VPropVisitor::ascend();
  }
  bool visit(const VPropstring&) override { return note("text"); }
  int visit(const VPropstruct&) override { return note("struct"); }
  int visit(const VProp& value) override { return note(value.empty() ? "nothing" : "value"); }
  int visit_exit(const VPropstruct&) override { return note("struct exit"); }
  bool visit_exit(const VProp&) override { return note("exit"); }

  std::vector<std::string> calls;

 private:
  bool note(const std::string& call) {
    calls.push_back(call);
    return true;
  }
};

std::vector<std::string> steps_for(const VProp& value) {
  Steps steps;
  EXPECT_TRUE(steps.process(value));
  return steps.calls;
}

TEST(PropVisitorTest, EveryStepThroughFieldsIsAnOperation) {
  EXPECT_THAT(steps_for(two_fields()), ElementsAre("value", "decend", "key a", "value", "exit",
                                                   "key b", "value", "exit", "ascend", "exit"));
}

TEST(PropVisitorTest, EveryStepThroughCellsIsAnOperation) {
  EXPECT_THAT(steps_for(VProparray<VProp>{VProp(1), VProp()}),
              ElementsAre("value", "decend to 0", "value", "exit", "ascend", "decend to 1",
                          "nothing", "exit", "ascend", "exit"));
}

TEST(PropVisitorTest, EveryStepThroughAStructArrayIsAnOperation) {
  VProp value;
  value["(0).x"] = 1;
  value["(1).y"] = 2;
  EXPECT_THAT(steps_for(value),
              ElementsAre("value", "decend to 0", "struct", "key x", "value", "exit", "struct exit",
                          "ascend", "decend to 1", "struct", "key y", "value", "exit",
                          "struct exit", "ascend", "exit"));
}

TEST(PropVisitorTest, TextsTakeNoStepsOfTheirOwn) {
  EXPECT_THAT(steps_for(VProparray<VPropstring>{L"x", L"y"}),
              ElementsAre("value", "text", "text", "exit"));
}

TEST(PropVisitorTest, AnEmptyValueIsVisitedAndLeft) {
  EXPECT_THAT(calls_for(VProp()), ElementsAre("value", "value exit"));
}

TEST(PropVisitorTest, AnArrayOfNumbersIsVisitedAsOne) {
  EXPECT_THAT(calls_for(VProparray<int>{1, 2}), ElementsAre("value", "value exit"));
}

TEST(PropVisitorTest, FieldsAreVisitedInStoredOrder) {
  EXPECT_THAT(calls_for(two_fields()), ElementsAre("value", "value a", "value exit a", "value b",
                                                   "value exit b", "value exit"));
}

TEST(PropVisitorTest, CellsAreVisitedWithTheirPositions) {
  const VProp cells = VProparray<VProp>{VProp(1), VProp(2)};
  EXPECT_THAT(calls_for(cells), ElementsAre("value", "value {0}", "value exit {0}", "value {1}",
                                            "value exit {1}", "value exit"));
}

TEST(PropVisitorTest, TextsAreVisitedWithTheirPlaces) {
  const VProp texts = VProparray<VPropstring>{L"x", L"y"};
  EXPECT_THAT(calls_for(texts), ElementsAre("value", "text 0", "text 1", "value exit"));
}

TEST(PropVisitorTest, TextsHaveThePathOfTheirArray) {
  const VProp texts = VProparray<VPropstring>{L"x"};
  VProp value;
  value["a{1}"] = texts;
  value["s(0).b"] = texts;
  EXPECT_THAT(calls_for(value),
              testing::IsSupersetOf({"value a{1}", "text 0 a{1}", "value exit a{1}",
                                     "text 0 s(0).b", "element exit s(0)"}));
}

TEST(PropVisitorTest, ElementsOfStructArraysAreVisitedAroundTheirFields) {
  VProp value;
  value["s(1).x"] = 1;
  EXPECT_THAT(calls_for(value), ElementsAre("value", "value s", "element s(0)", "element exit s(0)",
                                            "element s(1)", "value s(1).x", "value exit s(1).x",
                                            "element exit s(1)", "value exit s", "value exit"));
}

TEST(PropVisitorTest, SkippingAStructLeavesOutItsFields) {
  Log log;
  log.answer_at = "value";
  log.answer_given = VPropVisitor::visit_skip;
  EXPECT_TRUE(log.process(two_fields()));
  EXPECT_THAT(log.calls, ElementsAre("value", "value exit"));
}

TEST(PropVisitorTest, SkippingAnElementOfAStructArrayLeavesOutItsFields) {
  VProp value;
  value["(0).x"] = 1;
  Log log;
  log.answer_at = "element (0)";
  log.answer_given = VPropVisitor::visit_skip;
  EXPECT_TRUE(log.process(value));
  EXPECT_THAT(log.calls, ElementsAre("value", "element (0)", "element exit (0)", "value exit"));
}

TEST(PropVisitorTest, StoppingEndsTheWalkWithoutLeavingTheContainers) {
  Log log;
  log.answer_at = "value a";
  EXPECT_FALSE(log.process(two_fields()));
  EXPECT_THAT(log.calls, ElementsAre("value", "value a"));
}

TEST(PropVisitorTest, StoppingAtATextEndsTheWalk) {
  Log log;
  log.answer_at = "text 0";
  EXPECT_FALSE(log.process(VProp(VProparray<VPropstring>{L"x", L"y"})));
  EXPECT_THAT(log.calls, ElementsAre("value", "text 0"));
}

TEST(PropVisitorTest, StoppingAtACellEndsTheWalk) {
  Log log;
  log.answer_at = "value {0}";
  EXPECT_FALSE(log.process(VProp(VProparray<VProp>{VProp(1), VProp(2)})));
  EXPECT_THAT(log.calls, ElementsAre("value", "value {0}"));
}

TEST(PropVisitorTest, StoppingAtAnElementOfAStructArrayEndsTheWalk) {
  Log log;
  log.answer_at = "element (0)";
  EXPECT_FALSE(log.process(VProp(VProparray<VPropstruct>(2))));
  EXPECT_THAT(log.calls, ElementsAre("value", "element (0)"));
}

TEST(PropVisitorTest, StoppingAtAFieldOfAStructArrayDoesNotLeaveItsElement) {
  VProp value;
  value["(1).x"] = 1;
  Log log;
  log.answer_at = "value (1).x";
  EXPECT_FALSE(log.process(value));
  EXPECT_THAT(log.calls, ElementsAre("value", "element (0)", "element exit (0)", "element (1)",
                                     "value (1).x"));
}

TEST(PropVisitorTest, BehindTheTextsOfAnArrayThereIsNoPlaceOfAText) {
  struct Item : VPropVisitor {
    bool visit(const VPropstring&) override {
      at_text = cur_item;
      return true;
    }
    using VPropVisitor::visit;
    bool visit_exit(const VProp&) override {
      at_exit = cur_item;
      return true;
    }
    using VPropVisitor::visit_exit;
    unsigned int at_text = all;
    unsigned int at_exit = 0;
  } item;
  EXPECT_TRUE(item.process(VProp(VProparray<VPropstring>{L"x", L"y"})));
  EXPECT_EQ(item.at_text, 1U);
  EXPECT_EQ(item.at_exit, all);
}

TEST(PropVisitorTest, AWalkThatEndedEarlyIsBackAtTheRoot) {
  Log log;
  log.answer_at = "value a";
  log.process(two_fields());
  EXPECT_EQ(log.get_cur_path(all), "");
}

TEST(PropVisitorTest, WhatLeavingGivesIsIgnored) {
  Log log;
  log.answer_at = "value exit a";
  EXPECT_TRUE(log.process(two_fields()));
  EXPECT_EQ(log.calls.back(), "value exit");
}

TEST(PropVisitorTest, AnotherResultOfAVisitIsRefused) {
  for (const int result : {-1, 3}) {
    Log log;
    log.answer_at = "value a";
    log.answer_given = result;
    EXPECT_VREL_ERROR(log.process(two_fields()), "Invalid return value from visit()!", -1);
  }
}

TEST(PropVisitorTest, AnotherResultForAnElementOfAStructArrayIsRefused) {
  Log log;
  log.answer_at = "element (0)";
  log.answer_given = 3;
  EXPECT_VREL_ERROR(log.process(VProp(VProparray<VPropstruct>(1))),
                    "Invalid return value from visit()!", -1);
}

TEST(PropVisitorTest, AnErrorLeavesThePositionWhereItWas) {
  Log log;
  log.answer_at = "value a";
  log.answer_given = 3;
  EXPECT_THROW(log.process(two_fields()), VrelError);
  EXPECT_EQ(log.get_cur_key(), "a");
}

TEST(PropVisitorTest, AfterAnErrorAndAResetPathsAreThoseOfTheNewWalk) {
  Log log;
  log.answer_at = "value a";
  log.answer_given = 3;
  EXPECT_THROW(log.process(two_fields()), VrelError);
  log.reset();
  log.calls.clear();
  log.answer_at.clear();
  EXPECT_TRUE(log.process(VProp(VProparray<VProp>{VProp(1)})));
  EXPECT_THAT(log.calls, ElementsAre("value", "value {0}", "value exit {0}", "value exit"));
}

TEST(PropVisitorTest, AfterAnErrorInATextTheNextWalkWorks) {
  struct Failing : Log {
    bool visit(const VPropstring&) override { throw 1; }
    using Log::visit;
  } log;
  EXPECT_THROW(log.process(VProp(VProparray<VPropstring>{L"x"})), int);
  EXPECT_EQ(log.get_cur_path(all), "");
  EXPECT_TRUE(log.process(VProp(1)));
}

TEST(PropVisitorTest, AnIndexWithoutItsArrayIsLeftOutOfThePath) {
  Log log;
  log.answer_at = "value {0}";
  log.answer_given = 3;
  EXPECT_THROW(log.process(VProp(VProparray<VProp>{VProp(1)})), VrelError);
  EXPECT_EQ(log.get_cur_path(all), "");
}

TEST(PropVisitorTest, ContainersAreTextArraysCellsStructsAndStructArrays) {
  const Log log;
  EXPECT_TRUE(log.is_container(VProparray<VPropstring>()));
  EXPECT_TRUE(log.is_container(VProparray<VProp>()));
  EXPECT_TRUE(log.is_container(VProparray<VPropstruct>()));
  EXPECT_TRUE(log.is_container(VPropstruct()));
}

TEST(PropVisitorTest, NumbersTextsAndNothingAreNoContainers) {
  const Log log;
  EXPECT_FALSE(log.is_container(VProp()));
  EXPECT_FALSE(log.is_container(VProp(1)));
  EXPECT_FALSE(log.is_container(VProp(L"x")));
  EXPECT_FALSE(log.is_container(VProparray<int>()));
}

TEST(PropVisitorTest, ATreeOf256LevelsIsWalked) {
  EXPECT_EQ(calls_for(nested_cells(256)).size(), 512U);
}

TEST(PropVisitorTest, ADeeperTreeIsRefused) {
  EXPECT_VREL_ERROR(VPropVisitor().process(nested_cells(257)), "Property tree too deep!", -1);
}

TEST(PropVisitorTest, AfterATreeThatWasTooDeepOthersAreWalked) {
  VPropVisitor visitor;
  EXPECT_THROW(visitor.process(nested_cells(257)), VrelError);
  visitor.reset();
  EXPECT_TRUE(visitor.process(nested_cells(256)));
}

// Gives the paths of a value up to a depth.
class Paths : public VPropVisitor {
 public:
  using VPropVisitor::visit;

  explicit Paths(unsigned int depth) : depth_(depth) {}
  int visit(const VProp&) override {
    last = get_cur_path(depth_);
    return visit_go;
  }
  std::string last;

 private:
  unsigned int depth_;
};

std::string last_path(const VProp& value, unsigned int depth = all) {
  Paths paths(depth);
  paths.process(value);
  return paths.last;
}

VProp cells_in_field() {
  VProp value;
  value["a{1}"] = 1;
  return value;
}

TEST(PropVisitorTest, AnElementOfARowIsNamedByOneIndex) {
  EXPECT_EQ(last_path(cells_in_field()), "a{1}");
}

TEST(PropVisitorTest, APathIsCutAtADepth) { EXPECT_EQ(last_path(cells_in_field(), 1), "a"); }

TEST(PropVisitorTest, WithoutALevelThereIsNoPath) { EXPECT_EQ(last_path(cells_in_field(), 0), ""); }

TEST(PropVisitorTest, ADepthBeyondTheLevelsGivesTheWholePath) {
  EXPECT_EQ(last_path(cells_in_field(), 3), "a{1}");
}

TEST(PropVisitorTest, ARowWithoutAShapeIsNamedByOneIndex) {
  EXPECT_EQ(last_path(VProparray<VProp>(3)), "{2}");
}

TEST(PropVisitorTest, AMatrixIsNamedByTwoIndices) {
  VProparray<VProp> cells;
  cells.set_size({2, 3}, VProparrayBase::set_mode_resize);
  EXPECT_EQ(last_path(cells), "{1,2}");
}

TEST(PropVisitorTest, TheFirstRowOfAMatrixIsNamedByOneIndex) {
  VProparray<VProp> cells;
  cells.set_size({2, 3}, VProparrayBase::set_mode_resize);
  Log log;
  log.process(VProp(cells));
  EXPECT_EQ(log.calls[5], "value {1}");
}

TEST(PropVisitorTest, ACubeIsNamedByThreeIndices) {
  VProparray<VProp> cells;
  cells.set_size({1, 1, 2}, VProparrayBase::set_mode_resize);
  EXPECT_EQ(last_path(cells), "{0,0,1}");
}

TEST(PropVisitorTest, TheIndexInASingleDimensionIsNotFoundAgain) {
  VProparray<VProp> cells(4);
  cells.set_size(VProparrayBase::index_list{4}, VProparrayBase::set_mode_checked);
  const VProp value = cells;
  EXPECT_EQ(last_path(value), "{3}");
  EXPECT_VREL_ERROR(value.getp("{3}"), "Input rank '2' too high (> '1')!", -1);
}

// Looks up each path that it meets.
class Lookup : public VPropVisitor {
 public:
  using VPropVisitor::visit;

  explicit Lookup(const VProp& root) : root_(root) {}
  int visit(const VProp& value) override {
    EXPECT_EQ(&root_.getp(get_cur_path(all)), &value);
    ++count;
    return visit_go;
  }
  int count = 0;

 private:
  const VProp& root_;
};

TEST(PropVisitorTest, APathLeadsToItsValue) {
  VProp value;
  value["a.b{1,2}{3}.c"] = 1;
  value["s(1,1).x{2}"] = 2;
  value["s(0,1).y(4).z"] = 3;
  Lookup lookup(value);
  EXPECT_TRUE(lookup.process(value));
  EXPECT_EQ(lookup.count, 21);
}

// Looks at what is protected.
class Inside : public VPropVisitor {
 public:
  using VPropVisitor::visit;

  int visit(const VProp& value) override {
    if (is_container(value)) return visit_go;
    containers = arrays;
    path = get_cur_path(all);
    used = positions;
    return visit_go;
  }
  std::vector<const VProp*> containers;
  std::string path;
  std::vector<VProparrayBase::index_list> used;
};

TEST(PropVisitorTest, ContainersAndPositionsAreThoseAroundTheValue) {
  VProp tree;
  tree["a{1,2}(3).b"] = 1;
  const VProp& root = tree;
  Inside inside;
  EXPECT_TRUE(inside.process(root));
  EXPECT_EQ(inside.path, "a{1,2}(3).b");
  EXPECT_THAT(inside.containers, ElementsAre(&root, &root["a"], &root["a{1,2}"]));
  EXPECT_THAT(inside.used,
              ElementsAre(VProparrayBase::index_list{1, 2}, VProparrayBase::index_list{3}));
}

TEST(PropVisitorTest, TheResultsOfAVisitHaveTheirNumbers) {
  EXPECT_EQ(VPropVisitor::visit_stop, 0);
  EXPECT_EQ(VPropVisitor::visit_go, 1);
  EXPECT_EQ(VPropVisitor::visit_skip, 2);
}

TEST(PropVisitorTest, AVisitorGoesThroughATreeByItself) {
  VProp value = two_fields();
  value["c"] = VProparray<VPropstring>{L"x", L"y"};
  value["d(1).x{0}"] = 3;
  EXPECT_TRUE(VPropVisitor().process(value));
}

}  // namespace
