#include <gtest/gtest.h>
#include <vrelio/foundation/data_type.h>
#include <vrelio/foundation/propstring.h>
#include <vrelio/prop/prop.h>
#include <vrelio/prop/prop_array.h>
#include <vrelio/prop/prop_struct.h>

#include <boost/make_shared.hpp>
#include <boost/weak_ptr.hpp>
#include <complex>
#include <cstdint>
#include <limits>
#include <string>
#include <type_traits>
#include <utility>

#include "foundation/scoped_codeset.h"
#include "support/expect_error.h"

class VPropInfo {};

namespace {

using Cells = VProparray<VProp>;

bool is_shared(const VProp& left, const VProp& right) {
  return !left.empty() && left.value_ptr() == right.value_ptr();
}

// --- Nothing, and values of each kind

TEST(PropTest, ANewValueHoldsNothing) {
  const VProp value;
  EXPECT_TRUE(value.empty());
  EXPECT_EQ(value.get_id(), 0);
  EXPECT_EQ(value.type(), typeid(void));
}

TEST(PropTest, IntegersWithoutAnIdOfTheirOwnGoByTheirSize) {
  EXPECT_EQ(VProp(std::int64_t{5}).get<long long>(), 5);
  EXPECT_EQ(VProp(std::uint64_t{5}).get<unsigned long long>(), 5U);
  EXPECT_EQ(VProp(static_cast<signed char>(-5)).get<char>(), -5);
}

TEST(PropTest, WhatNoPropertyValueHoldsMakesNone) {
  EXPECT_FALSE((std::is_constructible_v<VProp, void*>));
  EXPECT_FALSE((std::is_constructible_v<VProp, std::complex<bool>>));
  EXPECT_FALSE((std::is_constructible_v<VProp, long double>));
}

TEST(PropTest, NarrowTextIsInTheLocalEncoding) {
  const VPropstring expected(std::wstring(L"10 \xB5m"));
  char text[] = "10 \xC2\xB5m";
  EXPECT_EQ(VProp(text).get<VPropstring>(), expected);
  EXPECT_EQ(VProp(std::string(text)).get<VPropstring>(), expected);
}

TEST(PropTest, NarrowTextFollowsTheEncodingOfTheLocale) {
  const Vrel::testing::ScopedCodeset local("ISO-8859-1");
  const VPropstring expected(std::wstring(L"10 \xB5m"));
  char text[] = "10 \xB5m";
  std::string copy = text;
  for (const VProp& value :
       {VProp(text), VProp("10 \xB5m"), VProp(copy), VProp(std::string(text))}) {
    EXPECT_EQ(value.get<VPropstring>(), expected);
  }
}

TEST(PropTest, WideTextIsTakenAsItStands) {
  wchar_t text[] = L"\xD800x";
  std::wstring copy = text;
  EXPECT_EQ(VProp(text).get<VPropstring>(), copy);
  EXPECT_EQ(VProp(copy).get<VPropstring>(), copy);
  EXPECT_EQ(VProp(L"\xD800x").get<VPropstring>(), std::wstring(L"\xD800x"));
  EXPECT_EQ(VProp(std::wstring(L"a\0b", 3)).get<VPropstring>(), std::wstring(L"a\0b", 3));
}

// --- Copies

TEST(PropTest, CopiesShareUntilOneOwns) {
  VProp a(1.5);
  VProp b(a);
  EXPECT_TRUE(is_shared(a, b));
  b.own();
  EXPECT_FALSE(is_shared(a, b));
  const void* const before = std::as_const(a).value_ptr();
  a.own();
  EXPECT_EQ(std::as_const(a).value_ptr(), before);
}

TEST(PropTest, OwningNothingDoesNothing) {
  VProp value;
  value.own();
  EXPECT_TRUE(value.empty());
}

TEST(PropTest, WritingACopyLeavesTheOther) {
  VProp a(1.5);
  VProp b(a);
  b.get<double>() = 2.5;
  EXPECT_EQ(std::as_const(a).get<double>(), 1.5);
  EXPECT_EQ(std::as_const(b).get<double>(), 2.5);
}

TEST(PropTest, ConstAccessLeavesTheValueShared) {
  const VProp a(1.5);
  const VProp b(a);
  EXPECT_EQ(b.get<double>(), 1.5);
  EXPECT_TRUE(is_shared(a, b));
}

TEST(PropTest, APlainPointerReachesWhatTheCopiesShare) {
  VProp a(1);
  const VProp b(a);
  *static_cast<int*>(a.value_ptr()) = 2;
  EXPECT_EQ(b.get<int>(), 2);
}

TEST(PropTest, WhatNobodyHoldsAnyMoreIsDestroyed) {
  const auto info = boost::make_shared<VPropInfo>();
  VProp a;
  a["x"].set_info(info);
  VProp b;
  b.swap(a);
  a = b;
  EXPECT_TRUE(is_shared(a, b));
  b.clear();
  EXPECT_EQ(info.use_count(), 2);
  a = VProp();
  EXPECT_EQ(info.use_count(), 1);
}

TEST(PropTest, WhatIsBelowADestroyedValueIsDestroyedToo) {
  const auto info = boost::make_shared<VPropInfo>();
  VProp tree;
  for (const char* const path :
       {"x", "y", "y.a.b", "y.c", "c{0}", "c{2}.a", "s(0).a", "s(2).b.c"}) {
    tree[path].set_info(info);
  }
  EXPECT_EQ(info.use_count(), 9);
  tree.clear();
  EXPECT_EQ(info.use_count(), 1);
}

TEST(PropTest, ACopyIsOfOneLevel) {
  VProp a;
  a["x.y"] = 1;
  a["z"] = 2;
  VProp b(a);
  b["z"] = 3;
  EXPECT_FALSE(is_shared(a, b));
  EXPECT_TRUE(is_shared(std::as_const(a)["x"], std::as_const(b)["x"]));
  b["x.y"] = 4;
  EXPECT_EQ(std::as_const(a)["x.y"].get<int>(), 1);
  EXPECT_EQ(std::as_const(a)["z"].get<int>(), 2);
}

TEST(PropTest, ChangingALeafOfACopyCopiesTheLevelsOfItsPathAlone) {
  VProp tree;
  for (const char* const path : {"a.b.c", "a.b.beside", "a.beside.x", "beside.x"}) tree[path] = 1;
  VProp copy(tree);
  copy["a.b.c"] = 2;
  const VProp& read = tree;
  for (const char* const path : {"", "a", "a.b", "a.b.c"}) {
    EXPECT_FALSE(is_shared(read[path], std::as_const(copy)[path])) << path;
  }
  for (const char* const path : {"a.b.beside", "a.beside", "beside"}) {
    EXPECT_TRUE(is_shared(read[path], std::as_const(copy)[path])) << path;
  }
}

TEST(PropTest, AssigningAPartOfItselfTakesThePart) {
  VProp value;
  value["a.b"] = 7;
  value = std::as_const(value)["a"];
  EXPECT_EQ(std::as_const(value)["b"].get<int>(), 7);
}

TEST(PropTest, AssigningItselfChangesNothing) {
  VProp value(7);
  const VProp& same = value;
  value = same;
  EXPECT_EQ(value.get<int>(), 7);
}

TEST(PropTest, MovingTakesTheValueOver) {
  VProp a("text");
  const void* const held = std::as_const(a).value_ptr();
  VProp b(std::move(a));
  EXPECT_TRUE(a.empty());  // NOLINT(bugprone-use-after-move): what is left is the question
  EXPECT_EQ(std::as_const(b).value_ptr(), held);
  a = std::move(b);
  EXPECT_EQ(std::as_const(a).value_ptr(), held);
}

TEST(PropTest, ClearingLeavesTheCopies) {
  VProp a(1);
  const VProp b(a);
  a.clear();
  EXPECT_TRUE(a.empty());
  EXPECT_EQ(b.get<int>(), 1);
}

TEST(PropTest, SwappingExchangesTheValues) {
  VProp a(1);
  VProp b("two");
  EXPECT_EQ(&a.swap(b), &a);
  EXPECT_EQ(b.get<int>(), 1);
  EXPECT_EQ(&a.swap_value(b), &a);
  EXPECT_EQ(a.get<int>(), 1);
}

// --- Locks

TEST(PropTest, AValueIsLockedOnlyWhileNobodySharesIt) {
  const VProp a(1);
  {
    const VProp b(a);
    EXPECT_FALSE(a.lock());
  }
  EXPECT_TRUE(a.lock());
}

TEST(PropTest, ALockThatFailedLocksNothing) {
  const VProp a(1);
  const VProp b(a);
  EXPECT_FALSE(a.lock());
  const VProp c(a);
  EXPECT_TRUE(is_shared(a, c));
}

TEST(PropTest, ACopyOfALockedValueIsItsOwnAndNotLocked) {
  const VProp a(1);
  EXPECT_TRUE(a.lock());
  const VProp b(a);
  EXPECT_FALSE(is_shared(a, b));
  const VProp c(b);
  EXPECT_TRUE(is_shared(b, c));
}

TEST(PropTest, ACopyOfALockedValueCanBeLockedToo) {
  const VProp a(1);
  a.lock();
  const VProp b(a);
  EXPECT_TRUE(b.lock());
}

TEST(PropTest, SwappingLeavesWhoSharesWhat) {
  VProp alone(1);
  VProp shared(2);
  const VProp other(shared);
  alone.swap(shared);
  EXPECT_FALSE(alone.lock());
  EXPECT_FALSE(other.lock());
  EXPECT_TRUE(shared.lock());
}

TEST(PropTest, AReferenceIntoALockedValueStaysItsOwn) {
  VProp a(1);
  a.lock();
  int& number = a.get<int>();
  const VProp b(a);
  number = 2;
  EXPECT_EQ(b.get<int>(), 1);
  EXPECT_EQ(&a.get<int>(), &number);
}

TEST(PropTest, LockingNothingSucceedsAndLocksNothing) {
  VProp a;
  EXPECT_TRUE(a.lock());
  a = VProp(1);
  const VProp b(a);
  EXPECT_TRUE(is_shared(a, b));
}

// --- Annotations

TEST(PropTest, AnAnnotationIsNotCopied) {
  const VProp a(1);
  a.set_info(boost::make_shared<VPropInfo>());
  const VProp b(a);
  EXPECT_TRUE(a.get_info());
  EXPECT_FALSE(b.get_info());
}

TEST(PropTest, AssigningTakesTheAnnotationAway) {
  VProp a(1);
  VProp c(2);
  a.set_info(boost::make_shared<VPropInfo>());
  c.set_info(boost::make_shared<VPropInfo>());
  const boost::weak_ptr<VPropInfo> given_up = a.get_info();
  a = c;
  EXPECT_FALSE(a.get_info());
  EXPECT_TRUE(given_up.expired());
  EXPECT_TRUE(c.get_info());
}

TEST(PropTest, SwappingTakesTheAnnotationsAlong) {
  const auto info = boost::make_shared<VPropInfo>();
  VProp a(1);
  VProp c(2);
  a.set_info(info);
  a.swap_value(c);
  EXPECT_EQ(a.get_info(), info);
  a.swap(c);
  EXPECT_EQ(c.get_info(), info);
  EXPECT_FALSE(a.get_info());
}

TEST(PropTest, MovingTakesTheAnnotationAlong) {
  VProp a(1);
  a.set_info(boost::make_shared<VPropInfo>());
  VProp b(std::move(a));
  EXPECT_TRUE(b.get_info());
  VProp c(2);
  c = std::move(b);
  EXPECT_TRUE(c.get_info());
  c = VProp(3);
  EXPECT_FALSE(c.get_info());
}

TEST(PropTest, ClearingKeepsTheAnnotation) {
  VProp a(1);
  a.set_info(boost::make_shared<VPropInfo>());
  a.clear();
  EXPECT_TRUE(a.get_info());
}

// --- Comparison

TEST(PropTest, NothingEqualsNothing) { EXPECT_TRUE(VProp() == VProp()); }

TEST(PropTest, ValuesOfDifferentKindsDiffer) {
  EXPECT_FALSE(VProp(1) == VProp(1U));
  EXPECT_FALSE(VProp(1) == VProp(1.0));
  EXPECT_FALSE(VProp(1) == VProp());
}

TEST(PropTest, ANotANumberEqualsNothing) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_FALSE(VProp(nan) == VProp(nan));
  EXPECT_FALSE(VProp(std::complex<double>(0, nan)) == VProp(std::complex<double>(0, nan)));
}

TEST(PropTest, ZeroEqualsMinusZero) { EXPECT_TRUE(VProp(0.0) == VProp(-0.0)); }

TEST(PropTest, BothPartsOfComplexNumbersCount) {
  EXPECT_TRUE(VProp(std::complex<int>(1, 2)) == VProp(std::complex<int>(1, 2)));
  EXPECT_FALSE(VProp(std::complex<int>(1, 2)) == VProp(std::complex<int>(1, 3)));
}

TEST(PropTest, ColoursAreEqualByTheirBytes) {
  EXPECT_TRUE(VProp(_s_vrel_RGB{1, 2, 3}) == VProp(_s_vrel_RGB{1, 2, 3}));
  EXPECT_FALSE(VProp(_s_vrel_RGB{1, 2, 3}) == VProp(_s_vrel_RGB{1, 2, 4}));
  EXPECT_FALSE(VProp(_s_vrel_RGB{1, 2, 3}) == VProp(_s_vrel_RGB{1, 0, 3}));
  EXPECT_FALSE(VProp(_s_vrel_RGB{1, 2, 3}) == VProp(_s_vrel_RGB{0, 2, 3}));
}

TEST(PropTest, ArraysAreEqualByTheirElementsAndNotByTheirShape) {
  VProparray<int> rows(6, 7);
  VProparray<int> columns = rows;
  rows.set_size({2, 3}, VProparrayBase::set_mode_checked);
  columns.set_size({3, 2}, VProparrayBase::set_mode_checked);
  EXPECT_TRUE(VProp(rows) == VProp(columns));
  columns.back() = 8;
  EXPECT_FALSE(VProp(rows) == VProp(columns));
  columns = rows;
  columns.pop_back();
  EXPECT_FALSE(VProp(rows) == VProp(columns));
}

TEST(PropTest, TextsAreEqualByTheirUnits) {
  EXPECT_TRUE(VProp(L"\xD800") == VProp(L"\xD800"));
  EXPECT_FALSE(VProp(L"\xD800") == VProp(L"\xD801"));
}

TEST(PropTest, FieldsAreComparedInTheirOrder) {
  VProp a;
  a["x"] = 1;
  a["y"] = 2;
  VProp b;
  b["y"] = 2;
  b["x"] = 1;
  EXPECT_FALSE(a == b);
  VProp c;
  c["x"] = 1;
  EXPECT_FALSE(a == c);
  c["y"] = 2;
  EXPECT_TRUE(a == c);
  c["y"] = 3;
  EXPECT_FALSE(a == c);
}

TEST(PropTest, FieldsAreComparedByTheirNamesToo) {
  EXPECT_FALSE(VProp(VPropstruct{{"a", VProp(1)}}) == VProp(VPropstruct{{"b", VProp(1)}}));
  VProp a;
  a["(0).x"] = 1;
  VProp b;
  b["(0).y"] = 1;
  EXPECT_FALSE(a == b);
}

TEST(PropTest, TreesAreComparedToTheirLeaves) {
  VProp a;
  a["s(1).cells{0,1}.x"] = 1;
  VProp b;
  b["s(1).cells{0,1}.x"] = 1;
  EXPECT_TRUE(a == b);
  b["s(1).cells{0,1}.x"] = 2;
  EXPECT_FALSE(a == b);
}

// --- Typed access

TEST(PropTest, AccessToAnotherKindNamesBoth) {
  VProp array{VProparray<double>()};
  EXPECT_VREL_ERROR(std::as_const(array).get<VPropstruct>(),
                    "Type mismatch: found double[], expected struct", -1);
  EXPECT_VREL_ERROR(array.get<VProparray<VPropstring>>(),
                    "Type mismatch: found double[], expected char[]", -1);
  EXPECT_VREL_ERROR(VProp(_s_vrel_RGB()).get<bool>(), "Type mismatch: found none, expected logical",
                    -1);
}

TEST(PropTest, ConstAccessToNothingIsRefused) {
  const VProp value;
  EXPECT_VREL_ERROR(value.get<int>(), "Type mismatch: found none, expected int32", -1);
}

TEST(PropTest, AccessThatIsRefusedKeepsTheValue) {
  VProp value(1);
  EXPECT_VREL_ERROR(value.get<double>(), "Type mismatch: found int32, expected double", -1);
  EXPECT_EQ(value.get<int>(), 1);
}

TEST(PropTest, AccessThatIsRefusedHasMadeItsHandleTheSoleOwner) {
  VProp a(1);
  const VProp b(a);
  EXPECT_VREL_ERROR(a.get<double>(), "Type mismatch: found int32, expected double", -1);
  EXPECT_FALSE(is_shared(a, b));
  EXPECT_EQ(a, b);
}

TEST(PropTest, AnArrayIsReachedWithoutItsElements) {
  const VProp array{VProparray<short>(3)};
  EXPECT_EQ(array.get_arr(true)->count(), 3U);
  EXPECT_EQ(array.get_arr(false)->count(), 3U);
}

TEST(PropTest, OnlyAnArrayIsAnArray) {
  EXPECT_EQ(VProp(1).get_arr(false), nullptr);
  EXPECT_EQ(VProp().get_arr(false), nullptr);
  EXPECT_VREL_ERROR(VProp(1).get_arr(true), "Type mismatch: expected 'array' type!", -1);
  EXPECT_VREL_ERROR(VProp().get_arr(true), "Type mismatch: expected 'array' type!", -1);
}

// --- Elements of cell arrays and struct arrays

TEST(PropTest, AnEmptyValueBecomesACellArray) {
  VProp value;
  value(2) = 7;
  EXPECT_EQ(value.get<Cells>().get_size(true), (VProparrayBase::index_list{1, 3}));
  EXPECT_EQ(std::as_const(value)(2).get<int>(), 7);
}

TEST(PropTest, AnEmptyValueBecomesAStructArray) {
  VProp value;
  value.s(1, 2)["x"] = 7;
  EXPECT_EQ(value.get_arr(true)->get_size(true), (VProparrayBase::index_list{2, 3}));
  EXPECT_EQ(std::as_const(value).s(1, 2)["x"].get<int>(), 7);
}

TEST(PropTest, WritingAnElementLeavesTheCopies) {
  VProp a;
  a(0) = 1;
  const VProp b(a);
  a(0) = 2;
  EXPECT_EQ(b(0).get<int>(), 1);
}

TEST(PropTest, ElementsOfAnotherKindAreRefused) {
  VProp number(1);
  EXPECT_VREL_ERROR(number(0), "Type mismatch: found int32, expected cell[]", -1);
  EXPECT_VREL_ERROR(number.s(0), "Type mismatch: found int32, expected struct[]", -1);
  const VProp nothing;
  EXPECT_VREL_ERROR(nothing(0), "Type mismatch: found none, expected cell[]", -1);
  EXPECT_VREL_ERROR(nothing.s(0), "Type mismatch: found none, expected struct[]", -1);
}

TEST(PropTest, AnElementNeedsAnIndex) {
  VProp cells;
  EXPECT_VREL_ERROR(cells(), "Input rank '0' too low (< '2')!", -1);
  EXPECT_VREL_ERROR(std::as_const(cells)(), "Input rank '0' too low (< '2')!", -1);
  VProp structs;
  EXPECT_VREL_ERROR(structs.s(), "Input rank '0' too low (< '2')!", -1);
  EXPECT_VREL_ERROR(std::as_const(structs).s(), "Input rank '0' too low (< '2')!", -1);
}

TEST(PropTest, UpToFourIndicesLeadToAnElement) {
  VProp cells;
  cells(1, 0, 1) = 1;
  EXPECT_EQ(cells.get_arr(true)->get_size(true), (VProparrayBase::index_list{2, 1, 2}));
  cells.clear();
  cells(0, 1, 2, 3) = 7;
  EXPECT_EQ(cells.get_arr(true)->get_size(true), (VProparrayBase::index_list{1, 2, 3, 4}));
  EXPECT_EQ(std::as_const(cells)(0, 1, 2, 3).get<int>(), 7);
}

TEST(PropTest, ReadingAnElementThatIsMissingAddsNone) {
  VProp value;
  value(0) = 1;
  const VProp& read = value;
  EXPECT_VREL_ERROR(read(1), "Index 1 out of bounds! (1 >= 1)!", -1);
  EXPECT_EQ(value.get<Cells>().size(), 1U);
}

// --- Depth

constexpr int deep = 1000000;

VProp deep_struct() {
  VProp value;
  for (int i = 0; i < deep; ++i) {
    VProp outer;
    outer.get<VPropstruct>().emplace_back("a", std::move(value));
    value = std::move(outer);
  }
  return value;
}

VProp deep_mixture() {
  VProp value;
  for (int i = 0; i < deep; ++i) {
    VProp outer;
    if (i % 2 == 0) {
      outer(2).swap(value);
    } else {
      outer.s(1)["x"].swap(value);
      outer.s(2)["y"] = i;
    }
    value.swap(outer);
  }
  return value;
}

TEST(PropDepthTest, AValueOfAnyDepthIsDestroyed) {
  { const VProp value = deep_struct(); }
  { const VProp value = deep_mixture(); }
}

TEST(PropDepthTest, ValuesOfAnyDepthAreCompared) {
  const VProp value = deep_mixture();
  EXPECT_TRUE(value == deep_mixture());
  EXPECT_FALSE(value == deep_struct());
}

TEST(PropDepthTest, WhatASharedPartHoldsOutlivesTheRest) {
  VProp value;
  value["a.b.c"] = 1;
  const VProp part = std::as_const(value)["a.b"];
  value.clear();
  EXPECT_EQ(part["c"].get<int>(), 1);
}

TEST(PropDepthTest, APathOfAnyLengthIsFollowed) {
  std::string path = "a";
  for (int i = 0; i < deep / 10; ++i) path += ".a";
  VProp value;
  value[path] = 1;
  EXPECT_EQ(std::as_const(value)[path].get<int>(), 1);
}

}  // namespace
