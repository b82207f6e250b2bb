#include "lib/recover.h"

#include <gtest/gtest.h>
#include <vrelio/foundation/error.h>

#include <string>

#include "support/attached_file.h"
#include "support/golden.h"
#include "support/read_record.h"
#include "support/temporary_file.h"

namespace Vrel::tool {
namespace {

using Vrel::testing::AttachedFile;
using Vrel::testing::golden;
using Vrel::testing::read_record;
using Vrel::testing::TemporaryFile;

struct Recovered {
  RecoverReport report;
  FileRecord file;
};

Recovered recover_bytes(const std::string& bytes) {
  const TemporaryFile output;
  AttachedFile input(bytes);
  Recovered recovered;
  recovered.report = recover(input.file(), output.path(), false);
  recovered.file = read_record(output.content());
  return recovered;
}

// Golden files have metadata that no stack may keep, so that something is missing in each of them.
TEST(RecoverTest, AFileThatIsCutKeepsWhatStandsInFrontOfTheCut) {
  for (const char* const name : {"raw", "zipped", "stack_version_0"}) {
    const std::string bytes = golden(name);
    const FileRecord whole = read_record(bytes);
    for (std::size_t size = whole.header_end; size < bytes.size(); size += 13) {
      const Recovered recovered = recover_bytes(bytes.substr(0, size));
      std::size_t expected = 0;
      while (expected < whole.stacks.size() && whole.stacks[expected].stack_end <= size) ++expected;
      ASSERT_GE(recovered.file.stacks.size(), expected) << name << " cut at " << size;
      ASSERT_LE(recovered.file.stacks.size(), expected + 1) << name << " cut at " << size;
      ASSERT_FALSE(recovered.report.missing.empty()) << name << " cut at " << size;
      for (std::size_t i = 0; i < expected; ++i) {
        ASSERT_EQ(recovered.file.stacks[i].tags, whole.stacks[i].tags);
        ASSERT_EQ(recovered.file.stacks[i].flush_positions, whole.stacks[i].flush_positions);
      }
    }
  }
}

TEST(RecoverTest, AnythingThatIsOverwrittenEndsInOrder) {
  const std::string bytes = golden("zipped");
  for (std::size_t place = 0; place < bytes.size(); place += 17) {
    for (const char value : {'\0', '\x7F', '\xFF'}) {
      std::string damaged = bytes;
      damaged[place] = value;
      ASSERT_LE(recover_bytes(damaged).file.stacks.size(), 2u) << place;
    }
  }
}

TEST(RecoverTest, AnOutputThatExistsIsLeftAlone) {
  const TemporaryFile output("mine");
  AttachedFile input(golden("raw"));
  EXPECT_THROW(recover(input.file(), output.path(), false), VrelError);
  EXPECT_EQ(output.content(), "mine");
}

}  // namespace
}  // namespace Vrel::tool
