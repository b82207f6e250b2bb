#include "lib/plain_xml.h"

#include <gtest/gtest.h>

#include "support/expect_error.h"

namespace Vrel::tool {
namespace {

constexpr const char* invalid = "Invalid XML!";

std::string plain(const std::string& text) { return plain_xml(text, ""); }

TEST(PlainXmlTest, EveryTextAndAttributeIsMarked) {
  EXPECT_EQ(plain("<a b='1' c=\"true\">12</a>"), "<a b=\"x1\" c=\"xtrue\">x12</a>");
  EXPECT_EQ(plain("<a b=''/>"), "<a b=\"x\" />");
}

TEST(PlainXmlTest, WhatIsNoDataIsLeftOut) {
  EXPECT_EQ(
      plain(
          "\xEF\xBB\xBF<?xml version=\"1.0\"?>\n<!-- <b> --><a>\n <b/> <?c d?>\n</a>\n<!-- e -->"),
      "<a><b /></a>");
}

TEST(PlainXmlTest, CharactersAreWrittenInOneWay) {
  EXPECT_EQ(plain("<a>&lt;&#65;&#x42;&#xB5;&#x212b;&#x1F600;<![CDATA[<&]]></a>"),
            "<a>x&lt;AB\xC2\xB5\xE2\x84\xAB\xF0\x9F\x98\x80&lt;&amp;</a>");
  EXPECT_EQ(plain("<a b='\"&quot;&apos;>'/>"), "<a b=\"x&quot;&quot;&apos;&gt;\" />");
}

TEST(PlainXmlTest, ATextKeepsItsBlanks) { EXPECT_EQ(plain("<a> b\n</a>"), "<a>x b\n</a>"); }

TEST(PlainXmlTest, AnElementCanBeLeftOutWithAllThatItHolds) {
  EXPECT_EQ(plain_xml("<a><o:s><b.c>t<s/>u</b.c></o:s><d/></a>", "s"), "<a><d /></a>");
  EXPECT_EQ(plain_xml("<a><s/><d/></a>", "s"), "<a><d /></a>");
}

TEST(PlainXmlTest, WhatIsNoXmlIsRefused) {
  for (const char* const text : {"text",
                                 "<a",
                                 "<a>",
                                 "</a>",
                                 "<a></b>",
                                 "<a><b></a></b>",
                                 "<a b></a>",
                                 "<a b=c/>",
                                 "<a b='c/>",
                                 "<a b=\"<\"/>",
                                 "<!-- ",
                                 "<?xml",
                                 "<a><![CDATA[</a>",
                                 "<!DOCTYPE a><a/>",
                                 "<a>&b;</a>",
                                 "<a>&lt</a>",
                                 "<a>&#;</a>",
                                 "<a>&#0;</a>",
                                 "<a>&#xD800;</a>",
                                 "<a>&#x110000;</a>",
                                 "<a>&#99999999999;</a>",
                                 "<a>&#x-1;</a>",
                                 "< a/>",
                                 "<a/>text",
                                 "<a / >",
                                 "<a =\"b\"/>"}) {
    EXPECT_VREL_ERROR(plain(text), invalid, -4);
  }
}

TEST(PlainXmlTest, NestingHasAnEnd) {
  const auto nested = [](std::size_t depth) {
    std::string text;
    for (std::size_t i = 0; i < depth; ++i) text += "<a>";
    for (std::size_t i = 0; i < depth; ++i) text += "</a>";
    return text;
  };
  EXPECT_EQ(plain(nested(64)), nested(64));
  EXPECT_VREL_ERROR(plain(nested(65)), invalid, -4);
}

TEST(PlainXmlTest, ADocumentThatIsCutOffIsRefused) {
  const std::string whole = "<a b='1'><c>t&lt;</c><!-- d --><![CDATA[e]]></a>";
  for (std::size_t size = 1; size < whole.size(); ++size) {
    EXPECT_VREL_ERROR(plain(whole.substr(0, size)), invalid, -4);
  }
}

}  // namespace
}  // namespace Vrel::tool
