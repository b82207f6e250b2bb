#include "lib/ome_tree.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vrelio/json/write_xml.h>
#include <vrelio/ome/document.h>

#include <sstream>

#include "support/expect_error.h"

namespace Vrel::tool {
namespace {

using testing::SizeIs;

Json::Value document(const std::string& text) { return *read_ome_tree(text, "").find("ome:OME"); }

TEST(OmeTreeTest, ElementsGetThePrefixOfTheModel) {
  for (const char* const text :
       {"<OME a='1'><Image ID='b'/></OME>", "<ome:OME a='1'><ome:Image ID='b'/></ome:OME>",
        "<o:OME a='1'><o:Image ID='b'/></o:OME>"}) {
    const Json::Value root = document(text);
    ASSERT_NE(child(root, "ome:Image"), nullptr) << text;
    EXPECT_EQ(text_attribute(*child(root, "ome:Image"), "ID"), "b");
  }
}

TEST(OmeTreeTest, OnlyNumbersOfTheSchemaAreNumbers) {
  const Json::Value root = document(
      "<OME Name='488' SizeX='12' PhysicalSizeX='0.5' BigEndian='true' Fluor='true' TheZ='x' "
      "Color='-1'/>");
  EXPECT_EQ(*attribute(root, "Name"), Json::Value("488"));
  EXPECT_EQ(*attribute(root, "SizeX"), Json::Value(12));
  EXPECT_EQ(*attribute(root, "PhysicalSizeX"), Json::Value(0.5));
  EXPECT_EQ(*attribute(root, "BigEndian"), Json::Value(true));
  EXPECT_EQ(*attribute(root, "Fluor"), Json::Value("true"));
  EXPECT_EQ(*attribute(root, "TheZ"), Json::Value("x"));
  EXPECT_EQ(*attribute(root, "Color"), Json::Value(-1));
}

TEST(OmeTreeTest, ChildrenAreFoundAloneAndTogether) {
  const Json::Value root =
      document("<OME a=''><Image ID='1'/><Image ID='2'/><Plate ID='3'/></OME>");
  EXPECT_THAT(children(root, "ome:Image"), SizeIs(2));
  EXPECT_THAT(children(root, "ome:Plate"), SizeIs(1));
  EXPECT_THAT(children(root, "ome:None"), SizeIs(0));
  EXPECT_EQ(text_attribute(*children(root, "ome:Image")[1], "ID"), "2");
}

TEST(OmeTreeTest, TextsStayAsTheyAre) {
  const Json::Value root = document(
      "<OME><Image><Description> 12 &lt;</Description><Name b='1'>&amp;t</Name></Image></OME>");
  const Json::Value* const image = child(root, "ome:Image");
  ASSERT_NE(image, nullptr);
  EXPECT_EQ(text_of(child(*image, "ome:Description")), " 12 <");
  EXPECT_EQ(text_of(child(*image, "ome:Name")), "&t");
  EXPECT_EQ(text_of(nullptr), "");
}

TEST(OmeTreeTest, WhatTheLibraryWritesIsReadBackAsItWas) {
  Json::Value tree;
  Ome::Document<Json::SignalingReference> view(&tree);
  view.Creator = "12";
  const auto image = view.Image.append();
  image->Name = " &<'true'";
  image->Description = "\n7";
  image->SizeX = 12;
  image->PhysicalSizeX = 0.25;
  image->Interleaved = true;
  image->Channel.append()->Name = "488";
  image->Channel.append()->Color = -5;
  std::ostringstream before;
  Json::write_xml(tree, before);

  Json::Value again;
  Ome::Document<Json::SignalingReference> other(&again);
  other.OME = document(before.str());
  std::ostringstream after;
  EXPECT_EQ(other.Image.size(), 1u);
  EXPECT_EQ(other.Image[0]->Channel.size(), 2u);
  Json::write_xml(again, after);
  EXPECT_EQ(after.str(), before.str());
}

TEST(OmeTreeTest, OtherDocumentsAreRefused) {
  for (const char* const text :
       {"<a/>", "<OME/>", "<OME></OME>", "<OME>text</OME>", "", "<OME a='1'/><OME a='1'/>",
        "<OME a='1'>text<b/></OME>", "<OME a='1'><b-c/></OME>"}) {
    EXPECT_VREL_ERROR(read_ome_tree(text, ""), "Invalid OME-XML!", -4);
  }
}

}  // namespace
}  // namespace Vrel::tool
