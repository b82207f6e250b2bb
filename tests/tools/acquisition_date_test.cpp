#include "lib/acquisition_date.h"

#include <gtest/gtest.h>

namespace Vrel::tool {
namespace {

std::string image(const std::string& date) {
  return "<ome:Image ID=\"Image:1\"><ome:AcquisitionDate>" + date +
         "</ome:AcquisitionDate></ome:Image>";
}

std::string document(const std::string& images) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?><ome:OME Creator=\"c\">" + images +
         "</ome:OME>";
}

std::string date_in(const std::string& xml, std::size_t stacks, std::size_t index) {
  FileRecord file;
  file.dictionary["ome_xml"] = xml;
  file.stacks.resize(stacks);
  return acquisition_date(file, index);
}

constexpr const char* first = "2026-11-21T22:13:14+01:00";
constexpr const char* second = "2026-11-22T00:00:00";

TEST(AcquisitionDateTest, EachStackHasTheDateOfItsImage) {
  EXPECT_EQ(date_in(document(image(first)), 1, 0), first);
  EXPECT_EQ(date_in(document(image(first) + image(second)), 2, 0), first);
  EXPECT_EQ(date_in(document(image(first) + image(second)), 2, 1), second);
}

TEST(AcquisitionDateTest, OtherNumbersOfImagesAreNotBelieved) {
  EXPECT_EQ(date_in(document(image(first)), 2, 0), "");
  EXPECT_EQ(date_in(document(image(first) + image(second)), 1, 0), "");
  EXPECT_EQ(date_in(document(image(first) + image(second)), 3, 1), "");
}

TEST(AcquisitionDateTest, OtherTextsHaveNoDate) {
  EXPECT_EQ(acquisition_date(FileRecord(), 0), "");
  for (const std::string& text :
       {std::string(), std::string("no xml"), std::string("<a>5</a>"), document(""), document("5"),
        document("<ome:Image ID=\"1\"/>"), document(image("")), document(image("5")),
        document(image(first)).substr(0, 150), std::string(100000, '<')}) {
    EXPECT_EQ(date_in(text, 1, 0), "") << text.substr(0, 100);
  }
}

TEST(AcquisitionDateTest, OnlyWhatXmlSchemaTakesIsADate) {
  for (const char* const date : {"2026-11-21T22:13:14", "2026-11-21T22:13:14Z",
                                 "2026-11-21T22:13:14.5", "2026-11-21T22:13:14.125-08:30"}) {
    EXPECT_EQ(date_in(document(image(date)), 1, 0), date);
  }
  for (const char* const date :
       {"2026-11-21", "2026-11-21 22:13:14", "21.11.2026", "2026-11-21T22:13",
        "2026-11-21T22:13:14.", "2026-11-21T22:13:14+1", "2026-11-21T22:13:14+01-00",
        "2026-11-21T22:13:14 UTC", "x026-11-21T22:13:14"}) {
    EXPECT_EQ(date_in(document(image(date)), 1, 0), "") << date;
  }
}

}  // namespace
}  // namespace Vrel::tool
