// What is written as XML.
#include <gtest/gtest.h>
#include <vrelio/foundation/data_type.h>
#include <vrelio/prop/prop_xml.h>

#include <cmath>
#include <complex>
#include <limits>
#include <string>

#include "foundation/scoped_codeset.h"
#include "prop/nested_cells.h"
#include "si/comma_locale.h"
#include "support/expect_error.h"

namespace {

std::string written(const VProp& value, int flags = vrel_xml_root) {
  std::string text = "as it was";
  vrel_export_xml(text, value, flags);
  return text;
}

VProp read(const std::string& text, int flags = vrel_xml_any) {
  VProp value;
  vrel_import_xml(text, value, flags);
  return value;
}

// The element `root` with attributes in front of the mark of the version, and a content.
std::string root(const std::string& attributes, const std::string& content) {
  return "<root idx=\"1\" " + attributes + " vprop_version=\"1\">" + content + "</root>";
}

std::string empty_root(const std::string& attributes) {
  return "<root idx=\"1\" " + attributes + " vprop_version=\"1\" />";
}

template <class T>
VProp shaped(const VProparrayBase::index_list& size) {
  VProparray<T> array;
  array.set_size(size, VProparrayBase::set_mode_resize);
  return array;
}

TEST(PropXmlTest, TheFormsHaveTheirNumbers) {
  EXPECT_EQ(vrel_xml_any, 0);
  EXPECT_EQ(vrel_xml_data, 1);
  EXPECT_EQ(vrel_xml_root, 2);
  EXPECT_EQ(vrel_xml_text, 3);
}

// --- Elements

TEST(PropXmlTest, AnEmptyValueIsAnEmptyCell) {
  EXPECT_EQ(written(VProp()), empty_root("isempty=\"1\" type=\"cell\" size=\"0 0\""));
}

TEST(PropXmlTest, AnEmptyValueReadsBackEmpty) { EXPECT_TRUE(read(written(VProp())).empty()); }

TEST(PropXmlTest, ANumberIsItsText) {
  EXPECT_EQ(written(VProp(-7)), root("type=\"int32\" size=\"1 1\"", "-7"));
}

TEST(PropXmlTest, ABoolIsADigit) {
  EXPECT_EQ(written(VProp(true)), root("type=\"logical\" size=\"1 1\"", "1"));
}

TEST(PropXmlTest, AComplexNumberStandsInBrackets) {
  EXPECT_EQ(written(VProp(std::complex<double>(1, -2))),
            root("type=\"cplx_double\" size=\"1 1\"", "(1,-2)"));
}

TEST(PropXmlTest, NumbersOfAnArrayStandBesideEachOther) {
  VProparray<short> array{1, 2, 3, 4};
  array.set_size({2, 2}, VProparrayBase::set_mode_checked);
  array.userbits = 6;
  EXPECT_EQ(written(array), root("userbits=\"6\" type=\"int16\" size=\"2 2\"", "1 2 3 4"));
}

TEST(PropXmlTest, AnArrayWithoutAShapeIsARow) {
  EXPECT_EQ(written(VProparray<int>{1, 2}),
            root("userbits=\"0\" type=\"int32\" size=\"1 2\"", "1 2"));
}

TEST(PropXmlTest, AnArrayOfOneElementIsMarked) {
  EXPECT_EQ(written(VProparray<int>{5}),
            root("isarr=\"1\" userbits=\"0\" type=\"int32\" size=\"1 1\"", "5"));
}

TEST(PropXmlTest, AnArrayOfOneElementIsMarkedWhateverItsRank) {
  EXPECT_EQ(written(shaped<int>({1, 1, 1})),
            root("isarr=\"1\" userbits=\"0\" type=\"int32\" size=\"1 1 1\"", "0"));
  EXPECT_EQ(written(shaped<int>({1})),
            root("isarr=\"1\" userbits=\"0\" type=\"int32\" size=\"1\"", "0"));
}

TEST(PropXmlTest, ACellOfOneValueIsMarked) {
  EXPECT_EQ(written(VProparray<VProp>{VProp(5)}),
            root("isarr=\"1\" userbits=\"0\" type=\"cell\" size=\"1 1\"",
                 "<item idx=\"1\" type=\"int32\" size=\"1 1\">5</item>"));
}

TEST(PropXmlTest, AStructArrayOfOneIsMarked) {
  VProp value;
  value["(0).x"] = 5;
  EXPECT_EQ(written(value), root("isarr=\"1\" userbits=\"0\" type=\"struct\" size=\"1 1\"",
                                 "<x idx=\"1\" type=\"int32\" size=\"1 1\">5</x>"));
  EXPECT_EQ(read(written(value)), value);
}

TEST(PropXmlTest, AnArrayOfOneTextIsMarked) {
  EXPECT_EQ(written(VProparray<VPropstring>{L"x"}),
            root("isarr=\"1\" userbits=\"1\" type=\"cell\" size=\"1 1\"",
                 "<item idx=\"0\" type=\"char\" size=\"1 1\">x</item>"));
}

TEST(PropXmlTest, AnArrayOfOneElementReadsBackAsAnArray) {
  EXPECT_EQ(read(written(VProparray<int>{5})), VProp(VProparray<int>{5}));
}

TEST(PropXmlTest, ASingleNumberReadsBackAsOne) { EXPECT_EQ(read(written(VProp(5))), VProp(5)); }

TEST(PropXmlTest, AnArrayOfRankThreeIsOneWithoutTheMark) {
  const VProp value = read(root("type=\"int32\" size=\"1 1 1\"", "5"));
  EXPECT_EQ(value.get_arr(true)->get_size(true), (VProparrayBase::index_list{1, 1, 1}));
}

TEST(PropXmlTest, ATextHasItsWideLength) {
  EXPECT_EQ(written(VProp(L"a\xE9")), root("type=\"char\" size=\"1 2\"", "a\xC3\xA9"));
}

TEST(PropXmlTest, AUnitBeyondSixteenBitsIsWrittenAsThePairThatIsReadBack) {
  const std::string written_pair = root("type=\"char\" size=\"1 3\"", "a\xF0\x9F\x98\x80");
  EXPECT_EQ(written(VProp(std::wstring{L'a', static_cast<wchar_t>(0x1F600)})), written_pair);
  const VProp pair(std::wstring{L'a', 0xD83D, 0xDE00});
  EXPECT_EQ(written(pair), written_pair);
  EXPECT_EQ(read(written_pair), pair);
}

TEST(PropXmlTest, TheLastUnitOfSixteenBitsCountsOnce) {
  EXPECT_EQ(written(VProp(L"\uFFFD")), root("type=\"char\" size=\"1 1\"", "\xEF\xBF\xBD"));
}

TEST(PropXmlTest, DocumentsAreUtf8WhateverTheEncodingOfTheLocale) {
  const Vrel::testing::ScopedCodeset local("ISO-8859-1");
  const VProp text(L"\u00B5\u65E5");
  EXPECT_EQ(written(text), root("type=\"char\" size=\"1 2\"", "\xC2\xB5\xE6\x97\xA5"));
  EXPECT_EQ(written(text, vrel_xml_text), "\xC2\xB5\xE6\x97\xA5");
  EXPECT_EQ(read(written(text)), text);
  const VProp texts = VProparray<VPropstring>{L"\u00B5", L"\u65E5"};
  EXPECT_EQ(read(written(texts)), texts);
}

TEST(PropXmlTest, AnEmptyTextReadsBackEmpty) { EXPECT_EQ(read(written(VProp(L""))), VProp(L"")); }

TEST(PropXmlTest, FieldsAreElementsOfTheirNames) {
  VProp value;
  value["b"] = 1;
  value["a"] = 2;
  EXPECT_EQ(written(value), root("type=\"struct\" size=\"1 1\"",
                                 "<b idx=\"1\" type=\"int32\" size=\"1 1\">1</b>"
                                 "<a idx=\"1\" type=\"int32\" size=\"1 1\">2</a>"));
}

TEST(PropXmlTest, CellsAreCountedFromOne) {
  EXPECT_EQ(written(VProparray<VProp>{VProp(1), VProp()}),
            root("userbits=\"0\" type=\"cell\" size=\"1 2\"",
                 "<item idx=\"1\" type=\"int32\" size=\"1 1\">1</item>"
                 "<item idx=\"2\" isempty=\"1\" type=\"cell\" size=\"0 0\" />"));
}

TEST(PropXmlTest, TheTextsOfAnArrayAreCountedFromZero) {
  EXPECT_EQ(written(VProparray<VPropstring>{L"x", L""}),
            root("userbits=\"1\" type=\"cell\" size=\"1 2\"",
                 "<item idx=\"0\" type=\"char\" size=\"1 1\">x</item>"
                 "<item idx=\"1\" type=\"char\" size=\"1 0\"></item>"));
}

TEST(PropXmlTest, AnArrayOfTextsReadsBackAsOne) {
  const VProp texts = VProparray<VPropstring>{L"x", L"", L" y "};
  EXPECT_EQ(read(written(texts)), texts);
}

TEST(PropXmlTest, WritingMarksAnArrayOfTexts) {
  const VProp texts = VProparray<VPropstring>{L"x"};
  texts.get_arr(true)->userbits = 6;
  EXPECT_NE(written(texts).find(" userbits=\"7\" "), std::string::npos);
  EXPECT_EQ(texts.get_arr(true)->userbits, 7U);
}

TEST(PropXmlTest, WritingLeavesOutTheMarkOfTextsFromAnArrayOfValues) {
  VProparray<VProp> cells{VProp(1), VProp(L"x")};
  cells.userbits = 7;
  const VProp value = cells;
  const VProp back = read(written(value));
  EXPECT_EQ(back, value);
  EXPECT_EQ(back.get_arr(true)->userbits, 6U);
  EXPECT_EQ(value.get_arr(true)->userbits, 7U);
}

TEST(PropXmlTest, OtherArraysKeepAllTheirBits) {
  VProparray<int> numbers{1, 2};
  numbers.userbits = 7;
  EXPECT_EQ(read(written(numbers)).get_arr(true)->userbits, 7U);
  VProparray<VPropstruct> structs(1);
  structs[0]["x"] = 1;
  structs.userbits = 7;
  EXPECT_EQ(read(written(structs)).get_arr(true)->userbits, 7U);
}

TEST(PropXmlTest, AStructArrayOfDifferentFieldsIsNotReadBack) {
  VProp value;
  value["(0).x"] = 1;
  value["(1).y"] = 2;
  EXPECT_VREL_ERROR(read(written(value)), "Invalid struct array!\nLocation:\n/root", -1);
}

TEST(PropXmlTest, OfAFieldThatIsThereTwiceTheLaterValueIsReadBack) {
  const VProp value = VPropstruct{{"a", VProp(1)}, {"a", VProp(2)}};
  VProp expected;
  expected["a"] = 2;
  EXPECT_EQ(read(written(value)), expected);
  const VProp kinds = VPropstruct{{"a", VProp(1)}, {"a", VProp(2.5)}};
  EXPECT_VREL_ERROR(read(written(kinds)),
                    "Type mismatch: found int32, expected double\nLocation:\n/root/a[2]", -1);
}

TEST(PropXmlTest, TheFieldsOfAStructArrayStandInOneRow) {
  VProp value;
  value["(0).x"] = 1;
  value["(0).y"] = 2;
  value["(1).x"] = 3;
  value["(1).y"] = 4;
  EXPECT_EQ(written(value), root("userbits=\"0\" type=\"struct\" size=\"1 2\"",
                                 "<x idx=\"1\" type=\"int32\" size=\"1 1\">1</x>"
                                 "<y idx=\"1\" type=\"int32\" size=\"1 1\">2</y>"
                                 "<x idx=\"2\" type=\"int32\" size=\"1 1\">3</x>"
                                 "<y idx=\"2\" type=\"int32\" size=\"1 1\">4</y>"));
}

TEST(PropXmlTest, FieldsOfASingleStructAreCountedAsOneWhereverItStands) {
  VProp value;
  value["(0).x"] = 1;
  value["(1).x{0}.y"] = 2;
  EXPECT_EQ(written(value),
            root("userbits=\"0\" type=\"struct\" size=\"1 2\"",
                 "<x idx=\"1\" type=\"int32\" size=\"1 1\">1</x>"
                 "<x idx=\"2\" isarr=\"1\" userbits=\"0\" type=\"cell\" size=\"1 1\">"
                 "<item idx=\"1\" type=\"struct\" size=\"1 1\">"
                 "<y idx=\"1\" type=\"int32\" size=\"1 1\">2</y></item></x>"));
}

TEST(PropXmlTest, AStructArrayReadsBackWithItsShape) {
  VProp value;
  value["(1,1).x"] = 1;
  for (const char* const path : {"(0,0).x", "(1,0).x", "(0,1).x"}) value[path] = 2;
  const VProp back = read(written(value));
  EXPECT_EQ(back, value);
  EXPECT_EQ(back.get_arr(true)->get_size(true), (VProparrayBase::index_list{2, 2}));
}

TEST(PropXmlTest, AnEmptyArrayKeepsItsKind) {
  EXPECT_EQ(read(written(VProparray<float>())), VProp(VProparray<float>()));
  EXPECT_EQ(read(written(VProparray<VProp>())), VProp(VProparray<VProp>()));
  EXPECT_EQ(read(written(VProparray<VPropstring>())), VProp(VProparray<VPropstring>()));
}

TEST(PropXmlTest, AShapeWithoutElementsIsKept) {
  const VProp back = read(written(shaped<int>({3, 0, 2})));
  EXPECT_EQ(back.get_arr(true)->get_size(false), (VProparrayBase::index_list{3, 0, 2}));
}

TEST(PropXmlTest, InfinityReadsBack) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  const VProp value = VProparray<double>{infinity, 1.5, -infinity};
  EXPECT_EQ(read(written(value)), value);
}

TEST(PropXmlTest, NotANumberReadsBack) {
  constexpr double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(written(VProp(nan)), root("type=\"double\" size=\"1 1\"", "NaN"));
  EXPECT_TRUE(std::isnan(read(written(VProp(nan))).get<double>()));
  const VProp back = read(written(VProparray<float>{1.5F, std::nanf(""), 2.5F}));
  const auto& numbers = back.get<VProparray<float>>();
  ASSERT_EQ(numbers.size(), 3U);
  EXPECT_EQ(numbers[0], 1.5F);
  EXPECT_TRUE(std::isnan(numbers[1]));
  EXPECT_EQ(numbers[2], 2.5F);
}

TEST(PropXmlTest, NumbersDoNotDependOnTheLocale) {
  const si::testing::CommaLocale commas;
  EXPECT_EQ(written(VProp(1234.5)), root("type=\"double\" size=\"1 1\"", "1234.5"));
  EXPECT_EQ(read(written(VProp(1234.5))), VProp(1234.5));
}

TEST(PropXmlTest, AFieldWithoutANameIsAnItem) {
  VPropstruct fields;
  fields.emplace_back("", VProp(1));
  EXPECT_EQ(written(fields), root("type=\"struct\" size=\"1 1\"",
                                  "<item idx=\"1\" type=\"int32\" size=\"1 1\">1</item>"));
}

// --- Envelopes

TEST(PropXmlTest, TheDataFormHasAVersionInFrontOfTheValue) {
  EXPECT_EQ(written(VProp(1), vrel_xml_data),
            "<?xml version=\"1.0\" standalone=\"yes\" ?><LVData><Version>8.2.1</Version>"
            "<DefaultValueCausedByCreatingAnElementWithNoParameters idx=\"1\" type=\"int32\" "
            "size=\"1 1\">1</DefaultValueCausedByCreatingAnElementWithNoParameters></LVData>");
}

TEST(PropXmlTest, TheDataFormReadsBack) {
  VProp value;
  value["a{2}"] = 1.5;
  EXPECT_EQ(read(written(value, vrel_xml_data)), value);
}

TEST(PropXmlTest, TheTextFormIsTheTextOfANumber) {
  EXPECT_EQ(written(VProp(0.5), vrel_xml_text), "0.5");
}

TEST(PropXmlTest, TheTextFormIsTheTextOfAText) {
  EXPECT_EQ(written(VProp(L"<\xE9> "), vrel_xml_text), "<\xC3\xA9> ");
  EXPECT_EQ(written(VProp(L""), vrel_xml_text), "");
  EXPECT_EQ(written(VProp(L"&#x41;"), vrel_xml_text), "&#x41;");
}

TEST(PropXmlTest, TheTextFormOfAnArrayHasItsElements) {
  EXPECT_EQ(written(VProparray<int>{1, 2}, vrel_xml_text), "1 2");
}

TEST(PropXmlTest, WhatHasNoTextHasNoTextForm) {
  for (const VProp& value :
       {VProp(), VProp(VPropstruct()), VProp(VProparray<VProp>{VProp(1)}),
        VProp(VProparray<VPropstring>{L"x"}), VProp(VProparray<VPropstruct>(1))}) {
    EXPECT_VREL_ERROR(
        written(value, vrel_xml_text),
        "Error writing XML properties to string:\nText does not exists in the current element", -1);
  }
}

TEST(PropXmlTest, OtherFormsGiveAnEmptyDocument) {
  for (const int flags : {0, 4, 0x1001, 0x1002}) EXPECT_EQ(written(VProp(1), flags), "");
}

TEST(PropXmlTest, HigherBitsOfTheFlagsAreFree) {
  EXPECT_EQ(written(VProp(1), 0x10002), written(VProp(1)));
}

// --- What cannot be written

TEST(PropXmlTest, RgbCannotBeWritten) {
  EXPECT_VREL_ERROR(written(VProp(_s_vrel_RGB())), "Type unknown or incompatible with xml export!",
                    -1);
}

TEST(PropXmlTest, CharactersThatXmlCannotHoldAreRefused) {
  for (const wchar_t unit : {0x0, 0x1, 0xB, 0xC, 0x1F, 0xD800, 0xDFFF, 0xFFFE, 0xFFFF}) {
    EXPECT_VREL_ERROR(written(VProp(std::wstring(L"a") + unit + L"b")),
                      "Text cannot be written as XML!", -1);
  }
}

TEST(PropXmlTest, SurrogatesInTheWrongOrderAreRefused) {
  EXPECT_VREL_ERROR(written(VProp(std::wstring{0xDC00, 0xD800})), "Text cannot be written as XML!",
                    -1);
}

TEST(PropXmlTest, ATextOfAnArrayIsHeldToTheSame) {
  EXPECT_VREL_ERROR(written(VProparray<VPropstring>{L"\x1"}), "Text cannot be written as XML!", -1);
}

TEST(PropXmlTest, AfterAnErrorTheOutputIsAsItWas) {
  std::string out = "as it was";
  EXPECT_THROW(vrel_export_xml(out, VProp(L"\x1"), vrel_xml_root), VrelError);
  EXPECT_THROW(vrel_export_xml(out, VPropstruct(), vrel_xml_text), VrelError);
  EXPECT_EQ(out, "as it was");
}

TEST(PropXmlTest, NamesThatAreNoneInXmlAreRefused) {
  for (const std::string name :
       {"1", "-a", "a b", "a<", "a/", "a=", ".a", ":a", "a\x7F", "\xE9", "a\xC3"}) {
    VPropstruct fields;
    fields.emplace_back(name, VProp(1));
    EXPECT_VREL_ERROR(written(fields), "Field name '" + name + "' cannot be written as XML!", -1);
  }
}

TEST(PropXmlTest, NamesWithADotMakeAPathWhenTheyAreRead) {
  VPropstruct fields;
  fields.emplace_back("a.b", VProp(1));
  VProp expected;
  expected["a.b"] = 1;
  EXPECT_EQ(read(written(fields)), expected);
}

TEST(PropXmlTest, ATreeOf256LevelsComesBack) {
  const VProp value = nested_cells(256);
  EXPECT_EQ(read(written(value)), value);
}

TEST(PropXmlTest, ADeeperTreeIsRefused) {
  EXPECT_VREL_ERROR(written(nested_cells(257)), "Property tree too deep!", -1);
}

TEST(PropXmlTest, TheDataFormTakesOneLevelForItself) {
  const VProp value = nested_cells(255);
  EXPECT_EQ(read(written(value, vrel_xml_data)), value);
  EXPECT_VREL_ERROR(written(nested_cells(256), vrel_xml_data), "Property tree too deep!", -1);
}

TEST(PropXmlTest, TheTextsOfAnArrayAreALevel) {
  VProp value = VProparray<VPropstring>{L"x"};
  for (int i = 1; i < 256; ++i) value = VProp(VProparray<VProp>{value});
  EXPECT_VREL_ERROR(written(value), "Property tree too deep!", -1);
}

TEST(PropXmlTest, AShapeThatFitsNothingIsRefused) {
  VProparray<int> array{1, 2, 3};
  array.set_size({2, 2}, VProparrayBase::set_mode_shape);
  EXPECT_VREL_ERROR(written(array), "Invalid size vector in property array!", -1);
}

}  // namespace
