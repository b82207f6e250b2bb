#include "lib/imagej_description.h"

#include <gtest/gtest.h>

namespace Vrel::tool {
namespace {

constexpr const char* micrometre = "\xC2\xB5m";

ImageJDescription described(const std::string& entries) {
  return read_imagej_description("ImageJ=1.53f\n" + entries).value_or(ImageJDescription());
}

TEST(ImageJDescriptionTest, CountsStepsAndUnitsAreRead) {
  const ImageJDescription description = described(
      "images=24\nchannels=2\nslices=3\nframes=4\nunit=nm\nspacing=0.5\nfinterval=1.5\nloop="
      "false\n");
  EXPECT_EQ(description.images, 24u);
  EXPECT_EQ(description.channels, 2u);
  EXPECT_EQ(description.slices, 3u);
  EXPECT_EQ(description.frames, 4u);
  EXPECT_EQ(description.unit, "nm");
  EXPECT_EQ(description.z_unit, "nm");
  EXPECT_EQ(description.spacing, 0.5);
  EXPECT_EQ(description.interval, 1.5);
  EXPECT_EQ(description.time_unit, "s");
}

TEST(ImageJDescriptionTest, MicrometresAreSpelledInManyWays) {
  for (const char* const unit :
       {"micron", "um", "\xC2\xB5m", "\xCE\xBCm", "\\u00B5m", "\\u00b5m", "\xB5m", "micrometer"}) {
    EXPECT_EQ(described("unit=" + std::string(unit) + '\n').unit, micrometre) << unit;
  }
}

TEST(ImageJDescriptionTest, UnitsOfOtherKindsAreNotSet) {
  for (const char* const unit : {"pixel", "pixels", "", "reference frame", "s", "furlong", "1"}) {
    EXPECT_EQ(described("unit=" + std::string(unit) + '\n').unit, "") << unit;
  }
  EXPECT_EQ(described("tunit=nm\n").time_unit, "");
  EXPECT_EQ(described("tunit=msec\n").time_unit, "ms");
  EXPECT_EQ(described("unit=inch\n").unit, "in");
}

TEST(ImageJDescriptionTest, SlicesCanHaveAUnitOfTheirOwn) {
  const ImageJDescription description = described("unit=nm\nzunit=um\n");
  EXPECT_EQ(description.unit, "nm");
  EXPECT_EQ(description.z_unit, micrometre);
}

TEST(ImageJDescriptionTest, StepsThatAreNoLengthsAreNotSet) {
  for (const char* const number : {"0", "x", "", "nan", "inf", "1e999"}) {
    const std::string text(number);
    EXPECT_EQ(described("spacing=" + text + "\nfinterval=" + text + '\n').spacing, 0.0) << number;
    EXPECT_EQ(described("spacing=" + text + "\nfinterval=" + text + '\n').interval, 0.0) << number;
  }
  EXPECT_EQ(described("spacing=-0.5\n").spacing, 0.5);
  EXPECT_EQ(described("finterval=-0.5\n").interval, 0.0);
}

TEST(ImageJDescriptionTest, CountsThatDoNotFitAreNoDescription) {
  for (const char* const counts :
       {"images=5\nchannels=2\n", "channels=2\n", "images=0\n", "images=4\nslices=0\n",
        "images=8\nchannels=4294967296\nslices=4294967296\nframes=8\n"}) {
    EXPECT_FALSE(read_imagej_description("ImageJ=1\n" + std::string(counts))) << counts;
  }
}

TEST(ImageJDescriptionTest, ImagesWithoutOtherCountsAreOfNoKind) {
  EXPECT_EQ(described("images=5\n").images, 5u);
  EXPECT_EQ(described("images=5\n").slices, 1u);
}

TEST(ImageJDescriptionTest, LinesCanEndAsElsewhere) {
  EXPECT_EQ(described("images=3\r\nslices=3\r\nunit=nm\r\n").unit, "nm");
}

TEST(ImageJDescriptionTest, OtherTextsAreNone) {
  for (const char* const text : {"", "images=3\n", "<OME>", "{\"shape\": [1]}", " ImageJ=1\n"}) {
    EXPECT_FALSE(read_imagej_description(text)) << text;
  }
}

}  // namespace
}  // namespace Vrel::tool
