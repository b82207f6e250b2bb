#include "lib/ome_tiff_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "lib/ome_units.h"
#include "support/expect_error.h"

namespace Vrel::tool {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

constexpr const char* micrometre = "\xC2\xB5m";

UnitRecord unit(std::size_t dimension, double factor) {
  UnitRecord unit;
  unit.exponents[dimension] = {1, 1};
  unit.factor = factor;
  return unit;
}

StackRecord stack(const std::vector<std::string>& labels, const std::vector<std::uint32_t>& sizes) {
  StackRecord stack;
  stack.header.rank = static_cast<std::uint32_t>(sizes.size());
  std::copy(sizes.begin(), sizes.end(), stack.header.sizes.begin());
  stack.header.lengths.fill(1.0);
  stack.labels = labels;
  stack.column_positions.resize(sizes.size());
  stack.column_labels.resize(sizes.size());
  return stack;
}

Region whole(const StackRecord& stack) {
  Region region;
  for (unsigned axis = 0; axis < stack.header.rank; ++axis) {
    region.push_back({0, stack.header.sizes[axis], false});
  }
  return region;
}

TEST(OmeTiffTextTest, DocumentOfAnImageIsThisText) {
  OmeImage image;
  image.name = "a<b";
  image.date = "2026-11-21T22:13:14";
  image.description = "two\nlines, 5 \xC2\xB5m";
  image.type = "uint16";
  image.order = "XYCTZ";
  image.axes[ome_x] = {4, micrometre, 0.25, {1.5}};
  image.axes[ome_y] = {3, "", {}, {}};
  image.axes[ome_c].size = 2;
  image.axes[ome_t] = {2, "s", 0.5, {-0.25, 0.25}};
  image.channels = {"DAPI", "x\"y"};
  image.has_positions = true;
  const std::string plane_end = " DeltaTUnit=\"s\" PositionX=\"1.5\" PositionXUnit=\"&#181;m\"/>";
  EXPECT_EQ(
      to_ome_xml(image, "vrel", "0"),
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>"
      "<OME xmlns=\"http://www.openmicroscopy.org/Schemas/OME/2016-06\""
      " xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" UUID=\"urn:uuid:0\" "
      "Creator=\"vrel\""
      " xsi:schemaLocation=\"http://www.openmicroscopy.org/Schemas/OME/2016-06"
      " http://www.openmicroscopy.org/Schemas/OME/2016-06/ome.xsd\">"
      "<Image ID=\"Image:0\" Name=\"a&#60;b\">"
      "<AcquisitionDate>2026-11-21T22:13:14</AcquisitionDate>"
      "<Description>two&#10;lines, 5 &#181;m</Description>"
      "<Pixels ID=\"Pixels:0\" DimensionOrder=\"XYCTZ\" Type=\"uint16\" SizeX=\"4\" SizeY=\"3\""
      " SizeZ=\"1\" SizeC=\"2\" SizeT=\"2\" PhysicalSizeX=\"0.25\" PhysicalSizeXUnit=\"&#181;m\""
      " TimeIncrement=\"0.5\" TimeIncrementUnit=\"s\">"
      "<Channel ID=\"Channel:0:0\" Name=\"DAPI\" SamplesPerPixel=\"1\"/>"
      "<Channel ID=\"Channel:0:1\" Name=\"x&#34;y\" SamplesPerPixel=\"1\"/>"
      "<TiffData IFD=\"0\" PlaneCount=\"4\"/>"
      "<Plane TheZ=\"0\" TheT=\"0\" TheC=\"0\" DeltaT=\"-0.25\"" +
          plane_end + "<Plane TheZ=\"0\" TheT=\"0\" TheC=\"1\" DeltaT=\"-0.25\"" + plane_end +
          "<Plane TheZ=\"0\" TheT=\"1\" TheC=\"0\" DeltaT=\"0.25\"" + plane_end +
          "<Plane TheZ=\"0\" TheT=\"1\" TheC=\"1\" DeltaT=\"0.25\"" + plane_end +
          "</Pixels></Image></OME>");
}

TEST(OmeTiffTextTest, AnyBytesMakeAnXmlTextInAscii) {
  OmeImage image;
  image.type = "uint8";
  image.order = "XYZCT";
  for (int byte = 0; byte < 256; ++byte) image.name += static_cast<char>(byte);
  image.name += "\xF0\x9F\x94\xAC\xEF\xBF\xBF";
  image.description = image.name;
  const std::string text = to_ome_xml(image, image.name, "0");
  for (const char c : text) ASSERT_TRUE(c >= 0x20 && c < 0x7F);
  EXPECT_THAT(text, HasSubstr("&#128300;&#65533;\""));
  EXPECT_THAT(text, Not(HasSubstr("&#0;")));
  EXPECT_THAT(text, Not(HasSubstr("&#27;")));
}

TEST(OmeTiffTextTest, NumbersThatAreNoneAreLeftOut) {
  OmeImage image;
  image.type = "uint8";
  image.order = "XYZCT";
  image.axes[ome_x] = {1, "m", 0.0, {std::numeric_limits<double>::infinity()}};
  image.axes[ome_y] = {1, "m", std::numeric_limits<double>::infinity(), {2.0}};
  image.has_positions = true;
  const std::string text = to_ome_xml(image, "", "0");
  EXPECT_THAT(text, Not(HasSubstr("PhysicalSize")));
  EXPECT_THAT(text, Not(HasSubstr("PositionX")));
  EXPECT_THAT(text, HasSubstr("PositionY=\"2\""));
}

TEST(OmeTiffUnitsTest, UnitsHaveTheirNames) {
  const std::pair<double, const char*> lengths[] = {{1.0, "m"},
                                                    {1e-3, "mm"},
                                                    {1e-6, micrometre},
                                                    {1e-9, "nm"},
                                                    {1e-12, "pm"},
                                                    {1e-10, "\xE2\x84\xAB"},
                                                    {0.0254, "in"},
                                                    {1e3, "km"},
                                                    {3.0856775814913673e16, "pc"},
                                                    {1e-6 * (1 + 1e-12), micrometre}};
  for (const auto& [factor, name] : lengths) {
    const auto found = to_ome_length(unit(0, factor));
    ASSERT_TRUE(found) << name;
    EXPECT_EQ(found->name, name);
    EXPECT_EQ(found->factor, 1.0);
  }
  const std::pair<double, const char*> times[] = {{1.0, "s"},    {1e-3, "ms"},  {1e-6, "\xC2\xB5s"},
                                                  {60.0, "min"}, {3600.0, "h"}, {86400.0, "d"}};
  for (const auto& [factor, name] : times) {
    const auto found = to_ome_time(unit(2, factor));
    ASSERT_TRUE(found) << name;
    EXPECT_EQ(found->name, name);
  }
}

TEST(OmeTiffUnitsTest, OtherLengthsAreMicrometresAndOtherTimesSeconds) {
  EXPECT_EQ(to_ome_length(unit(0, 5e-7))->name, micrometre);
  EXPECT_DOUBLE_EQ(to_ome_length(unit(0, 5e-7))->factor, 0.5);
  EXPECT_EQ(to_ome_time(unit(2, 7.0))->name, "s");
  EXPECT_DOUBLE_EQ(to_ome_time(unit(2, 7.0))->factor, 7.0);
}

TEST(OmeTiffUnitsTest, WhatIsNeitherLengthNorTimeHasNoUnit) {
  EXPECT_FALSE(to_ome_length(UnitRecord()));
  EXPECT_FALSE(to_ome_time(UnitRecord()));
  EXPECT_FALSE(to_ome_length(unit(2, 1.0)));
  EXPECT_FALSE(to_ome_time(unit(0, 1.0)));
  EXPECT_FALSE(to_ome_length(unit(0, 0.0)));
  EXPECT_FALSE(to_ome_length(unit(0, -1.0)));
  EXPECT_FALSE(to_ome_length(unit(0, std::numeric_limits<double>::infinity())));
  EXPECT_FALSE(to_ome_length(unit(0, std::numeric_limits<double>::quiet_NaN())));
  UnitRecord area = unit(0, 1.0);
  area.exponents[0] = {2, 1};
  EXPECT_FALSE(to_ome_length(area));
  area.exponents[0] = {0, 0};
  EXPECT_FALSE(to_ome_length(area));
  area.exponents[0] = {2, 2};
  EXPECT_TRUE(to_ome_length(area));
}

TEST(OmeTiffImageTest, AxesAndOrderGoByTheLetters) {
  const StackRecord record = stack({"X", "Y", "T", "C"}, {5, 4, 3, 2});
  const OmeImage image = describe_image(record, whole(record), 4);
  EXPECT_EQ(image.order, "XYTCZ");
  EXPECT_EQ(image.type, "uint16");
  EXPECT_EQ(image.axes[ome_x].size, 5u);
  EXPECT_EQ(image.axes[ome_y].size, 4u);
  EXPECT_EQ(image.axes[ome_z].size, 1u);
  EXPECT_EQ(image.axes[ome_c].size, 2u);
  EXPECT_EQ(image.axes[ome_t].size, 3u);
  EXPECT_EQ(image.number_of_planes(), 6u);
}

TEST(OmeTiffImageTest, ALengthWithoutUnitIsNotSet) {
  StackRecord record = stack({"X", "Y"}, {4, 4});
  record.header.lengths = {2.0, 1.0};
  record.footer.units[1] = unit(0, 1e-6);
  const OmeImage image = describe_image(record, whole(record), 1);
  EXPECT_EQ(image.axes[ome_x].unit, "");
  EXPECT_FALSE(image.axes[ome_x].step);
  EXPECT_EQ(image.axes[ome_y].step, 0.25);
}

TEST(OmeTiffImageTest, ALengthThatIsNoneIsLeftOut) {
  for (const double length : {0.0, -1.0, std::numeric_limits<double>::infinity()}) {
    StackRecord record = stack({"X"}, {4});
    record.header.lengths[0] = length;
    record.footer.units[0] = unit(0, 1e-6);
    EXPECT_EQ(describe_image(record, whole(record), 1).axes[ome_x].unit, "") << length;
  }
}

TEST(OmeTiffImageTest, ARegionIsPlacedWhereItsSamplesLie) {
  StackRecord record = stack({"X", "Y", "Z"}, {10, 10, 4});
  record.header.lengths = {10.0, 10.0, 8.0};
  record.header.offsets = {100.0, 0.0, 0.0};
  for (std::size_t axis = 0; axis < 3; ++axis) record.footer.units[axis] = unit(0, 1e-6);
  EXPECT_THAT(describe_image(record, whole(record), 1).axes[ome_x].positions, ElementsAre(100.0));
  const OmeImage image = describe_image(record, {{0, 5}, {0, 10}, {1, 3}}, 1);
  EXPECT_TRUE(image.has_positions);
  EXPECT_THAT(image.axes[ome_x].positions, ElementsAre(97.5));
  EXPECT_THAT(image.axes[ome_y].positions, ElementsAre(0.0));
  EXPECT_THAT(image.axes[ome_z].positions, ElementsAre(-1.0, 1.0));
  EXPECT_EQ(image.axes[ome_x].step, 1.0);
}

TEST(OmeTiffImageTest, AWholeStackWithoutOffsetsHasNoPositionsToTell) {
  StackRecord record = stack({"X"}, {10});
  record.footer.units[0] = unit(0, 1e-6);
  EXPECT_FALSE(describe_image(record, whole(record), 1).has_positions);
}

TEST(OmeTiffImageTest, ColumnsAreCutAsTheRegionIs) {
  StackRecord record = stack({"X", "Y", "Z", "C"}, {1, 1, 3, 3});
  record.footer.units[2] = unit(0, 1e-6);
  record.column_positions[2] = {1.0, 5.0, 6.0};
  record.column_labels[3] = {"a", "b", "c"};
  const OmeImage image = describe_image(record, {{0, 1}, {0, 1}, {1, 3}, {2, 3}}, 1);
  EXPECT_THAT(image.axes[ome_z].positions, ElementsAre(5.0, 6.0));
  EXPECT_FALSE(image.axes[ome_z].step);
  EXPECT_THAT(image.channels, ElementsAre("c"));
}

TEST(OmeTiffImageTest, WhatHasNoPlaceIsRefused) {
  const auto describe = [](const std::vector<std::string>& labels) {
    const StackRecord record = stack(labels, std::vector<std::uint32_t>(labels.size(), 2));
    return describe_image(record, whole(record), 1);
  };
  EXPECT_VREL_ERROR(describe({"", "", "", "", "", ""}),
                    "OME-TIFF has no place for axis 5, --region picks a part of it!", -1);
  EXPECT_VREL_ERROR(describe({"Z", "X", "Y"}),
                    "OME-TIFF needs axis X in front, --region picks a part of the axes before it!",
                    -1);
  EXPECT_VREL_ERROR(describe({"X", "T", "Y"}),
                    "OME-TIFF needs axis Y in front, --region picks a part of the axes before it!",
                    -1);
  EXPECT_VREL_ERROR(describe({"Y", "X"}),
                    "OME-TIFF needs axis X in front, --region picks a part of the axes before it!",
                    -1);
  EXPECT_EQ(describe({"Y", "Z"}).order, "XYZTC");
}

TEST(OmeTiffImageTest, TypesThatOmeLacksAreRefused) {
  const StackRecord record = stack({"X"}, {2});
  for (const auto& [id, name] : {std::pair(0x1000, "uint64"), std::pair(0x40000004, "cplx_uint16"),
                                 std::pair(0x10000, "logical"), std::pair(0x400, "none")}) {
    EXPECT_VREL_ERROR(describe_image(record, whole(record), id),
                      std::string("No OME-TIFF type for samples of the type '") + name +
                          "', --type converts them!",
                      -5);
  }
  EXPECT_EQ(describe_image(record, whole(record), 0x800).type, "uint32");
}

TEST(OmeTiffImageTest, NoSamplesAreRefused) {
  const StackRecord record = stack({"X"}, {0});
  EXPECT_VREL_ERROR(describe_image(record, whole(record), 1), "No samples to be written!", -1);
}

}  // namespace
}  // namespace Vrel::tool
