#include "lib/verify_texts.h"

#include <gtest/gtest.h>

#include <string>

namespace Vrel::tool {
namespace {

TEST(XmlFaultTest, ADocumentHasNone) {
  for (const char* const text :
       {"<a/>", "<a></a>", "\xEF\xBB\xBF<a/>",
        "<?xml version=\"1.0\"?>\n<!-- c --><a>\n</a >\n<!-- d -->", "<a b='1' c = \"<2\" />",
        "<a>text &amp; &#10; &#x1F;</a>", "<a><![CDATA[<b> & ]]></a>",
        "<ome:OME xmlns:ome=\"x\"><ome:b/><ome:b></ome:b></ome:OME>", "<\xC3\xA4/>",
        "<!DOCTYPE a [<!ENTITY e 'v>'>]><a>&e;</a>", "<a b=''/>"}) {
    const std::string without =
        std::string(text) == "<a b='1' c = \"<2\" />" ? "<a b='1' c = \"2\" />" : text;
    const auto fault = find_xml_fault(without);
    EXPECT_FALSE(fault) << without << ": " << fault->what << " at " << fault->offset;
  }
}

struct Broken {
  const char* text;
  std::size_t offset;
};

TEST(XmlFaultTest, IsToldWithItsPlace) {
  for (const Broken& broken : {Broken{"", 0},
                               {"   ", 3},
                               {"text", 0},
                               {"<a>", 3},
                               {"<a></b>", 6},
                               {"<a/><b/>", 5},
                               {"</a>", 3},
                               {"<a/>x", 4},
                               {"<a b/>", 4},
                               {"<a b=1/>", 5},
                               {"<a b='1'c='2'/>", 8},
                               {"<a b='<'/>", 6},
                               {"<a b='1' b='2'/>", 16},
                               {"<a b='1", 7},
                               {"<a", 2},
                               {"<a>&x;</a>", 3},
                               {"<a>& </a>", 3},
                               {"<a>&#x;</a>", 3},
                               {"<a>\x01</a>", 3},
                               {"<!-- ", 4},
                               {"<a><![CDATA[ </a>", 12},
                               {"<1/>", 1},
                               {"<a></a", 6},
                               {"<![CDATA[x]]><a/>", 9},
                               {"<a/><!DOCTYPE a>", 13},
                               {"<?xml ", 2}}) {
    const auto fault = find_xml_fault(broken.text);
    ASSERT_TRUE(fault) << broken.text;
    EXPECT_EQ(fault->offset, broken.offset) << broken.text << ": " << fault->what;
  }
}

TEST(XmlFaultTest, EveryCutOfADocumentIsAFaultInside) {
  const std::string text =
      "<?xml version='1.0'?><a b='&lt;'><!-- c --><d><![CDATA[x]]></d>y&#65;</a>";
  ASSERT_FALSE(find_xml_fault(text));
  for (std::size_t size = 0; size < text.size(); ++size) {
    const auto fault = find_xml_fault(text.substr(0, size));
    ASSERT_TRUE(fault) << size;
    EXPECT_LE(fault->offset, size);
  }
}

TEST(XmlFaultTest, DepthCostsNoStack) {
  std::string text;
  for (int i = 0; i < 1000000; ++i) text += "<a>";
  const auto fault = find_xml_fault(text);
  ASSERT_TRUE(fault);
  EXPECT_EQ(fault->offset, text.size());
}

std::string metadata(const std::string& axes, const std::string& projection) {
  return "<root idx=\"1\" type=\"struct\" size=\"1 1\" vprop_version=\"1\">"
         "<global_pos idx=\"1\" type=\"struct\" size=\"1 1\">" +
         axes +
         "<offset idx=\"1\" isarr=\"1\" userbits=\"0\" type=\"double\" size=\"1\">0</offset>"
         "<projection idx=\"1\" isarr=\"1\" userbits=\"0\" type=\"double\" size=\"" +
         projection + "</projection></global_pos></root>";
}

constexpr const char* one_axis =
    "<axes idx=\"1\" isarr=\"1\" userbits=\"1\" type=\"cell\" size=\"1\">"
    "<item idx=\"0\" type=\"char\" size=\"1 0\" /></axes>";

TEST(MetadataFaultTest, APositionOfTheRightShapeHasNone) {
  EXPECT_EQ(find_metadata_fault("", 5, 1), std::nullopt);
  EXPECT_EQ(find_metadata_fault(metadata(one_axis, "1 1\">1"), 5, 1), std::nullopt);
}

TEST(MetadataFaultTest, APositionOfAnotherRankIsOne) {
  EXPECT_EQ(find_metadata_fault(metadata(one_axis, "1 1\">1"), 5, 2),
            "Invalid global stack position!");
}

TEST(MetadataFaultTest, AKeyThatIsMissingIsOneFromVersion3On) {
  const std::string text = metadata("", "1 1\">1");
  EXPECT_EQ(find_metadata_fault(text, 3, 1), "Type mismatch: found none, expected char[]");
  EXPECT_EQ(find_metadata_fault(text, 2, 1), std::nullopt);
}

TEST(MetadataFaultTest, WhatIsNoXmlIsOneInEveryVersion) {
  EXPECT_TRUE(find_metadata_fault("words", 1, 1));
  EXPECT_EQ(find_metadata_fault("<root/>", 1, 1), "Could not determine xml format!");
}

}  // namespace
}  // namespace Vrel::tool
