#include "lib/tiff_writer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "support/temporary_file.h"

namespace Vrel::tool {
namespace {

using ::testing::StartsWith;
using Vrel::testing::TemporaryFile;

const std::string classic("II*\0", 4);
const std::string big("II+\0", 4);

TiffForm small_form() {
  TiffForm form;
  form.width = 4;
  form.height = 2;
  form.pages = 2;
  return form;
}

std::string written(const TiffForm& form, const std::string& samples, std::size_t piece) {
  const TemporaryFile temporary;
  TiffWriter writer(temporary.path(), false, form);
  for (std::size_t done = 0; done < samples.size(); done += piece) {
    writer.write(samples.data() + done, std::min(piece, samples.size() - done));
  }
  EXPECT_FALSE(temporary.exists());
  writer.finish();
  return temporary.content();
}

TEST(TiffWriterTest, SamplesStandInTheFileAsTheyAreWithoutCompression) {
  const std::string content = written(small_form(), "abcdefghijklmnop", 16);
  EXPECT_THAT(content, StartsWith(classic));
  EXPECT_NE(content.find("abcdefgh"), std::string::npos);
  EXPECT_NE(content.find("ijklmnop"), std::string::npos);
}

TEST(TiffWriterTest, PiecesOfAnySizeGiveTheSameFile) {
  TiffForm form;
  form.width = 1000;
  form.height = 700;
  form.pages = 3;
  form.compression = 1;
  std::string samples(std::size_t{1000} * 700 * 3, '\0');
  for (std::size_t i = 0; i < samples.size(); ++i) samples[i] = static_cast<char>(i * i >> 7);
  const std::string expected = written(form, samples, samples.size());
  for (const std::size_t piece : {std::size_t{999}, std::size_t{262144}, std::size_t{700001}}) {
    EXPECT_EQ(written(form, samples, piece), expected) << piece;
  }
}

TEST(TiffWriterTest, AFileThatMayBecomeLargeIsABigTiffFile) {
  TiffForm form = small_form();
  form.big_at = 1;
  EXPECT_THAT(written(form, "abcdefghijklmnop", 16), StartsWith(big));
  form = small_form();
  form.description = std::string(5000, 'd');
  form.big_at = 5000;
  EXPECT_THAT(written(form, "abcdefghijklmnop", 16), StartsWith(big));
  form.big_at = 8000;
  EXPECT_THAT(written(form, "abcdefghijklmnop", 16), StartsWith(classic));
}

TEST(TiffWriterTest, TheLimitIsReachedBySizesThatPass32Bits) {
  TiffForm form;
  form.width = 65536;
  form.height = 65536;
  form.data_type = 0x40000080;
  const TemporaryFile temporary;
  { TiffWriter(temporary.path(), false, form); }
  const std::filesystem::directory_iterator entries(temporary.directory());
  EXPECT_EQ(std::distance(entries, {}), 0);
}

TEST(TiffWriterTest, AFileThatIsNotFinishedLeavesNothing) {
  const TemporaryFile temporary;
  { TiffWriter(temporary.path(), false, small_form()).write("abcdefghij"); }
  const std::filesystem::directory_iterator entries(temporary.directory());
  EXPECT_EQ(std::distance(entries, {}), 0);
}

TEST(TiffWriterTest, AnExistingFileStays) {
  const TemporaryFile temporary("old");
  EXPECT_THROW(TiffWriter(temporary.path(), false, small_form()), std::exception);
  EXPECT_EQ(temporary.content(), "old");
}

}  // namespace
}  // namespace Vrel::tool
