#include <gtest/gtest.h>
#include <vrelio/ome/id.h>

#include <climits>

namespace {

TEST(OmeIdTest, ANumberMakesAnId) {
  EXPECT_EQ(Json::Value(Ome::Id("Channel", 3)), Json::Value("Channel:3"));
  EXPECT_EQ(Json::Value(Ome::Id("Image", UINT_MAX)), Json::Value("Image:4294967295"));
}

TEST(OmeIdTest, TheNumberZeroMakesNone) { EXPECT_TRUE(Json::Value(Ome::Id("Image", 0)).is_null()); }

TEST(OmeIdTest, KeepsItsParts) {
  const Ome::Id id("Plane", 7);
  EXPECT_STREQ(id.prefix, "Plane");
  EXPECT_EQ(id.number, 7U);
}

}  // namespace
