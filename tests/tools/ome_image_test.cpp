#include "lib/ome_image.h"

#include <gtest/gtest.h>
#include <vrelio/ome/image.h>

#include "lib/ome_tree.h"

namespace Vrel::tool {
namespace {

ImportStack stack_of(const std::vector<std::pair<unsigned, std::string>>& axes, int data_type = 4) {
  ImportStack stack;
  stack.data_type = data_type;
  for (const auto& [size, label] : axes) {
    stack.axes.push_back({});
    stack.axes.back().size = size;
    stack.axes.back().label = label;
  }
  return stack;
}

std::string sizes(const ImportStack& stack) {
  const Json::Value image = make_ome_image(stack, "", 1);
  const Json::Value& pixels = *child(image, "ome:Pixels");
  std::string text = text_attribute(pixels, "DimensionOrder");
  for (const char letter : {'X', 'Y', 'Z', 'C', 'T'}) {
    text += ' ' + std::to_string(
                      static_cast<int>(number_attribute(pixels, std::string("Size") + letter, 0)));
  }
  return text;
}

TEST(OmeImageTest, SizesGoByTheLabels) {
  EXPECT_EQ(sizes(stack_of({{2, "X"}, {3, "Y"}, {4, "C"}, {5, "Z"}})), "XYCZT 2 3 5 4 1");
  EXPECT_EQ(sizes(stack_of({{4, "C"}, {2, "X"}, {3, "Y"}})), "XYCZT 2 3 1 4 1");
  EXPECT_EQ(sizes(stack_of({{2, "X"}, {3, "Y"}, {4, "T"}})), "XYTZC 2 3 1 1 4");
}

TEST(OmeImageTest, AxesWithoutALabelTakeTheLettersThatAreLeft) {
  EXPECT_EQ(sizes(stack_of({{2, ""}, {3, ""}, {4, ""}, {5, ""}, {6, ""}})), "XYZTC 2 3 4 6 5");
  EXPECT_EQ(sizes(stack_of({{2, "X"}, {3, "Y"}, {4, ""}})), "XYZTC 2 3 4 1 1");
  EXPECT_EQ(sizes(stack_of({{2, "C"}, {3, "C"}})), "XYCZT 3 1 1 2 1");
  EXPECT_EQ(sizes(stack_of({})), "XYZTC 1 1 1 1 1");
}

TEST(OmeImageTest, WhatTheSchemaHasNoPlaceForStaysUnset) {
  EXPECT_EQ(sizes(stack_of({{1, ""}, {1, ""}, {1, ""}, {1, ""}, {1, ""}, {1, ""}})), " 0 0 0 0 0");
  EXPECT_EQ(sizes(stack_of({{0, "X"}, {1, "Y"}})), " 0 0 0 0 0");
  EXPECT_EQ(sizes(stack_of({{4294967295u, "X"}})), " 0 0 0 0 0");
  const Json::Value image = make_ome_image(stack_of({{1, "X"}}, 0x1000), "", 1);
  EXPECT_EQ(attribute(*child(image, "ome:Pixels"), "Type"), nullptr);
}

TEST(OmeImageTest, StepsAreThoseOfOnePixelInTheUnitOfTheAxis) {
  ImportStack stack = stack_of({{4, "X"}, {2, "Y"}, {5, "T"}});
  stack.axes[0].length = 10.0;
  stack.axes[0].unit = "nm";
  stack.axes[2].length = 10.0;
  stack.axes[2].unit = "min";
  const Json::Value image = make_ome_image(stack, "", 1);
  const Json::Value& pixels = *child(image, "ome:Pixels");
  EXPECT_EQ(number_attribute(pixels, "PhysicalSizeX", 0), 2.5);
  EXPECT_EQ(text_attribute(pixels, "PhysicalSizeXUnit"), "nm");
  EXPECT_EQ(attribute(pixels, "PhysicalSizeY"), nullptr);
  EXPECT_EQ(number_attribute(pixels, "TimeIncrement", 0), 2.0);
  EXPECT_EQ(text_attribute(pixels, "TimeIncrementUnit"), "min");
}

TEST(OmeImageTest, EveryImageCanBeViewedAndHasItsNumber) {
  ImportStack stack = stack_of({{3, "C"}, {2, "X"}, {2, "Y"}});
  stack.description = "about";
  stack.image[""]["ome:Pixels"][""]["ome:Channel"].array().emplace_back(
      Json::Object{{"Name", "a"}});
  Json::Value image = make_ome_image(stack, "name", 7);
  const Ome::Image<Json::SignalingReference> view(&image);
  EXPECT_EQ(view.ID.value(), Json::Value("Image:7"));
  EXPECT_EQ(view.PixelsID.value(), Json::Value("Pixels:7"));
  EXPECT_EQ(view.Name.value(), Json::Value("name"));
  EXPECT_EQ(view.Description.value(), Json::Value("about"));
  EXPECT_EQ(view.Type.value(), Json::Value("uint16"));
  EXPECT_EQ(view.Interleaved.value(), Json::Value(true));
  EXPECT_EQ(view.Channel[0]->ID.value(), Json::Value("Channel:7:1"));
}

}  // namespace
}  // namespace Vrel::tool
