#include "lib/ome_description.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "lib/ome_tree.h"
#include "support/expect_error.h"

namespace Vrel::tool {
namespace {

using testing::ElementsAre;

constexpr const char* no_fit = "The OME-XML does not fit the TIFF directories!";

std::vector<TiffDirectory> directories(std::size_t count, unsigned samples_per_pixel = 1,
                                       bool is_separate = false) {
  TiffDirectory directory;
  directory.layout = {12, 10, samples_per_pixel, is_separate, 1};
  return std::vector<TiffDirectory>(count, directory);
}

std::string pixels(const std::string& sizes, const std::string& content,
                   const std::string& order = "XYCZT") {
  return "<OME><Image Name='n'><Pixels DimensionOrder='" + order + "' SizeX='12' SizeY='10' " +
         sizes + '>' + content + "</Pixels></Image></OME>";
}

OmeSeries image_of(const std::string& text, const std::vector<TiffDirectory>& files) {
  std::string whole = text;
  whole.replace(0, 5, "<OME xmlns='s'>");
  return read_ome_description(whole, files).front();
}

std::string labels(const OmeSeries& image) {
  std::string text;
  for (const ImportAxis& axis : image.axes) text += axis.label + std::to_string(axis.size) + ' ';
  return text;
}

TEST(OmeDescriptionTest, AxesStandInTheOrderOfTheDocumentWithoutThoseOfOne) {
  EXPECT_EQ(
      labels(image_of(pixels("SizeC='2' SizeZ='3' SizeT='1'", "<TiffData/>"), directories(6))),
      "X12 Y10 C2 Z3 ");
  EXPECT_EQ(labels(image_of(pixels("SizeC='1' SizeZ='3' SizeT='2'", "<TiffData/>", "XYTZC"),
                            directories(6))),
            "X12 Y10 T2 Z3 ");
  EXPECT_EQ(
      labels(image_of(pixels("SizeC='1' SizeZ='1' SizeT='1'", "<TiffData/>"), directories(1))),
      "X12 Y10 ");
}

TEST(OmeDescriptionTest, SamplesOfAPixelAreChannels) {
  const std::string text = pixels("SizeC='3' SizeZ='2' SizeT='1'", "<TiffData/>");
  EXPECT_EQ(labels(image_of(text, directories(2, 3))), "C3 X12 Y10 Z2 ");
  EXPECT_EQ(labels(image_of(text, directories(2, 3, true))), "X12 Y10 C3 Z2 ");
  EXPECT_VREL_ERROR(image_of(text, directories(2, 2)), no_fit, -4);
}

TEST(OmeDescriptionTest, PlanesAreInTheDirectoriesInTheirOrderUnlessTold) {
  const std::string sizes = "SizeC='2' SizeZ='2' SizeT='1'";
  EXPECT_THAT(image_of(pixels(sizes, ""), directories(4)).directories, ElementsAre(0, 1, 2, 3));
  EXPECT_THAT(
      image_of(pixels(sizes, "<TiffData IFD='1' PlaneCount='4'/>"), directories(5)).directories,
      ElementsAre(1, 2, 3, 4));
  EXPECT_THAT(image_of(pixels(sizes,
                              "<TiffData IFD='3'/><TiffData IFD='2' FirstC='1'/>"
                              "<TiffData IFD='0' FirstZ='1' PlaneCount='2'/>"),
                       directories(4))
                  .directories,
              ElementsAre(3, 2, 0, 1));
}

TEST(OmeDescriptionTest, PlanesThatNoDirectoryHasAreRefused) {
  const std::string sizes = "SizeC='2' SizeZ='2' SizeT='1'";
  for (const char* const data :
       {"<TiffData IFD='0'/>", "<TiffData IFD='1' PlaneCount='4'/>", "<TiffData IFD='4'/>",
        "<TiffData IFD='-1'/>", "<TiffData PlaneCount='5'/>", "<TiffData FirstC='2'/>",
        "<TiffData FirstZ='1' PlaneCount='3'/>",
        "<TiffData IFD='2147483647' PlaneCount='2147483647'/>", "<TiffData IFD='0.5'/>",
        "<TiffData FirstT='1'/>"}) {
    EXPECT_VREL_ERROR(image_of(pixels(sizes, data), directories(4)), no_fit, -4);
  }
}

TEST(OmeDescriptionTest, SizesThatDoNotFitAreRefused) {
  for (const char* const sizes :
       {"SizeC='2' SizeZ='2' SizeT='2'", "SizeC='0' SizeZ='2' SizeT='2'", "SizeC='2'",
        "SizeC='-2' SizeZ='-2' SizeT='1'", "SizeC='a' SizeZ='1' SizeT='1'",
        "SizeC='2147483647' SizeZ='2147483647' SizeT='2147483647'"}) {
    EXPECT_VREL_ERROR(image_of(pixels(sizes, "<TiffData/>"), directories(4)), no_fit, -4);
  }
  EXPECT_VREL_ERROR(image_of(pixels("SizeC='1' SizeZ='1' SizeT='1'", "", "XYZ"), directories(4)),
                    no_fit, -4);
  EXPECT_VREL_ERROR(image_of(pixels("SizeC='1' SizeZ='1' SizeT='1'", "", "ZYXCT"), directories(4)),
                    no_fit, -4);
}

TEST(OmeDescriptionTest, DirectoriesOfAnImageHaveToBeAlike) {
  std::vector<TiffDirectory> mixed = directories(2);
  mixed[1].layout.height = 11;
  EXPECT_VREL_ERROR(image_of(pixels("SizeC='2' SizeZ='1' SizeT='1'", "<TiffData/>"), mixed), no_fit,
                    -4);
}

TEST(OmeDescriptionTest, PlanesInAnotherFileAreNotFound) {
  const std::string data = "<TiffData><UUID FileName='b.tif'>urn:uuid:1</UUID></TiffData>";
  const std::string inner = pixels("SizeC='1' SizeZ='1' SizeT='1'", data).substr(5);
  EXPECT_VREL_ERROR(read_ome_description("<OME UUID='urn:uuid:2'>" + inner, directories(1)),
                    "Planes are in another file: \"b.tif\"", -4);
  EXPECT_EQ(read_ome_description("<OME UUID='urn:uuid:1'>" + inner, directories(1)).size(), 1u);
  EXPECT_EQ(read_ome_description("<OME a=''>" + inner, directories(1)).size(), 1u);
}

TEST(OmeDescriptionTest, LengthsAreThoseOfWholeAxes) {
  const OmeSeries image =
      image_of(pixels("SizeC='1' SizeZ='3' SizeT='2' PhysicalSizeX='0.5' PhysicalSizeY='2' "
                      "PhysicalSizeYUnit='nm' "
                      "PhysicalSizeZ='1' PhysicalSizeZUnit='pixel' TimeIncrement='1.5'",
                      "<TiffData/>"),
               directories(6));
  EXPECT_EQ(image.axes[0].length, 6.0);
  EXPECT_EQ(image.axes[0].unit, "\xC2\xB5m");
  EXPECT_EQ(image.axes[1].length, 20.0);
  EXPECT_EQ(image.axes[1].unit, "nm");
  EXPECT_EQ(image.axes[2].length, 0.0);
  EXPECT_EQ(image.axes[2].unit, "");
  EXPECT_EQ(image.axes[3].length, 3.0);
  EXPECT_EQ(image.axes[3].unit, "s");
}

TEST(OmeDescriptionTest, ChannelsNameTheColumnsOfTheirAxis) {
  const std::string sizes = "SizeC='3' SizeZ='1' SizeT='1'";
  const OmeSeries image =
      image_of(pixels(sizes,
                      "<Channel Name='488'/><Channel EmissionWavelength='0.5'/>"
                      "<Channel EmissionWavelength='700' EmissionWavelengthUnit='pm'/>"),
               directories(3));
  EXPECT_THAT(image.axes[2].column_labels, ElementsAre("488", "0.5 nm", "700 pm"));
  EXPECT_TRUE(
      image_of(pixels(sizes, "<Channel ID='a'/><Channel ID='b'/><Channel ID='c'/>"), directories(3))
          .axes[2]
          .column_labels.empty());
  EXPECT_TRUE(
      image_of(pixels(sizes, "<Channel Name='a'/>"), directories(3)).axes[2].column_labels.empty());
}

TEST(OmeDescriptionTest, WhatBreaksTheModelIsLeftOut) {
  const OmeSeries image = image_of(pixels("SizeC='1' SizeZ='1' SizeT='1'",
                                          "<Channel Name='a' EmissionWavelength='-1' "
                                          "ContrastMethod='none' Color='7'><LightPath/></Channel>"
                                          "<Plane TheZ='0' DeltaT='x' PositionX='1'/>"),
                                   directories(1));
  const Json::Value& found = *child(image.image, "ome:Pixels");
  const Json::Value& channel = *child(found, "ome:Channel");
  EXPECT_EQ(text_attribute(channel, "Name"), "a");
  EXPECT_EQ(number_attribute(channel, "Color", 0), 7);
  EXPECT_EQ(attribute(channel, "EmissionWavelength"), nullptr);
  EXPECT_EQ(attribute(channel, "ContrastMethod"), nullptr);
  const Json::Value& plane = *child(found, "ome:Plane");
  EXPECT_EQ(attribute(plane, "DeltaT"), nullptr);
  EXPECT_EQ(text_attribute(plane, "PositionXUnit"), "reference frame");
}

TEST(OmeDescriptionTest, WhatIsToldOfAxesOfOneEntryGoesOn) {
  const OmeSeries image =
      image_of(pixels("SizeC='1' SizeZ='1' SizeT='1' PhysicalSizeZ='0.5' TimeIncrement='-1' "
                      "TimeIncrementUnit='ms' SignificantBits='12'",
                      "<TiffData/>"),
               directories(1));
  const Json::Value& found = *child(image.image, "ome:Pixels");
  EXPECT_EQ(number_attribute(found, "PhysicalSizeZ", 0), 0.5);
  EXPECT_EQ(text_attribute(found, "PhysicalSizeZUnit"), "\xC2\xB5m");
  EXPECT_EQ(number_attribute(found, "SignificantBits", 0), 12);
  EXPECT_EQ(attribute(found, "TimeIncrement"), nullptr);
}

TEST(OmeDescriptionTest, StepsBeyondNumbersAreNotSet) {
  for (const char* const step : {"1e308", "1e999", "nan", "inf", "0", "-1", "x"}) {
    const std::string text =
        "SizeC='1' SizeZ='1' SizeT='1' PhysicalSizeX='" + std::string(step) + '\'';
    EXPECT_EQ(image_of(pixels(text, "<TiffData/>"), directories(1)).axes[0].length, 0.0) << step;
  }
}

TEST(OmeDescriptionTest, DocumentsAreKnownByTheirEnd) {
  EXPECT_TRUE(is_ome_description("<OME></OME>\n"));
  EXPECT_TRUE(is_ome_description("<?xml?><ome:OME></ome:OME>"));
  for (const char* const text : {"", "OME>", "ImageJ=1", "<svg></svg>", "\n", "<"}) {
    EXPECT_FALSE(is_ome_description(text)) << text;
  }
}

}  // namespace
}  // namespace Vrel::tool
