#include <gtest/gtest.h>

#include <iostream>
#include <limits>
#include <stdexcept>
#include <type_traits>

#include "ome/ome_views.h"

namespace {

using Json::Value;
using Notes = std::vector<std::string>;

std::string read_map(const void* value) {
  return text_of(Value(*static_cast<const Json::Object*>(value)));
}

TEST(OmeListenerTest, AFieldHasNoneAtFirst) {
  Value tree;
  Image image(&tree);
  EXPECT_EQ(image.Name.listener(), nullptr);
  image.Name = "quiet";
  EXPECT_EQ(image.Name.value(), Value("quiet"));
}

TEST(OmeListenerTest, TheSameStringTwiceIsToldOnce) {
  Value tree;
  Image image(&tree);
  const auto listener = listen_to(image.Name, read_string);
  image.Name = "a";
  image.Name = "a";
  EXPECT_EQ(listener->notes, Notes({"a"}));
}

TEST(OmeListenerTest, EveryChangeIsTold) {
  Value tree;
  Image image(&tree);
  const auto listener = listen_to(image.Name, read_string);
  image.Name = "a";
  image.Name = "b";
  image.Name = Value();
  image.Name = Value();
  image.Name = "a";
  EXPECT_EQ(listener->notes, Notes({"a", "b", "unset", "a"}));
}

TEST(OmeListenerTest, WhatIsRefusedIsNotTold) {
  Value tree;
  Image image(&tree);
  const auto listener = listen_to(image.SizeX, read_native<int>);
  image.SizeX = 5;
  EXPECT_BAD_CAST(image.SizeX = 0);
  EXPECT_EQ(listener->notes, Notes({"5"}));
}

TEST(OmeListenerTest, DefaultsAreNotAssignedOnceMore) {
  Value tree;
  Image image(&tree);
  const auto listener = listen_to(image.PhysicalSizeX, read_native<double>);
  image.PhysicalSizeX = 1.0;
  EXPECT_TRUE(listener->notes.empty());
}

TEST(OmeListenerTest, AFieldTellsItsNativeForm) {
  Value tree;
  Image image(&tree);
  const auto text = listen_to(image.PhysicalSizeXUnit, read_string);
  const auto date = listen_to(image.AcquisitionDate, read_string);
  const auto flag = listen_to(image.BigEndian, read_native<bool>);
  const auto integer = listen_to(image.SizeT, read_native<int>);
  const auto number = listen_to(image.TimeIncrement, read_native<double>);
  image.PhysicalSizeXUnit = "nm";
  image.AcquisitionDate = "2015-03-29T10:20:30";
  image.BigEndian = true;
  image.SizeT = 7;
  image.TimeIncrement = 0.25;
  EXPECT_EQ(text->notes, Notes({"nm"}));
  EXPECT_EQ(date->notes, Notes({"2015-03-29T10:20:30"}));
  EXPECT_EQ(flag->notes, Notes({"1"}));
  EXPECT_EQ(integer->notes, Notes({"7"}));
  EXPECT_EQ(number->notes, Notes({"0.25"}));
}

TEST(OmeListenerTest, AnIntegerIsANumberForAFloat) {
  Value tree;
  Plane plane(&tree);
  const auto listener = listen_to(plane.DeltaT, read_native<double>);
  plane.DeltaT = -3;
  plane.DeltaT = -3.5;
  plane.DeltaT = Value();
  EXPECT_EQ(listener->notes, Notes({"-3", "-3.5", "unset"}));
}

// The kinds differ, and so do the values, until the rule has made a decimal of the new one.
TEST(OmeListenerTest, AnIntegerThatBecomesThePresentDecimalIsTold) {
  Value tree;
  Image image(&tree);
  const auto listener = listen_to(image.PhysicalSizeX, read_native<double>);
  image.PhysicalSizeX = 1;
  EXPECT_EQ(listener->notes, Notes({"1"}));
  EXPECT_EQ(image.PhysicalSizeX.value(), Value(1.0));
}

TEST(OmeListenerTest, ANumberThatIsNoneDiffersFromItself) {
  Value tree;
  Plane plane(&tree);
  const auto listener = listen_to(plane.DeltaT, read_native<double>);
  plane.DeltaT = std::numeric_limits<double>::quiet_NaN();
  plane.DeltaT = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(listener->notes.size(), 2U);
}

TEST(OmeListenerTest, AnEnumerationTellsItsIndex) {
  Value image_tree;
  Image image(&image_tree);
  const auto type = listen_to(image.Type, read_native<int>);
  const auto order = listen_to(image.DimensionOrder, read_native<int>);
  image.Type = "uint16";
  image.Type = Value();
  image.DimensionOrder = "XYTZC";
  EXPECT_EQ(type->notes, Notes({"5", "-1"}));
  EXPECT_EQ(order->notes, Notes({"5"}));

  Value channel_tree;
  Channel channel(&channel_tree);
  const auto illumination = listen_to(channel.IlluminationType, read_native<int>);
  const auto mode = listen_to(channel.AcquisitionMode, read_native<int>);
  const auto contrast = listen_to(channel.ContrastMethod, read_native<int>);
  channel.IlluminationType = "Transmitted";
  channel.AcquisitionMode = "Other";
  channel.ContrastMethod = "Fluorescence";
  EXPECT_EQ(illumination->notes, Notes({"0"}));
  EXPECT_EQ(mode->notes, Notes({"19"}));
  EXPECT_EQ(contrast->notes, Notes({"7"}));
}

TEST(OmeListenerTest, AnObjectTellsItsMap) {
  Value tree;
  Channel channel(&tree);
  const auto listener = listen_to(channel.LightPath, read_map);
  channel.LightPath = Json::Object{{"x", 1}};
  channel.LightPath = Json::Object{{"x", 1}};
  channel.LightPath = Value();
  EXPECT_EQ(listener->notes, Notes({R"({"x":1})", "{}"}));
  EXPECT_EQ(channel.LightPath.value(), Value(Json::Object()));
}

TEST(OmeListenerTest, WithoutAListenerAnObjectStaysNull) {
  Value tree;
  Channel channel(&tree);
  channel.LightPath = Json::Object{{"x", 1}};
  channel.LightPath = Value();
  EXPECT_TRUE(channel.LightPath.value().is_null());
}

// The example of docs/ome.md.
class SizePrinter : public Json::Listener {
 public:
  void on_change(const void* value) override {
    std::cout << "SizeX: " << *static_cast<const int*>(value) << "\n";
  }
};

TEST(OmeListenerTest, TheExampleOfThePagePrints) {
  testing::internal::CaptureStdout();
  Json::Value tree;
  Ome::Document<Json::SignalingReference> document(&tree);
  const auto image = document.Image.append();
  image->Name = "cells";
  image->SizeX.set_listener(boost::make_shared<SizePrinter>());
  image->SizeX = 512;
  image->Channel.append()->Color = 255;
  std::cout << image->Name.value() << "\n";
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "SizeX: 512\n\"cells\"\n");
}

class ThrowingListener : public Json::Listener {
 public:
  void on_change(const void*) override { throw std::runtime_error("not now"); }
};

TEST(OmeListenerTest, WhatAListenerThrowsLeavesTheAssignmentDone) {
  Value tree;
  Image image(&tree);
  image.Name.set_listener(boost::make_shared<ThrowingListener>());
  EXPECT_THROW(image.Name = "stored", std::runtime_error);
  EXPECT_EQ(image.Name.value(), Value("stored"));
}

class LeavingListener : public Json::Listener {
 public:
  explicit LeavingListener(Image& image) : image_(image) {}
  void on_change(const void*) override {
    image_.Name.set_listener(nullptr);
    ++calls_;
    EXPECT_EQ(calls_, 1);
  }

 private:
  Image& image_;
  int calls_ = 0;
};

TEST(OmeListenerTest, AListenerMayTakeItselfAway) {
  Value tree;
  Image image(&tree);
  image.Name.set_listener(boost::make_shared<LeavingListener>(image));
  image.Name = "a";
  EXPECT_EQ(image.Name.listener(), nullptr);
  image.Name = "b";
}

TEST(OmeListenerTest, AFieldHoldsAShareOfItsListener) {
  const auto listener = boost::make_shared<NotingListener>(read_string);
  {
    Value tree;
    Image image(&tree);
    image.Name.set_listener(listener);
    EXPECT_EQ(listener.use_count(), 2);
  }
  EXPECT_EQ(listener.use_count(), 1);
}

TEST(OmeListenerTest, AFieldIsAReferenceInOneWayOnly) {
  using Name = Ome::Field::String<Signaling>;
  EXPECT_TRUE((std::is_convertible_v<Name*, Json::Reference*>));
  EXPECT_TRUE((std::is_convertible_v<Name*, Json::SignalingReference*>));
}

TEST(OmeListenerTest, FieldsAndViewsAreNotCopied) {
  using Name = Ome::Field::String<Signaling>;
  EXPECT_FALSE(std::is_copy_constructible_v<Name>);
  EXPECT_FALSE((std::is_assignable_v<Name&, const Name&>));
  EXPECT_FALSE(std::is_copy_constructible_v<Ome::Field::Object<Signaling>>);
  EXPECT_FALSE(std::is_move_constructible_v<Plane>);
  EXPECT_FALSE(std::is_copy_constructible_v<Image>);
  EXPECT_FALSE(std::is_copy_assignable_v<Image>);
  EXPECT_FALSE(std::is_copy_constructible_v<Ome::List<Channel>>);
}

}  // namespace
