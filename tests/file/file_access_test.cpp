#include <vrelio/file/file_access.h>

#include <gtest/gtest.h>
#include <vrelio/file/zipped_segment.h>

#include <string>

#include "support/expect_error.h"
#include "support/memory_file.h"
#include "support/slot_of.h"

namespace {

using Vrel::testing::MemoryFile;
using Vrel::testing::slot_of;

constexpr unsigned length_in_stream = 0xFFFFFFFFu;

// Counts the calls that reach the stream.
class CountingFile : public MemoryFile {
 public:
  using MemoryFile::MemoryFile;
  void write(const void* buffer, unsigned size) override {
    ++writes;
    MemoryFile::write(buffer, size);
  }
  int writes = 0;
};

template <class Base>
struct WithOneMore : Base {
  virtual void next() {}
};

TEST(VFileAccessTest, TheVirtualFunctionsHaveTheirOrder) {
  EXPECT_EQ(slot_of(&VFileAccess::tell), 0u);
  EXPECT_EQ(slot_of(&VFileAccess::seek), 1u);
  EXPECT_EQ(slot_of(&VFileAccess::read), 2u);
  EXPECT_EQ(slot_of(&VFileAccess::write), 3u);
}

TEST(VFileAccessTest, AFileAndASegmentAddTheirDestructorsAlone) {
  EXPECT_EQ(slot_of(&VFile::write), 3u);
  EXPECT_EQ(slot_of(&WithOneMore<VFile>::next), 6u);
  EXPECT_EQ(slot_of(&VZippedSegment::write), 3u);
  EXPECT_EQ(slot_of(&WithOneMore<VZippedSegment>::next), 6u);
}

TEST(VFileAccessTest, ABareTextIsItsBytes) {
  MemoryFile file;
  file.write_str(std::string("a\0b", 3), false);
  EXPECT_EQ(file.bytes(), std::string("a\0b", 3));
}

TEST(VFileAccessTest, APrefixedTextHasItsLengthInLittleEndianBeforeIt) {
  MemoryFile file;
  file.write_str(std::string(258, 'x'), true);
  EXPECT_EQ(file.bytes(), std::string("\x02\x01\0\0", 4) + std::string(258, 'x'));
}

TEST(VFileAccessTest, AnEmptyPrefixedTextIsFourZeroBytes) {
  CountingFile file;
  file.write_str("", true);
  EXPECT_EQ(file.bytes(), std::string(4, '\0'));
}

TEST(VFileAccessTest, AnEmptyTextStillCallsWriteOnce) {
  CountingFile file;
  file.write_str("", false);
  EXPECT_EQ(file.writes, 1);
  EXPECT_EQ(file.bytes(), "");
}

TEST(VFileAccessTest, ATextOfAGivenLengthIsRead) {
  MemoryFile file("abcdef");
  std::string text = "before";
  file.read_str(text, 4);
  EXPECT_EQ(text, "abcd");
  EXPECT_EQ(file.tell(), 4u);
}

TEST(VFileAccessTest, AGivenLengthOfZeroEmptiesTheTextAndTouchesNothing) {
  MemoryFile file;
  std::string text = "before";
  file.read_str(text, 0);
  EXPECT_EQ(text, "");
  EXPECT_EQ(file.reads(), 0u);
}

TEST(VFileAccessTest, ALengthOfAllOnesStandsInTheStream) {
  MemoryFile file(std::string("\x03\0\0\0abcdef", 10));
  std::string text;
  file.read_str(text, length_in_stream);
  EXPECT_EQ(text, "abc");
  EXPECT_EQ(file.tell(), 7u);
}

TEST(VFileAccessTest, ALengthInTheStreamMayItselfBeAllOnes) {
  MemoryFile file(std::string("\xff\xff\xff\xff", 4) + "abc");
  std::string text;
  EXPECT_VREL_ERROR(file.read_str(text, length_in_stream), "Failed reading -1 bytes from file!",
                    -3);
}

TEST(VFileAccessTest, AStreamThatIsTooShortNamesTheWholeLength) {
  MemoryFile file("abc");
  std::string text;
  EXPECT_VREL_ERROR(file.read_str(text, 4), "Failed reading 4 bytes from file!", -3);
  EXPECT_VREL_ERROR(file.read_str(text, 2000000000), "Failed reading 2000000000 bytes from file!",
                    -3);
  EXPECT_LT(text.capacity(), 100000000u);
}

TEST(VFileAccessTest, ALongTextIsReadWhole) {
  const std::string bytes(20000000, 'x');
  MemoryFile file(bytes);
  std::string text;
  file.read_str(text, 20000000);
  EXPECT_TRUE(text == bytes);
}

}  // namespace
