#include "lib/output_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cerrno>
#include <filesystem>
#include <fstream>

#include "lib/error_report.h"
#include "support/file_size_limit.h"
#include "support/temporary_file.h"

namespace Vrel::tool {
namespace {

using Vrel::testing::ScopedFileSizeLimit;
using Vrel::testing::TemporaryFile;

std::size_t entries(const TemporaryFile& temporary) {
  const std::filesystem::directory_iterator begin(temporary.directory());
  return static_cast<std::size_t>(std::distance(begin, {}));
}

template <class Statement>
void expect_output_error(Statement statement, const std::string& file, const std::string& message,
                         int system_error) {
  try {
    statement();
    ADD_FAILURE() << "raised nothing";
  } catch (const OutputError& error) {
    EXPECT_EQ(error.get_output(), file);
    EXPECT_EQ(error.get_msg(), message);
    EXPECT_EQ(error.get_oserr_id(), system_error);
  }
}

constexpr const char* exists_already = "Output file exists already, --force replaces it!";
constexpr const char* not_created = "Could not create output file!";

TEST(OutputFileTest, AFileHasItsNameOnlyWhenItIsWhole) {
  const TemporaryFile temporary;
  OutputFile output(temporary.path(), false);
  output.write("first ");
  output.write("second");
  EXPECT_FALSE(temporary.exists());
  output.finish();
  EXPECT_EQ(temporary.content(), "first second");
  EXPECT_EQ(entries(temporary), 1u);
}

TEST(OutputFileTest, AFileThatIsNotFinishedLeavesNothing) {
  const TemporaryFile temporary;
  { OutputFile(temporary.path(), false).write("half"); }
  EXPECT_EQ(entries(temporary), 0u);
}

TEST(OutputFileTest, AnExistingFileIsNotReplaced) {
  const TemporaryFile temporary("old");
  expect_output_error([&] { OutputFile(temporary.path(), false); }, temporary.path(),
                      exists_already, EEXIST);
  EXPECT_EQ(temporary.content(), "old");
  EXPECT_EQ(entries(temporary), 1u);
}

TEST(OutputFileTest, AFileThatCameUpMeanwhileIsNotReplaced) {
  const TemporaryFile temporary;
  {
    OutputFile output(temporary.path(), false);
    output.write("new");
    std::ofstream(temporary.path()) << "other";
    expect_output_error([&] { output.finish(); }, temporary.path(), exists_already, EEXIST);
  }
  EXPECT_EQ(temporary.content(), "other");
  EXPECT_EQ(entries(temporary), 1u);
}

TEST(OutputFileTest, ADanglingLinkCountsAsAFile) {
  const TemporaryFile temporary;
  std::filesystem::create_symlink("nowhere", temporary.path());
  expect_output_error([&] { OutputFile(temporary.path(), false); }, temporary.path(),
                      exists_already, EEXIST);
}

TEST(OutputFileTest, ReplacingKeepsTheOldFileUntilTheNewOneIsWhole) {
  const TemporaryFile temporary("old");
  OutputFile output(temporary.path(), true);
  output.write("new");
  EXPECT_EQ(temporary.content(), "old");
  output.finish();
  EXPECT_EQ(temporary.content(), "new");
  EXPECT_EQ(entries(temporary), 1u);
}

TEST(OutputFileTest, AFolderIsNeverReplaced) {
  const TemporaryFile temporary;
  expect_output_error([&] { OutputFile(temporary.directory(), true); }, temporary.directory(),
                      not_created, EISDIR);
}

TEST(OutputFileTest, AFolderThatDoesNotExistIsTold) {
  const std::string path = TemporaryFile().path();
  expect_output_error([&] { OutputFile(path, false); }, path, not_created, ENOENT);
}

TEST(OutputFileTest, AFileNameWithoutFolderIsPutIntoTheCurrentOne) {
  const TemporaryFile temporary;
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(temporary.directory());
  {
    OutputFile output("file", false);
    output.finish();
  }
  std::filesystem::current_path(before);
  EXPECT_TRUE(temporary.exists());
}

TEST(OutputFileTest, PermissionsAreThoseOfAnOrdinaryFile) {
  const TemporaryFile temporary;
  const mode_t mask = ::umask(027);
  {
    OutputFile output(temporary.path(), false);
    output.finish();
  }
  ::umask(mask);
  struct stat status {};
  ASSERT_EQ(::stat(temporary.path().c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777u, 0640u);
}

TEST(OutputFileTest, TwoOutputsInOneFolderDoNotMeet) {
  const TemporaryFile temporary;
  OutputFile first(temporary.path(), false);
  OutputFile second(temporary.path() + "2", false);
  first.write("1");
  second.write("2");
  first.finish();
  second.finish();
  EXPECT_EQ(temporary.content(), "1");
}

TEST(OutputFileTest, AFileThatCannotGrowIsToldAndLeavesNothing) {
  const TemporaryFile temporary;
  {
    OutputFile output(temporary.path(), false);
    const ScopedFileSizeLimit limit(6);
    output.write("some");
    expect_output_error([&] { output.write("more"); }, temporary.path(), "Could not write!", EFBIG);
  }
  EXPECT_EQ(entries(temporary), 0u);
}

}  // namespace
}  // namespace Vrel::tool
