#include <vrelio/ome/list.h>

#include <gtest/gtest.h>

#include <memory>

#include "ome/ome_views.h"

namespace {

using Json::Value;
using Object = Ome::Field::Object<Signaling>;

// An element with a list of channels under the key "ome:Channel".
struct Channels {
  explicit Channels(Value& tree)
      : element(tree, Value(), Ome::Remains()), list(element, "ome:Channel") {}

  Object element;
  Ome::List<Channel> list;
};

Value map_with_name(const char* name) { return Json::Object{{"Name", name}}; }

TEST(OmeListTest, NullIsAnEmptyList) {
  Value tree;
  const Channels channels(tree);
  EXPECT_EQ(channels.list.size(), 0U);
  EXPECT_TRUE(channels.list.empty());
  EXPECT_EQ(text_of(tree), R"({"ome:Channel":null})");
}

TEST(OmeListTest, AnEmptyArrayIsAnEmptyList) {
  Value tree;
  tree["ome:Channel"] = Json::Array();
  Channels channels(tree);
  EXPECT_EQ(channels.list.size(), 0U);
  EXPECT_EQ(tree["ome:Channel"], Value(Json::Array()));
  EXPECT_EQ(channels.list.append()->ID.value(), Value("Channel:1"));
}

TEST(OmeListTest, AnArrayHasAViewForEachItem) {
  Value tree;
  tree["ome:Channel"] = Json::Array{map_with_name("a"), Value(), map_with_name("c")};
  const Channels channels(tree);
  ASSERT_EQ(channels.list.size(), 3U);
  EXPECT_EQ(channels.list[0]->Name.value(), Value("a"));
  EXPECT_TRUE(channels.list[1]->Name.value().is_null());
  EXPECT_EQ(channels.list[2]->Name.value(), Value("c"));
}

TEST(OmeListTest, AMapThatStandsAloneBecomesAnArrayOfOneItem) {
  Value tree;
  tree["ome:Channel"] = map_with_name("only");
  const Channels channels(tree);
  EXPECT_EQ(channels.list.size(), 1U);
  ASSERT_EQ(tree["ome:Channel"].kind(), Json::kind_array);
  ASSERT_EQ(tree["ome:Channel"].array().size(), 1U);
  EXPECT_EQ(tree["ome:Channel"].array().front()["Name"], Value("only"));
}

TEST(OmeListTest, WhatIsThereGetsNoId) {
  Value tree;
  tree["ome:Channel"] = Json::Array{map_with_name("a"), Json::Object{{"ID", "mine"}}};
  const Channels channels(tree);
  EXPECT_TRUE(channels.list[0]->ID.value().is_null());
  EXPECT_EQ(channels.list[1]->ID.value(), Value("mine"));
}

TEST(OmeListTest, WhatIsAppendedGetsItsPositionAsId) {
  Value tree;
  tree["ome:Channel"] = map_with_name("old");
  Channels channels(tree);
  EXPECT_EQ(channels.list.append()->ID.value(), Value("Channel:2"));
  EXPECT_EQ(channels.list.append()->ID.value(), Value("Channel:3"));
  EXPECT_EQ(channels.list.size(), 3U);
  EXPECT_EQ(tree["ome:Channel"].array().back()["ID"], Value("Channel:3"));
}

TEST(OmeListTest, TheFirstAppendedGetsTheNumberOne) {
  Value tree;
  Channels channels(tree);
  EXPECT_EQ(channels.list.append()->ID.value(), Value("Channel:1"));
  EXPECT_EQ(tree["ome:Channel"].array().size(), 1U);
}

TEST(OmeListTest, AnInitialValueIsAssignedToTheNewElement) {
  Value tree;
  Channels channels(tree);
  channels.list.append(map_with_name("a"));
  EXPECT_EQ(channels.list[0]->Name.value(), Value("a"));
  EXPECT_EQ(channels.list[0]->ID.value(), Value("Channel:1"));
  channels.list.append(Json::Object{{"ID", "mine"}});
  EXPECT_EQ(channels.list[1]->ID.value(), Value("mine"));
}

TEST(OmeListTest, AnElementThatCannotBeViewedIsNotAppended) {
  Value tree;
  Channels channels(tree);
  channels.list.append();
  const std::string text = text_of(tree);
  EXPECT_BAD_CAST(channels.list.append("text"));
  EXPECT_BAD_CAST(channels.list.append(Json::Object{{"SamplesPerPixel", 0}}));
  EXPECT_EQ(text_of(tree), text);
  EXPECT_EQ(channels.list.size(), 1U);
  EXPECT_EQ(channels.list.append()->ID.value(), Value("Channel:2"));
}

TEST(OmeListTest, TheFirstViewStaysValidWhileTheListGrows) {
  Value tree;
  Image image(&tree);
  const auto first = image.Channel.append();
  const Value* const node = &first->Name.value();
  for (int i = 0; i < 100; ++i) image.Channel.append();
  first->Name = "still here";
  first->LightSourceSettings.append()->Attenuation = 0.5;
  EXPECT_EQ(&first->Name.value(), node);
  EXPECT_EQ(image.Channel[0], first);
  Value& front = tree[""]["ome:Pixels"][""]["ome:Channel"].array().front();
  EXPECT_EQ(front["Name"], Value("still here"));
  EXPECT_EQ(front[""]["ome:LightSourceSettings"].array().front()["Attenuation"], Value(0.5));
}

TEST(OmeListTest, AViewOutlivesItsList) {
  Value tree;
  boost::shared_ptr<Channel> channel;
  {
    Image image(&tree);
    channel = image.Channel.append();
  }
  channel->Name = "on its own";
  Image image(&tree);
  EXPECT_EQ(image.Channel[0]->Name.value(), Value("on its own"));
}

TEST(OmeListTest, AnIndexBehindTheEndIsRefused) {
  Value tree;
  Channels channels(tree);
  EXPECT_BAD_CAST(channels.list[0]);
  channels.list.append();
  EXPECT_BAD_CAST(channels.list[1]);
  EXPECT_BAD_CAST(channels.list[static_cast<std::size_t>(-1)]);
}

TEST(OmeListTest, IsGoneThroughInOrder) {
  Value tree;
  Image image(&tree);
  for (int i = 0; i < 3; ++i) image.Plane.append()->TheZ = i;
  int index = 0;
  for (const auto& plane : image.Plane) EXPECT_EQ(plane->TheZ.value(), Value(index++));
  EXPECT_EQ(index, 3);
}

TEST(OmeListTest, EveryListHasItsKey) {
  Value tree;
  Document document(&tree);
  document.Instrument.append()->LightSource.append();
  const auto image = document.Image.append();
  image->Channel.append()->LightSourceSettings.append();
  image->Plane.append();
  Value& content = tree["ome:OME"][""];
  EXPECT_EQ(content["ome:Instrument"].array().front()[""]["ome:LightSource"].array().size(), 1U);
  Value& pixels = content["ome:Image"].array().front()[""]["ome:Pixels"][""];
  EXPECT_EQ(pixels["ome:Plane"].array().size(), 1U);
  EXPECT_EQ(pixels["ome:Channel"].array().front()[""]["ome:LightSourceSettings"].array().size(),
            1U);
}

TEST(OmeListTest, EachImageHasItsOwnNumber) {
  Value tree;
  Document document(&tree);
  document.Image.append();
  const auto second = document.Image.append();
  EXPECT_EQ(second->ID.value(), Value("Image:2"));
  EXPECT_EQ(second->PixelsID.value(), Value("Pixels:2"));
}

TEST(OmeListTest, ItemsAddedToTheTreeAreSeen) {
  Value tree;
  Channels channels(tree);
  const auto first = channels.list.append();
  tree["ome:Channel"].array().push_back(map_with_name("late"));
  ASSERT_EQ(channels.list.size(), 2U);
  EXPECT_EQ(channels.list[0], first);
  EXPECT_EQ(channels.list[1]->Name.value(), Value("late"));
}

TEST(OmeListTest, AnItemAddedToTheTreeHasToKeepTheRules) {
  Value tree;
  Channels channels(tree);
  channels.list.append();
  tree["ome:Channel"].array().push_back("text");
  EXPECT_BAD_CAST(channels.list.size());
  tree["ome:Channel"].array().pop_back();
  EXPECT_EQ(channels.list.size(), 1U);
}

}  // namespace
