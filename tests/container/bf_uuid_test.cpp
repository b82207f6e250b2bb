// The UUID of the metadata, for which a test needs the class of Qt.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vrelio/container/bf_file.h>

#include <QUuid>
#include <typeinfo>

#include "container/stack_writing.h"

namespace {

using Vrel::testing::WrittenFile;

TEST(BFUuidTest, TheUuidStandsBehindTheCreator) {
  WrittenFile file;
  file->set_uuid(QUuid("{6F1C9F5E-0B1D-4D0E-9A4C-3F6B6B0B2A10}"));
  file->set_creator("test");
  file->close();
  EXPECT_THAT(
      file.record().dictionary.at("ome_xml"),
      testing::HasSubstr("<ome:OME Creator=\"test\" "
                         "UUID=\"urn:uuid:6f1c9f5e-0b1d-4d0e-9a4c-3f6b6b0b2a10\" xmlns:ome="));
}

TEST(BFUuidTest, TheNullUuidIsRefusedAndTheFormerOneStays) {
  WrittenFile file;
  file->set_uuid(QUuid("{6F1C9F5E-0B1D-4D0E-9A4C-3F6B6B0B2A10}"));
  EXPECT_THROW(file->set_uuid(QUuid()), std::bad_cast);
  file->close();
  EXPECT_THAT(file.record().dictionary.at("ome_xml"),
              testing::HasSubstr("UUID=\"urn:uuid:6f1c9f5e-0b1d-4d0e-9a4c-3f6b6b0b2a10\""));
}

}  // namespace
