// What is read from XML, and what is refused.
#include <gtest/gtest.h>
#include <vrelio/foundation/data_type.h>
#include <vrelio/prop/prop_cast.h>
#include <vrelio/prop/prop_xml.h>

#include <complex>
#include <cstddef>
#include <fstream>
#include <iterator>
#include <string>
#include <utility>

#include "support/expect_error.h"
#include "support/source_tree.h"

namespace {

VProp read(const std::string& text, int flags = vrel_xml_any) {
  VProp value;
  vrel_import_xml(text, value, flags);
  return value;
}

std::string root(const std::string& attributes, const std::string& content) {
  return "<root vprop_version=\"1\" " + attributes + ">" + content + "</root>";
}

VProp read_root(const std::string& attributes, const std::string& content) {
  return read(root(attributes, content));
}

std::string at_root(const std::string& message) { return message + "\nLocation:\n/root"; }

std::string no_xml(const std::string& message) {
  return "Error parsing XML properties:\n" + message;
}

const std::string no_text = no_xml("Text does not exists in the current element");

// The example of the page.
std::string example() {
  std::ifstream page(Vrel::testing::source_path("docs/property_xml.md"));
  const std::string text((std::istreambuf_iterator<char>(page)), std::istreambuf_iterator<char>());
  const std::string fence = "```xml\n";
  const std::size_t begin = text.find(fence) + fence.size();
  return text.substr(begin, text.find("```", begin) - begin);
}

TEST(PropXmlReadTest, TheExampleOfThePageIsRead) {
  VProp expected;
  expected["scan.pixels"] = VProparray<int>{512, 256};
  expected["scan.unit"] = L"\xB5m";
  EXPECT_EQ(read(example()), expected);
}

// --- Envelopes

TEST(PropXmlReadTest, AVersionTellsTheForm) {
  EXPECT_EQ(read("<x vprop_version=\"1\" type=\"int32\">5</x>"), VProp(5));
}

TEST(PropXmlReadTest, AnOldVersionTellsTheForm) {
  EXPECT_EQ(read("<x xml_tb_version=\"2.0\" type=\"int32\">5</x>"), VProp(5));
}

TEST(PropXmlReadTest, AnEmptyOldVersionTellsNothing) {
  EXPECT_VREL_ERROR(read("<x xml_tb_version=\"\" type=\"int32\">5</x>"),
                    "Could not determine xml format!", -1);
}

TEST(PropXmlReadTest, AVersionBelowOneTellsNothing) {
  for (const std::string version : {"0", "-1"}) {
    const std::string text = "<x vprop_version='" + version + "' type='int32'>5</x>";
    EXPECT_VREL_ERROR(read(text), "Could not determine xml format!", -1);
    EXPECT_EQ(read(text, vrel_xml_data), VProp(5));
  }
}

TEST(PropXmlReadTest, WithALowVersionTheOldOneTellsTheForm) {
  const std::string text = "<x vprop_version='-1' xml_tb_version='1' type='int32'>5</x>";
  EXPECT_EQ(read(text), VProp(5));
  EXPECT_EQ(read(text, vrel_xml_root), VProp(5));
  EXPECT_VREL_ERROR(read(text, vrel_xml_data), "Specified format does not match the xml string!",
                    -1);
}

TEST(PropXmlReadTest, AVersionCountsBeforeTheName) {
  const std::string text = "<LVData vprop_version='1' type='int32'>5</LVData>";
  EXPECT_EQ(read(text), VProp(5));
  EXPECT_EQ(read(text, vrel_xml_root), VProp(5));
  EXPECT_VREL_ERROR(read(text, vrel_xml_data), "Specified format does not match the xml string!",
                    -1);
}

TEST(PropXmlReadTest, WithoutMarksAnyFormThatIsGivenIsTaken) {
  for (const int format : {1, 2, 3, 0xFFFF}) {
    EXPECT_EQ(read("<data type='int32'>5</data>", format), VProp(5)) << format;
  }
}

TEST(PropXmlReadTest, HigherBitsOfTheFlagsAreFree) {
  const std::string marked = "<x vprop_version='1' type='int32'>5</x>";
  EXPECT_EQ(read(marked, 0x10002), VProp(5));
  EXPECT_EQ(read(marked, 0x70000), VProp(5));
  EXPECT_VREL_ERROR(read(marked, 0x10001), "Specified format does not match the xml string!", -1);
}

TEST(PropXmlReadTest, WithMarksTheTextFormIsRefused) {
  EXPECT_VREL_ERROR(read(root("type='int32'", "5"), vrel_xml_text),
                    "Specified format does not match the xml string!", -1);
}

TEST(PropXmlReadTest, ANewerVersionIsRefused) {
  EXPECT_VREL_ERROR(read("<x vprop_version=\"2\" type=\"int32\">5</x>"),
                    "Xml input of newer version than library!", -1);
}

TEST(PropXmlReadTest, AVersionThatIsNoIntegerIsRefused) {
  EXPECT_VREL_ERROR(read("<x vprop_version=\"1.5\" type=\"int32\">5</x>"),
                    no_xml("Attribute 'vprop_version' cannot be read from '1.5'"), -1);
}

TEST(PropXmlReadTest, AnotherFormThanTheGivenOneIsRefused) {
  const std::string mismatch = "Specified format does not match the xml string!";
  EXPECT_VREL_ERROR(read("<x vprop_version=\"1\" type=\"int32\">5</x>", vrel_xml_data), mismatch,
                    -1);
  EXPECT_VREL_ERROR(
      read("<LVData><Version>1</Version><x type=\"int32\">5</x></LVData>", vrel_xml_root), mismatch,
      -1);
  EXPECT_VREL_ERROR(read("<x vprop_version=\"1\" type=\"int32\">5</x>", 0x1002), mismatch, -1);
}

TEST(PropXmlReadTest, WithoutMarksTheGivenFormIsTaken) {
  EXPECT_EQ(read("<data type=\"int32\">5</data>", vrel_xml_root), VProp(5));
}

TEST(PropXmlReadTest, WithoutMarksAFormHasToBeGiven) {
  EXPECT_VREL_ERROR(read("<data type=\"int32\">5</data>"), "Could not determine xml format!", -1);
}

TEST(PropXmlReadTest, TheValueOfTheDataFormStandsBehindItsVersion) {
  EXPECT_EQ(read("<LVData><Version>99</Version><x type=\"int32\">5</x></LVData>"), VProp(5));
}

TEST(PropXmlReadTest, TheDataFormHasToBeginWithItsVersion) {
  const std::string message = no_xml("Element 'LVData' does not begin with 'Version'");
  EXPECT_VREL_ERROR(read("<LVData/>"), message, -1);
  EXPECT_VREL_ERROR(read("<LVData><x type=\"int32\">5</x></LVData>"), message, -1);
}

TEST(PropXmlReadTest, TheVersionOfTheDataFormNeedsAText) {
  EXPECT_VREL_ERROR(read("<LVData><Version/><x type=\"int32\">5</x></LVData>"), no_text, -1);
}

TEST(PropXmlReadTest, TheDataFormNeedsAValue) {
  EXPECT_VREL_ERROR(read("<LVData><Version>1</Version></LVData>"),
                    no_xml("Element 'LVData' has no value"), -1);
}

// --- Texts that are no documents

TEST(PropXmlReadTest, ATextThatIsNoDocumentIsRefused) {
  EXPECT_VREL_ERROR(read(""), no_xml("There is no element (line 1)"), -1);
  EXPECT_VREL_ERROR(read("<a>\n</b>"),
                    no_xml("An end tag has another name than its element (line 2)"), -1);
  EXPECT_VREL_ERROR(read("<a b='' b=''/>"), no_xml("Error parsing Element."), -1);
}

TEST(PropXmlReadTest, ATextDoesNotLoseReferencesUnseen) {
  EXPECT_EQ(read_root("type='char'", "R&amp;D"), VProp(L"R&D"));
  EXPECT_VREL_ERROR(read_root("type='char'", "R&D"), no_xml("A reference is to nothing (line 1)"),
                    -1);
}

TEST(PropXmlReadTest, DeepElementsAreRefused) {
  std::string text;
  for (int i = 0; i < 100000; ++i) text += "<a type='cell'>";
  EXPECT_VREL_ERROR(read(text), no_xml("Elements are nested too deep (line 1)"), -1);
}

TEST(PropXmlReadTest, ATextBeyond64MiBIsRefused) {
  EXPECT_VREL_ERROR(read(std::string((64u << 20) + 1, ' ')),
                    no_xml("The text is larger than 64 MiB"), -1);
}

// --- Values

TEST(PropXmlReadTest, WithoutASizeAValueIsSingle) {
  EXPECT_EQ(read_root("type='double'", "1.5"), VProp(1.5));
}

TEST(PropXmlReadTest, AMarkMakesAnArrayWhateverItsValue) {
  EXPECT_EQ(read_root("type='double' isarr='0'", "1.5"), VProp(VProparray<double>{1.5}));
}

TEST(PropXmlReadTest, AnUnknownTypeIsRefused) {
  EXPECT_VREL_ERROR(read_root("type='none'", "1"), at_root("Unknown type 'none' in xml string!"),
                    -1);
  EXPECT_VREL_ERROR(read_root("type='Int32'", "1"), at_root("Unknown type 'Int32' in xml string!"),
                    -1);
}

TEST(PropXmlReadTest, AMissingTypeIsUnknown) {
  EXPECT_VREL_ERROR(read_root("", "1"), at_root("Unknown type '' in xml string!"), -1);
}

TEST(PropXmlReadTest, ATypeWithoutAKindIsRefused) {
  EXPECT_VREL_ERROR(read_root("type='cplx_logical'", "(1,0)"),
                    at_root("Conversion of string to invalid type!"), -1);
}

TEST(PropXmlReadTest, ANumberNeedsAText) {
  EXPECT_VREL_ERROR(read_root("type='int32'", ""), no_text, -1);
}

TEST(PropXmlReadTest, ANumberThatCannotBeReadIsZero) {
  EXPECT_EQ(read_root("type='int32'", "x"), VProp(0));
}

TEST(PropXmlReadTest, NoTextIsNoNumbers) {
  EXPECT_EQ(read_root("type='int32' size='0 0'", ""), VProp(VProparray<int>()));
}

TEST(PropXmlReadTest, NumbersThatDoNotFitTheSizeAreRefused) {
  const std::string message = at_root("Invalid size set!");
  EXPECT_VREL_ERROR(read_root("type='int32' size='1 3'", "1 2"), message, -1);
  EXPECT_VREL_ERROR(read_root("type='int32' size='1 1' isarr='1'", "1 2"), message, -1);
  EXPECT_VREL_ERROR(read_root("type='int32' size='65536 65536 1'", ""), message, -1);
}

TEST(PropXmlReadTest, ASizeThatIsNoListOfNumbersIsRefused) {
  for (const std::string size :
       {"x", "1 x", "-1 1", "1,1", "4294967296", "1x 2", "1-2", "1+2", "1."}) {
    EXPECT_VREL_ERROR(read_root("type='int32' size='" + size + "'", "1"),
                      no_xml("Attribute 'size' cannot be read from '" + size + "'"), -1);
  }
}

TEST(PropXmlReadTest, ASizeMayHaveMoreBlanks) {
  EXPECT_EQ(read_root("type='int32' size='  1\t 2 '", "1 2"), VProp(VProparray<int>{1, 2}));
}

TEST(PropXmlReadTest, AnEmptySizeIsThatOfARow) {
  EXPECT_EQ(read_root("type='int32' size=''", "1 2"), VProp(VProparray<int>{1, 2}));
}

TEST(PropXmlReadTest, BitsAreStoredInArrays) {
  const VProp value = read_root("type='int32' size='1 2' userbits='18446744073709551615'", "1 2");
  EXPECT_EQ(value.get_arr(true)->userbits, 18446744073709551615U);
}

TEST(PropXmlReadTest, BitsThatAreNoNumberAreRefused) {
  for (const std::string bits : {"-1", "", " ", "1 2", "1x", "0x1", "18446744073709551616"}) {
    EXPECT_VREL_ERROR(read_root("type='int32' size='1 2' userbits='" + bits + "'", "1 2"),
                      no_xml("Attribute 'userbits' cannot be read from '" + bits + "'"), -1);
  }
}

TEST(PropXmlReadTest, BitsThatAreNoNumberAreRefusedOfEveryValue) {
  const std::string message = no_xml("Attribute 'userbits' cannot be read from 'x'");
  EXPECT_VREL_ERROR(read_root("type='int32' userbits='x'", "1"), message, -1);
  EXPECT_VREL_ERROR(read_root("type='char' userbits='x'", "1"), message, -1);
  EXPECT_VREL_ERROR(read_root("type='struct' userbits='x'", ""), message, -1);
  EXPECT_VREL_ERROR(read_root("type='cell' isempty='1' userbits='x'", ""), message, -1);
  EXPECT_VREL_ERROR(read_root("type='none' userbits='x'", ""), message, -1);
}

TEST(PropXmlReadTest, TheBitsOfASingleValueAreLeftOut) {
  EXPECT_EQ(read_root("type='int32' userbits='4'", "1"), VProp(1));
  EXPECT_EQ(read_root("type='char' isarr='1' userbits='4'", "1"), VProp(L"1"));
}

TEST(PropXmlReadTest, ATextIsSingleWhateverItsSize) {
  EXPECT_EQ(read_root("type='char' size='7 7' isarr='1'", "x"), VProp(L"x"));
}

TEST(PropXmlReadTest, ATextIsMadeOfAllItsParts) {
  EXPECT_EQ(read_root("type='char'", "a<!-- b -->c<![CDATA[ <d> ]]>&lt;"), VProp(L"ac <d> <"));
}

TEST(PropXmlReadTest, ACellIsAnArrayWhateverItsSize) {
  EXPECT_EQ(read_root("type='cell'", "<x type='int32'>5</x>"), VProp(VProparray<VProp>{VProp(5)}));
}

TEST(PropXmlReadTest, ACellThatIsNotMarkedEmptyIsAnArray) {
  EXPECT_EQ(read_root("type='cell' size='0 0'", ""), VProp(VProparray<VProp>()));
  EXPECT_EQ(read_root("type='cell' size='0 0' isempty='0'", ""), VProp(VProparray<VProp>()));
}

TEST(PropXmlReadTest, AMarkOfEmptinessMayBeAWord) {
  VProp value = 5;
  vrel_import_xml(root("type='cell' isempty='true'", ""), value, vrel_xml_any);
  EXPECT_TRUE(value.empty());
  EXPECT_EQ(read_root("type='cell' size='0 0' isempty='false'", ""), VProp(VProparray<VProp>()));
}

TEST(PropXmlReadTest, AnotherMarkOfEmptinessIsRefused) {
  EXPECT_VREL_ERROR(read_root("type='cell' isempty='yes'", ""),
                    no_xml("Attribute 'isempty' cannot be read from 'yes'"), -1);
}

TEST(PropXmlReadTest, CellsThatDoNotFitTheSizeAreRefused) {
  EXPECT_VREL_ERROR(read_root("type='cell' size='4000000000 1'", "<x type='int32'>5</x>"),
                    at_root("Invalid size set!"), -1);
}

TEST(PropXmlReadTest, ABitMakesACellAnArrayOfTexts) {
  EXPECT_EQ(read_root("type='cell' size='1 2' userbits='3'", "<x>a</x><y/>"),
            VProp(VProparray<VPropstring>{L"a", L""}));
}

TEST(PropXmlReadTest, AnotherMarkMakesACellAnArrayOfTexts) {
  const VProp value = read_root("type='cell' size='1 1' userbits='6' ischar='2'", "<x>a</x>");
  EXPECT_EQ(value, VProp(VProparray<VPropstring>{L"a"}));
  EXPECT_EQ(value.get_arr(true)->userbits, 1U);
}

TEST(PropXmlReadTest, AMarkOfTextsThatIsNoIntegerIsRefused) {
  EXPECT_VREL_ERROR(read_root("type='cell' size='1 1' ischar='true'", "<x>a</x>"),
                    no_xml("Attribute 'ischar' cannot be read from 'true'"), -1);
}

TEST(PropXmlReadTest, AMarkThatDeniesTextsLeavesTheBits) {
  EXPECT_EQ(read_root("type='cell' size='1 1' userbits='1' ischar='0'", "<x>a</x>"),
            VProp(VProparray<VPropstring>{L"a"}));
}

TEST(PropXmlReadTest, TextsThatDoNotFitTheSizeAreRefused) {
  for (const char* const size : {"1 1", "1 3", "4000000000 1"}) {
    EXPECT_VREL_ERROR(
        read_root(std::string("type='cell' ischar='1' size='") + size + "'", "<x>a</x><x>b</x>"),
        at_root("Invalid size set!"), -1);
  }
}

TEST(PropXmlReadTest, ANameWithADotMakesAPath) {
  VProp expected;
  expected["a.b"] = 5;
  EXPECT_EQ(read_root("type='struct'", "<a.b type='int32'>5</a.b>"), expected);
}

TEST(PropXmlReadTest, ANameThatIsNoneOfAFieldIsRefused) {
  EXPECT_VREL_ERROR(read_root("type='struct'", "<a:b type='int32'>5</a:b>"),
                    at_root("Error parsing prop path: 'a:b' is not a valid name!"), -1);
}

TEST(PropXmlReadTest, OfFieldsOfTheSameNameTheLastCounts) {
  VProp expected;
  expected["a"] = 6;
  EXPECT_EQ(read_root("type='struct'", "<a type='int32'>5</a><a type='int32'>6</a>"), expected);
}

TEST(PropXmlReadTest, AFieldThatChangesItsKindIsRefused) {
  EXPECT_VREL_ERROR(read_root("type='struct'", "<a type='int32'>5</a><a type='double'>6</a>"),
                    "Type mismatch: found int32, expected double\nLocation:\n/root/a[2]", -1);
}

TEST(PropXmlReadTest, ManyFieldsAreFieldsLikeFew) {
  std::string content;
  VProp expected;
  for (int i = 0; i < 1000; ++i) {
    const std::string name = "f" + std::to_string(i % 700);
    content += "<" + name + " type='int32'>" + std::to_string(i) + "</" + name + ">";
    expected[name] = i;
  }
  EXPECT_EQ(read_root("type='struct'", content), expected);
}

TEST(PropXmlReadTest, WhatIsReadAddsToAStruct) {
  VProp value;
  value["a"] = 1;
  vrel_import_xml(root("type='struct'", "<b type='int32'>2</b>"), value, vrel_xml_any);
  VProp expected;
  expected["a"] = 1;
  expected["b"] = 2;
  EXPECT_EQ(value, expected);
}

TEST(PropXmlReadTest, NumbersOfAnArrayAreReplacedWithShapeAndBits) {
  VProparray<int> numbers{1, 2};
  numbers.set_size({2, 1}, VProparrayBase::set_mode_checked);
  numbers.userbits = 6;
  VProp value = numbers;
  vrel_import_xml(root("type='int32' size='1 3'", "3 4 5"), value, vrel_xml_any);
  EXPECT_EQ(value, VProp(VProparray<int>{3, 4, 5}));
  EXPECT_EQ(value.get_arr(true)->get_size(true), (VProparrayBase::index_list{1, 3}));
  EXPECT_EQ(value.get_arr(true)->userbits, 0U);
}

TEST(PropXmlReadTest, ElementsAreAddedToAnArrayIfTheSizesAgree) {
  VProp cells = VProparray<VProp>{VProp(1), VProp(2)};
  vrel_import_xml(root("type='cell' size='1 3'", "<x type='int32'>3</x>"), cells, vrel_xml_any);
  EXPECT_EQ(cells, VProp(VProparray<VProp>{VProp(1), VProp(2), VProp(3)}));
  VProp texts = VProparray<VPropstring>{L"a", L"b"};
  vrel_import_xml(root("type='cell' ischar='1' size='1 3'", "<x>c</x>"), texts, vrel_xml_any);
  EXPECT_EQ(texts, VProp(VProparray<VPropstring>{L"a", L"b", L"c"}));
}

TEST(PropXmlReadTest, ElementsAreNotAddedToAnArrayIfTheSizesDiffer) {
  const auto expect_refused = [](VProp value, const std::string& text) {
    EXPECT_VREL_ERROR(vrel_import_xml(text, value, vrel_xml_any), at_root("Invalid size set!"), -1);
  };
  expect_refused(VProparray<VProp>(2), root("type='cell' size='1 1'", "<x type='int32'>3</x>"));
  expect_refused(VProparray<VPropstring>(2), root("type='cell' ischar='1'", "<x>c</x>"));
  expect_refused(VProparray<VPropstruct>(1),
                 root("type='struct' isarr='1'", "<x idx='1' type='int32'>5</x>"));
}

TEST(PropXmlReadTest, AValueOfAnotherKindIsRefused) {
  VProp value = 1.5;
  EXPECT_VREL_ERROR(vrel_import_xml(root("type='int32'", "2"), value, vrel_xml_any),
                    at_root("Type mismatch: found double, expected int32"), -1);
}

TEST(PropXmlReadTest, ReadingLeavesCopiesOfTheValueAlone) {
  VProp value = VProparray<int>{1, 2};
  const VProp copy(value);
  vrel_import_xml(root("type='int32' size='1 1' isarr='1'", "3"), value, vrel_xml_any);
  EXPECT_EQ(copy, VProp(VProparray<int>{1, 2}));
  EXPECT_EQ(value, VProp(VProparray<int>{3}));
}

// --- Arrays of structs

std::string x(int idx, const std::string& name = "x") {
  return "<" + name + " idx='" + std::to_string(idx) + "' type='int32'>5</" + name + ">";
}

void expect_no_struct_array(const std::string& size, const std::string& content) {
  EXPECT_VREL_ERROR(read_root("type='struct' isarr='1' size='" + size + "'", content),
                    at_root("Invalid struct array!"), -1);
}

TEST(PropXmlReadTest, StructsStandInARow) {
  const VProp value = read_root("type='struct' size='2 1'", x(1) + x(2));
  ASSERT_EQ(value.get_arr(true)->count(), 2U);
  EXPECT_EQ(value.getp("(1,0).x"), VProp(5));
}

TEST(PropXmlReadTest, FewerFieldsThanStructsAreRefused) {
  expect_no_struct_array("1 2", x(1));
  expect_no_struct_array("1 4000000000", x(1));
}

TEST(PropXmlReadTest, FieldsThatDoNotDivideAreRefused) {
  expect_no_struct_array("1 2", x(1) + x(2) + x(2));
}

TEST(PropXmlReadTest, AWrongPlaceOfAFieldIsRefused) {
  expect_no_struct_array("1 2", x(1) + x(1));
  expect_no_struct_array("1 2", x(1) + "<x type='int32'>5</x>");
}

TEST(PropXmlReadTest, AWrongPlaceInTheFirstStructIsRefused) {
  expect_no_struct_array("1 1", x(2));
  expect_no_struct_array("1 1", x(0));
  expect_no_struct_array("1 2", x(2) + x(2));
}

TEST(PropXmlReadTest, APlaceThatIsNoIntegerIsRefused) {
  EXPECT_VREL_ERROR(read_root("type='struct' isarr='1'", "<x idx='first' type='int32'>5</x>"),
                    no_xml("Attribute 'idx' cannot be read from 'first'"), -1);
}

TEST(PropXmlReadTest, OnlyInArraysOfStructsThePlaceCounts) {
  EXPECT_EQ(read_root("type='cell' size='1 2'", x(9) + x(-9)),
            VProp(VProparray<VProp>{VProp(5), VProp(5)}));
  VProp expected;
  expected["x"] = 5;
  EXPECT_EQ(read_root("type='struct'", x(9)), expected);
  EXPECT_EQ(read_root("idx='7' type='int32'", "5"), VProp(5));
}

TEST(PropXmlReadTest, ANameWithADotIsNoFieldOfTheFirstStruct) {
  VProp expected;
  expected["(0).a.b"] = 5;
  EXPECT_EQ(read_root("type='struct' isarr='1'", x(1, "a.b")), expected);
  expect_no_struct_array("1 2", x(1, "a.b") + x(2, "a.b"));
}

TEST(PropXmlReadTest, OtherFieldsThanThoseOfTheFirstStructAreRefused) {
  expect_no_struct_array("1 2", x(1) + x(2, "y"));
}

TEST(PropXmlReadTest, AnArrayOfNoStructsIsNotRead) {
  expect_no_struct_array("0 0", "");
  expect_no_struct_array("", "");
  expect_no_struct_array("0 3", x(1));
}

TEST(PropXmlReadTest, AnArrayOfMoreStructsThanCanBeCountedIsNotRead) {
  expect_no_struct_array("65536 65536", x(1));
  expect_no_struct_array("4294967295 4294967295 4294967295", x(1));
}

TEST(PropXmlReadTest, AnArrayOfStructsWithoutFieldsIsNotRead) { expect_no_struct_array("1 2", ""); }

// --- The complex form

VProp read_complex(const std::string& content) { return read_root("type='complex'", content); }

TEST(PropXmlReadTest, TwoNumbersMakeAComplexOne) {
  EXPECT_EQ(read_complex("<r type='int16'>1</r><i type='int16'>-2</i>"),
            VProp(std::complex<short>(1, -2)));
}

TEST(PropXmlReadTest, TwoArraysMakeAComplexOneWithTheShapeOfTheFirst) {
  const VProp value =
      read_complex("<r type='double' size='2 1'>1 2</r><i type='double' size='1 2'>3 4</i>");
  EXPECT_EQ(value, VProp(VProparray<std::complex<double>>{{1, 3}, {2, 4}}));
  EXPECT_EQ(value.get_arr(true)->get_size(true), (VProparrayBase::index_list{2, 1}));
}

TEST(PropXmlReadTest, NumbersOfEachBaseMakeComplexOnes) {
  for (const std::string type : {"uint8", "int8", "uint16", "int16", "uint32", "int32", "single",
                                 "double", "uint64", "int64"}) {
    const VProp value = read_complex("<r type='" + type + "'>1</r><i type='" + type + "'>2</i>");
    EXPECT_EQ(vrel_dt_get_name(value.get_id()), "cplx_" + type);
    EXPECT_EQ(value.get_arr(false), nullptr) << type;
    EXPECT_EQ(vrel_val2string(value), "(1,2)") << type;
  }
}

TEST(PropXmlReadTest, ArraysOfEachBaseMakeComplexOnes) {
  for (const std::string type : {"uint8", "int8", "uint16", "int16", "uint32", "int32", "single",
                                 "double", "uint64", "int64"}) {
    const std::string attributes = " type='" + type + "' size='1 2'>";
    const VProp value = read_complex("<r" + attributes + "1 3</r><i" + attributes + "2 4</i>");
    EXPECT_EQ(vrel_dt_get_name(value.get_id()), "cplx_" + type);
    EXPECT_NE(value.get_arr(false), nullptr) << type;
    EXPECT_EQ(vrel_val2string(value), "(1,2) (3,4)") << type;
  }
}

TEST(PropXmlReadTest, TheComplexFormTakesNoBits) {
  const VProp value =
      read_root("type='complex' userbits='4'",
                "<r type='int8' size='1 2'>1 2</r><i type='int8' size='1 2'>1 2</i>");
  EXPECT_EQ(value.get_arr(true)->userbits, 0U);
}

TEST(PropXmlReadTest, TheComplexFormNeedsTwoParts) {
  const std::string message = at_root("Malformed 'complex' element!");
  EXPECT_VREL_ERROR(read_complex(""), message, -1);
  EXPECT_VREL_ERROR(read_complex("<r type='int8'>1</r>"), message, -1);
  EXPECT_VREL_ERROR(read_complex("<r type='int8'>1</r><i type='int8'>1</i><j/>"), message, -1);
}

TEST(PropXmlReadTest, PartsOfDifferentTypesAreRefused) {
  EXPECT_VREL_ERROR(read_complex("<r type='int8'>1</r><i type='uint8'>1</i>"),
                    at_root("Real and imaginary part have different types in 'complex' element!"),
                    -1);
}

TEST(PropXmlReadTest, ANumberBesideAnArrayIsOfAnotherType) {
  EXPECT_VREL_ERROR(read_complex("<r type='int8'>1</r><i type='int8' isarr='1'>1</i>"),
                    at_root("Real and imaginary part have different types in 'complex' element!"),
                    -1);
}

TEST(PropXmlReadTest, PartsThatAreNoNumbersAreRefused) {
  const std::string message = at_root("Invalid type in 'complex' element!");
  EXPECT_VREL_ERROR(read_complex("<r type='logical'>1</r><i type='logical'>1</i>"), message, -1);
  EXPECT_VREL_ERROR(read_complex("<r type='char'>1</r><i type='char'>1</i>"), message, -1);
  EXPECT_VREL_ERROR(read_complex("<r type='cplx_int8'>(1,1)</r><i type='cplx_int8'>(1,1)</i>"),
                    message, -1);
  EXPECT_VREL_ERROR(read_complex("<r type='cell' isempty='1'/><i type='cell' isempty='1'/>"),
                    message, -1);
}

TEST(PropXmlReadTest, PartsOfDifferentCountsAreRefused) {
  const std::string two = "type='int8' size='1 2'>1 2<";
  const std::string three = "type='int8' size='1 3'>1 2 3<";
  for (const auto& [real, imaginary] : {std::pair(two, three), std::pair(three, two)}) {
    EXPECT_VREL_ERROR(read_complex("<r " + real + "/r><i " + imaginary + "/i>"),
                      at_root("Malformed 'complex' element!"), -1);
  }
}

// --- Where an error is

TEST(PropXmlReadTest, AnErrorTellsItsElement) {
  EXPECT_VREL_ERROR(read_root("type='struct'",
                              "<a type='cell' size='1 2'><item type='int32'>1</item>"
                              "<item type='struct'><x type='y'/></item></a>"),
                    "Unknown type 'y' in xml string!\nLocation:\n/root/a/item[2]/x", -1);
}

TEST(PropXmlReadTest, AnErrorBehindAnElementBelowTellsTheOneAbove) {
  EXPECT_VREL_ERROR(
      read_root("type='struct'", "<a type='cell' size='1 3'><item type='int32'>1</item></a>"),
      "Invalid size set!\nLocation:\n/root/a", -1);
}

TEST(PropXmlReadTest, InTheDataFormTheEnvelopeIsPartOfTheLocation) {
  EXPECT_VREL_ERROR(read("<LVData><Version>1</Version><x type='y'/></LVData>"),
                    "Unknown type 'y' in xml string!\nLocation:\n/LVData/x", -1);
}

}  // namespace
