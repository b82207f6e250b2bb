// Assigning whole elements while views of what is in them are alive.
#include <gtest/gtest.h>

#include <functional>
#include <random>

#include "ome/ome_views.h"

namespace {

using Json::Value;

Value pixels_of(int size, std::initializer_list<const char*> channels) {
  Value pixels;
  pixels["SizeX"] = size;
  for (const char* const name : channels) {
    pixels[""]["ome:Channel"].array().push_back(Json::Object{{"Name", name}});
  }
  return pixels;
}

TEST(OmeObjectTest, WithoutFieldsBelowItTakesTheMapAsItIs) {
  Value tree;
  Channel channel(&tree);
  channel.LightPath = Json::Object{{"x", 1}, {"y", 2}};
  channel.LightPath = Json::Object{{"z", Value()}};
  EXPECT_EQ(text_of(channel.LightPath.value()), R"({"z":null})");
}

TEST(OmeObjectTest, FieldsBelowShowWhatIsAssigned) {
  Value tree;
  Image image(&tree);
  image.SizeY = 9;
  image.Pixels = pixels_of(5, {});
  EXPECT_EQ(image.SizeX.value(), Value(5));
  EXPECT_TRUE(image.SizeY.value().is_null());
  EXPECT_EQ(&image.SizeX.value(), &tree[""]["ome:Pixels"]["SizeX"]);
  image.SizeX = 6;
  EXPECT_EQ(tree[""]["ome:Pixels"]["SizeX"], Value(6));
}

TEST(OmeObjectTest, NullMakesAllFieldsBelowNull) {
  Value tree;
  Image image(&tree, Value(), 1);
  image.SizeX = 3;
  image.Element = Value();
  EXPECT_TRUE(image.ID.value().is_null());
  EXPECT_TRUE(image.SizeX.value().is_null());
  image.SizeX = 4;
  EXPECT_EQ(tree[""]["ome:Pixels"]["SizeX"], Value(4));
}

TEST(OmeObjectTest, KeysThatNoFieldHasAreTakenOver) {
  Value tree;
  Image image(&tree);
  image.Pixels = Json::Object{{"Extra", 1}};
  EXPECT_EQ(tree[""]["ome:Pixels"]["Extra"], Value(1));
  image.Pixels = Json::Object{};
  EXPECT_TRUE(tree[""]["ome:Pixels"]["Extra"].is_null());
}

TEST(OmeObjectTest, WhatItHoldsIsAssignedWithoutChange) {
  Value tree;
  Image image(&tree);
  image.Channel.append();
  const std::string text = text_of(tree);
  image.Element = image.Element.value();
  image.Pixels = image.Pixels.value();
  EXPECT_EQ(text_of(tree), text);
}

TEST(OmeObjectTest, APartOfItselfCanBeAssigned) {
  Value tree;
  Image image(&tree);
  image.Name = "outer";
  image.Content = Json::Object{{"Name", "inner"}};
  image.Element = image.Content.value();
  EXPECT_EQ(image.Name.value(), Value("inner"));
  EXPECT_TRUE(image.SizeX.value().is_null());
}

TEST(OmeObjectTest, OnlyAMapIsAssigned) {
  Value tree;
  Image image(&tree);
  const std::string text = text_of(tree);
  for (const Value& value : {Value(1), Value("text"), Value(Json::Array())}) {
    EXPECT_BAD_CAST(image.Pixels = value);
  }
  EXPECT_EQ(text_of(tree), text);
}

TEST(OmeObjectTest, TheSameAssignmentTwiceIsToldOnce) {
  Value tree;
  Image image(&tree);
  const auto listener = listen_to(image.Pixels, [](const void*) { return std::string("told"); });
  image.Pixels = pixels_of(5, {"a", "b"});
  EXPECT_EQ(listener->notes.size(), 1U);
  image.Pixels = pixels_of(5, {"a", "b"});
  EXPECT_EQ(listener->notes.size(), 1U);
  image.Pixels = pixels_of(5, {"a"});
  EXPECT_EQ(listener->notes.size(), 2U);
  image.Pixels = pixels_of(5, {"a", "c"});
  EXPECT_EQ(listener->notes.size(), 3U);
  image.Pixels = pixels_of(5, {"a", "d"});
  EXPECT_EQ(listener->notes.size(), 4U);
  image.Pixels = Value();
  EXPECT_EQ(listener->notes.size(), 5U);
  image.Pixels = Value();
  EXPECT_EQ(listener->notes.size(), 5U);
}

TEST(OmeObjectTest, ListsBelowGrowAndShrink) {
  Value tree;
  Image image(&tree);
  image.Pixels = pixels_of(1, {"a", "b", "c"});
  ASSERT_EQ(image.Channel.size(), 3U);
  const auto first = image.Channel[0];
  image.Pixels = pixels_of(1, {"d"});
  ASSERT_EQ(image.Channel.size(), 1U);
  EXPECT_EQ(image.Channel[0], first);
  EXPECT_EQ(first->Name.value(), Value("d"));
  image.Pixels = Json::Object{};
  EXPECT_TRUE(image.Channel.empty());
  EXPECT_EQ(image.Channel.append()->ID.value(), Value("Channel:1"));
}

TEST(OmeObjectTest, AListNoticesItemsThatWereExchangedBehindItsBack) {
  Value tree;
  Image image(&tree);
  image.Pixels = pixels_of(1, {"a", "b", "c"});
  const auto third = image.Channel[2];
  image.Pixels = pixels_of(1, {"a"});
  image.Pixels = pixels_of(1, {"a", "d", "e"});
  ASSERT_EQ(image.Channel.size(), 3U);
  EXPECT_NE(image.Channel[2], third);
  EXPECT_EQ(image.Channel[2]->Name.value(), Value("e"));
  image.Channel[2]->Name = "f";
  EXPECT_EQ(tree[""]["ome:Pixels"][""]["ome:Channel"].array().back()["Name"], Value("f"));
}

TEST(OmeObjectTest, AViewOfWhatWasTakenOutStaysValid) {
  Value tree;
  boost::shared_ptr<Channel> second;
  {
    Image image(&tree);
    image.Pixels = pixels_of(1, {"a", "b"});
    second = image.Channel[1];
    image.Pixels = pixels_of(1, {"a"});
    second->Name = "alone";
    image.Content = Json::Object{};
  }
  second->Color = 5;
  EXPECT_EQ(second->Name.value(), Value("alone"));
  EXPECT_EQ(text_of(tree).find("alone"), std::string::npos);
}

TEST(OmeObjectTest, FieldsUnderAMapThatWasReplacedByAnotherKindStayValid) {
  Value tree;
  Image image(&tree);
  image.SizeX = 3;
  image.Content = Json::Object{{"ome:Pixels", "text"}};
  image.SizeX = 4;
  image.Name = "b";
  EXPECT_EQ(image.SizeX.value(), Value(4));
  EXPECT_EQ(tree[""]["ome:Pixels"], Value("text"));
}

TEST(OmeObjectTest, AMapInPlaceOfAnArrayIsAListOfOne) {
  Value tree;
  Image image(&tree);
  image.Pixels = pixels_of(1, {"a", "b"});
  const auto first = image.Channel[0];
  Value single;
  single[""]["ome:Channel"]["Name"] = "single";
  image.Pixels = single;
  ASSERT_EQ(image.Channel.size(), 1U);
  EXPECT_EQ(image.Channel[0]->Name.value(), Value("single"));
  first->Name = "gone";
  EXPECT_EQ(image.Channel[0]->Name.value(), Value("single"));
}

// --- Anything in place of anything

class RandomTrees {
 public:
  explicit RandomTrees(unsigned seed) : random_(seed) {}

  Value map(int depth) {
    Value value{Json::Object()};
    for (int i = pick(5); i > 0; --i) value[key()] = any(depth - 1);
    return value;
  }

 private:
  int pick(int count) { return static_cast<int>(random_() % static_cast<unsigned>(count)); }

  std::string key() {
    static const char* const keys[] = {"",          "Name",  "ome:Pixels", "ome:Channel",
                                       "ome:Plane", "SizeX", "Color",      "Other"};
    return keys[pick(8)];
  }

  Value any(int depth) {
    const int kind = pick(depth > 0 ? 7 : 4);
    if (kind == 0) return {};
    if (kind == 1) return "text";
    if (kind == 2) return pick(3);
    if (kind == 3) return 0.5 * pick(3);
    if (kind == 4) return array(depth);
    return map(depth);
  }

  Value array(int depth) {
    Value value{Json::Array()};
    for (int i = pick(4); i > 0; --i) value.array().push_back(any(depth - 1));
    return value;
  }

  std::mt19937 random_;
};

// The tree without what is not written: null entries, and maps that hold nothing else.
Value without_nulls(const Value& value) {
  if (value.kind() == Json::kind_array) {
    Json::Array items;
    for (const Value& item : value.array()) items.push_back(without_nulls(item));
    return items;
  }
  if (value.kind() != Json::kind_map) return value;
  Json::Object entries;
  for (const auto& [key, entry] : value.map()) {
    Value kept = without_nulls(entry);
    if (!kept.is_null()) entries.emplace(key, std::move(kept));
  }
  if (entries.empty()) return {};
  return entries;
}

// Lists look at what they have got; it may break their rules.
void look_at_lists(const Image& image) {
  try {
    for (const auto& channel : image.Channel) channel->LightPath = Json::Object{{"n", 1}};
    for (const auto& plane : image.Plane) plane->TheZ = 1;
  } catch (const std::bad_cast&) {
  }
}

void write_through(Image& image, Channel& channel, int number) {
  image.Name = "name " + std::to_string(number);
  image.SizeX = number + 1;
  image.TimeIncrement = 0.5;
  image.MetadataOnly = Json::Object{{"n", number}};
  channel.Color = number;
  channel.LightPath = Json::Object{{"n", number}};
}

TEST(OmeObjectTest, AnyMapCanBeAssignedWhileFieldsAreBoundBelow) {
  for (unsigned seed = 1; seed <= 300; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    RandomTrees trees(seed);
    Value tree;
    Image image(&tree);
    const auto channel = image.Channel.append();
    for (int round = 0; round < 6; ++round) {
      const Value value = trees.map(5);
      image.Element = value;
      ASSERT_EQ(without_nulls(tree), without_nulls(value)) << text_of(value);
      write_through(image, *channel, round);
      look_at_lists(image);
    }
  }
}

TEST(OmeObjectTest, AssignmentTwiceChangesNothingTheSecondTime) {
  for (unsigned seed = 1; seed <= 300; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    RandomTrees trees(seed);
    Value tree;
    Image image(&tree);
    const auto listener = listen_to(image.Element, [](const void*) { return std::string(); });
    const Value value = trees.map(5);
    image.Element = value;
    const std::size_t count = listener->notes.size();
    const std::string text = text_of(tree);
    image.Element = value;
    EXPECT_EQ(listener->notes.size(), count) << text_of(value);
    EXPECT_EQ(text_of(tree), text);
  }
}

}  // namespace
