#include "lib/input_file.h"

#include <gtest/gtest.h>
#include <vrelio/foundation/error.h>

#include <cerrno>

#include "support/temporary_file.h"

namespace Vrel::tool {
namespace {

using Vrel::testing::TemporaryFile;

TEST(InputFileTest, ManyReadersReadAtOnceAlsoBesideAWriter) {
  const TemporaryFile temporary("content");
  VFile writer(VPropstring(temporary.name()), VFile::mode_modify);
  InputFile first(temporary.path());
  InputFile second(temporary.path());
  std::string text;
  first.get_file().read_str(text, 7);
  EXPECT_EQ(text, "content");
  second.get_file().read_str(text, 3);
  EXPECT_EQ(text, "con");
}

TEST(InputFileTest, AFileThatDoesNotOpenTellsTheSystemsReason) {
  const TemporaryFile temporary;
  try {
    InputFile input(temporary.path());
    FAIL();
  } catch (const VrelError& error) {
    EXPECT_STREQ(error.get_msg(), "Could not open file!");
    EXPECT_EQ(error.get_oserr_id(), ENOENT);
  }
}

}  // namespace
}  // namespace Vrel::tool
