#include "prop/xml_dom_internal.h"

#include <gtest/gtest.h>
#include <tinyxml.h>

#include <string>

#include "support/expect_error.h"

namespace {

using Vrel::detail::Xml_document;
using Vrel::detail::Xml_element;
using Vrel::detail::Xml_error;
using Vrel::detail::Xml_view;

std::string printed(const std::string& text) {
  Xml_element element("a");
  element.append_text(text);
  return element.print(false);
}

std::string there_and_back(const std::string& text) {
  return Xml_document(printed(text)).root().text();
}

TEST(XmlElementTest, AnElementWithoutANameHasALongOne) {
  EXPECT_EQ(Xml_element().print(false),
            "<DefaultValueCausedByCreatingAnElementWithNoParameters />");
}

TEST(XmlElementTest, AttributesStandInTheOrderOfTheirWriting) {
  Xml_element element("a");
  element.set_attribute("z", "1");
  element.set_attribute("b", "2");
  EXPECT_EQ(element.print(false), "<a z=\"1\" b=\"2\" />");
}

TEST(XmlElementTest, NothingIsPrintedBetweenElements) {
  Xml_element element("a");
  element.append(Xml_element("b"));
  element.append(Xml_element("b"));
  EXPECT_EQ(element.print(false), "<a><b /><b /></a>");
}

TEST(XmlElementTest, ADeclarationHasNoEncoding) {
  EXPECT_EQ(Xml_element("a").print(true), "<?xml version=\"1.0\" standalone=\"yes\" ?><a />");
}

TEST(XmlElementTest, WithoutATextThereIsNoneToTake) {
  EXPECT_STANDARD_ERROR(Xml_element("a").text(), Xml_error,
                        "Text does not exists in the current element");
}

TEST(XmlElementTest, AnEmptyTextIsOne) {
  Xml_element element("a");
  element.append_text("");
  EXPECT_EQ(element.text(), "");
}

TEST(XmlElementTest, TextsComeBackAsTheyWere) {
  for (const std::string text : {"x",
                                 " x ",
                                 " ",
                                 "\t\r\n",
                                 "\n",
                                 "a\rb",
                                 "&",
                                 "<>\"'",
                                 "&amp;",
                                 "&#x41;",
                                 "&#65;",
                                 "&#x;",
                                 "&&#x&#x41",
                                 " &#x ",
                                 "]]>",
                                 "<![CDATA[",
                                 "\x7F",
                                 "\xEF\xBB\xBF",
                                 "\xEF\xBB\xBF ",
                                 "\xEF\xBB\xBFx",
                                 "\xC2\xA0",
                                 "\xC2\x85",
                                 "\xC3\xA9",
                                 "\xE2\x82\xAC",
                                 "\xF0\x9F\x98\x80",
                                 "\xF4\x8F\xBF\xBF",
                                 "a\n  b"}) {
    EXPECT_EQ(there_and_back(text), text) << testing::PrintToString(text);
  }
}

TEST(XmlElementTest, ATextOfBlanksIsASection) {
  EXPECT_EQ(printed(" \n"), "<a><![CDATA[ \n]]></a>");
}

TEST(XmlDocumentTest, TextsAroundCommentsAndSectionsAreOne) {
  EXPECT_EQ(Xml_document("<a>b<!--x-->c<![CDATA[<d>]]>e</a>").root().text(), "bc<d>e");
}

TEST(XmlDocumentTest, TextsAroundElementsAreOne) {
  EXPECT_EQ(Xml_document("<a>b<c/>d</a>").root().text(), "bd");
}

TEST(XmlDocumentTest, AMissingTextIsAnError) {
  const Xml_document document("<a><b/></a>");
  EXPECT_STANDARD_ERROR(document.root().text(), Xml_error,
                        "Text does not exists in the current element");
}

TEST(XmlDocumentTest, AMissingAttributeIsNull) {
  EXPECT_EQ(Xml_document("<a b=\"1\"/>").root().attribute("c"), nullptr);
}

TEST(XmlDocumentTest, WhatTheLibraryRefusesIsAnError) {
  EXPECT_STANDARD_ERROR(Xml_document("<a b=\"1\" b=\"2\"/>"), Xml_error, "Error parsing Element.");
}

TEST(XmlDocumentTest, BlanksStayWhateverTheSettingOfTheProcess) {
  for (const bool condensed : {true, false}) {
    TiXmlBase::SetCondenseWhiteSpace(condensed);
    EXPECT_EQ(Xml_document("<a>  b  c </a>").root().text(), "  b  c ");
  }
}

TEST(XmlDocumentTest, APathNamesTheElements) {
  const Xml_document document("<a><b/><c><d/></c></a>");
  EXPECT_EQ(document.root().first_child().next().first_child().path(), "/a/c/d");
}

TEST(XmlDocumentTest, APathCountsNeighboursOfTheSameName) {
  const Xml_document document("<a><b/>text<c/><b/></a>");
  const Xml_view first = document.root().first_child();
  EXPECT_EQ(first.path(), "/a/b[1]");
  EXPECT_EQ(first.next().path(), "/a/c");
  EXPECT_EQ(first.next().next().path(), "/a/b[2]");
}

}  // namespace
