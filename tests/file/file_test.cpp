#include <vrelio/file/file.h>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <string>

#include "foundation/scoped_codeset.h"
#include "support/expect_error.h"
#include "support/temporary_file.h"

namespace {

using Vrel::testing::ScopedCodeset;
using Vrel::testing::TemporaryFile;

constexpr u64 all_ones = ~u64{0};

// A handle opened by the test itself, closed by it too.
class ForeignHandle {
 public:
  ForeignHandle(const std::string& path, int flags)
      : descriptor_(::open(path.c_str(), flags)), handle_(VFile::to_handle(descriptor_)) {}
  ~ForeignHandle() { ::close(descriptor_); }
  ForeignHandle(const ForeignHandle&) = delete;
  ForeignHandle& operator=(const ForeignHandle&) = delete;

  void*& get() { return handle_; }
  int descriptor() const { return descriptor_; }
  bool is_open() const { return ::fcntl(descriptor_, F_GETFD) != -1; }

 private:
  int descriptor_;
  void* handle_;
};

std::string read_text(VFile& file, unsigned size) {
  std::string text(size, '\0');
  file.read(text.data(), size);
  return text;
}

TEST(VFileTest, AnEmptyObjectHasNoFile) {
  VFile file;
  EXPECT_FALSE(file.is_open());
  EXPECT_EQ(file.get_mode(), VFile::mode_none);
  EXPECT_EQ(file.get_chunk_size(), 4194304u);
  EXPECT_EQ(file.detach(), nullptr);
  file.close();
}

TEST(VFileTest, EveryTransferWithoutAFileRaises) {
  VFile file;
  char byte = 0;
  EXPECT_VREL_ERROR(file.tell(), "File not open!", -1);
  EXPECT_VREL_ERROR(file.seek(0), "File not open!", -1);
  EXPECT_VREL_ERROR(file.read(&byte, 1), "File not open!", -1);
  EXPECT_VREL_ERROR(file.write(&byte, 1), "File not open!", -1);
}

TEST(VFileTest, WhatIsWrittenIsRead) {
  TemporaryFile place;
  VFile file(place.name(), VFile::mode_create);
  file.write("hello", 5);
  EXPECT_EQ(file.tell(), 5u);
  EXPECT_EQ(file.seek(1), 1u);
  EXPECT_EQ(read_text(file, 3), "ell");
  file.close();
  EXPECT_EQ(place.content(), "hello");
}

TEST(VFileTest, TheModesAreReadCreateAndModify) {
  TemporaryFile place("old content");
  VFile file(place.name(), VFile::mode_modify);
  EXPECT_EQ(file.get_mode(), VFile::mode_modify);
  EXPECT_EQ(read_text(file, 3), "old");
  file.write("!", 1);
  file.close();
  EXPECT_EQ(place.content(), "old!content");
  file.open(place.name(), VFile::mode_read);
  EXPECT_EQ(file.get_mode(), VFile::mode_read);
  EXPECT_VREL_ERROR(file.write("x", 1), "Failed writing 1 bytes to file!", -3);
}

TEST(VFileTest, CreatingReplacesTheOldContentEvenIfNothingIsWritten) {
  TemporaryFile place("old content");
  VFile(place.name(), VFile::mode_create).close();
  EXPECT_EQ(place.content(), "");
}

TEST(VFileTest, ReadingAndModifyingNeedAFileThatExists) {
  TemporaryFile place;
  VFile file;
  EXPECT_VREL_ERROR(file.open(place.name(), VFile::mode_read), "Could not open file!", -1);
  EXPECT_VREL_ERROR(file.open(place.name(), VFile::mode_modify), "Could not open file!", -1);
  EXPECT_VREL_ERROR(VFile(place.name(), VFile::mode_read), "Could not open file!", -1);
  EXPECT_FALSE(place.exists());
}

TEST(VFileTest, AFailedOpeningCarriesNoSystemErrorAndLeavesTheObjectEmpty) {
  TemporaryFile place;
  VFile file;
  try {
    file.open(place.name(), VFile::mode_read);
    FAIL();
  } catch (const VrelError& error) {
    EXPECT_EQ(error.get_oserr_id(), 0);
    EXPECT_EQ(error.get_file(), nullptr);
    EXPECT_EQ(error.get_func(), nullptr);
  }
  EXPECT_FALSE(file.is_open());
  file.open(place.name(), VFile::mode_create);
  EXPECT_TRUE(file.is_open());
}

TEST(VFileTest, AnotherModeValueIsRefused) {
  TemporaryFile place;
  VFile file;
  for (const int value : {-1, 3, 99}) {
    const auto mode = static_cast<VFile::mode>(value);
    EXPECT_VREL_ERROR(file.open(place.name(), mode), "Invalid file mode when opening file.", -1);
    void* handle = nullptr;
    EXPECT_VREL_ERROR(file.attach(handle, mode), "Invalid file mode when opening file.", -1);
  }
  EXPECT_FALSE(place.exists());
}

TEST(VFileTest, ASecondOpeningOrAttachingOfOneObjectIsRefused) {
  TemporaryFile place("abc");
  VFile file(place.name(), VFile::mode_read);
  EXPECT_VREL_ERROR(file.open(place.name(), VFile::mode_read), "File already open or attached!",
                    -1);
  ForeignHandle handle(place.path(), O_RDONLY);
  EXPECT_VREL_ERROR(file.attach(handle.get(), VFile::mode_read), "File already open or attached!",
                    -1);
  EXPECT_EQ(read_text(file, 3), "abc");
}

TEST(VFileTest, AFileThatIsHeldCountsBeforeAModeThatDoesNotExist) {
  TemporaryFile place("abc");
  VFile file(place.name(), VFile::mode_read);
  EXPECT_VREL_ERROR(file.open(place.name(), static_cast<VFile::mode>(3)),
                    "File already open or attached!", -1);
}

TEST(VFileTest, AnObjectThatFailsToOpenAgainIsUsableLikeANewOne) {
  TemporaryFile place("abc");
  TemporaryFile absent;
  VFile file(place.name(), VFile::mode_read);
  file.close();
  EXPECT_VREL_ERROR(file.open(absent.name(), VFile::mode_read), "Could not open file!", -1);
  EXPECT_FALSE(file.is_open());
  EXPECT_EQ(file.get_mode(), VFile::mode_none);
  EXPECT_EQ(file.detach(), nullptr);
  file.close();
  ForeignHandle handle(place.path(), O_RDONLY);
  file.attach(handle.get(), VFile::mode_read);
  EXPECT_EQ(read_text(file, 3), "abc");
}

TEST(VFileTest, ANameThatTheSystemCannotExpressDoesNotOpen) {
  VFile file;
  const std::wstring lone_surrogate = {wchar_t{0xD800}};
  EXPECT_VREL_ERROR(file.open(lone_surrogate, VFile::mode_create), "Could not open file!", -1);
  EXPECT_VREL_ERROR(VFile::remove(lone_surrogate), "Could not remove file.", -1);
}

TEST(VFileTest, ANameMayHoldAnyCharacterOfUnicode) {
  TemporaryFile place;
  const std::wstring name = std::wstring(place.directory().begin(), place.directory().end()) +
                            L"/10 \u00b5m \u65e5 \U0001f52c";
  VFile(name, VFile::mode_create).close();
  EXPECT_TRUE(std::filesystem::exists(place.directory() + "/10 \u00b5m \u65e5 \U0001f52c"));
}

TEST(VFileTest, ANameIsInTheEncodingOfTheLocale) {
  const TemporaryFile place;
  const ScopedCodeset local("ISO-8859-1");
  const std::wstring name = place.name() + L" 10 \u00b5m";
  VFile(name, VFile::mode_create).close();
  EXPECT_TRUE(std::filesystem::exists(place.path() + " 10 \xb5m"));
  VFile::remove(name);
  EXPECT_FALSE(std::filesystem::exists(place.path() + " 10 \xb5m"));
}

TEST(VFileTest, ANameThatTheLocaleLacksDoesNotOpen) {
  const TemporaryFile place;
  const ScopedCodeset local("ISO-8859-1");
  VFile file;
  EXPECT_VREL_ERROR(file.open(place.name() + L"\u65e5", VFile::mode_create), "Could not open file!",
                    -1);
  EXPECT_TRUE(std::filesystem::is_empty(place.directory()));
}

TEST(VFileTest, OpeningIsExclusiveInEveryMode) {
  TemporaryFile place("precious");
  for (const VFile::mode first : {VFile::mode_read, VFile::mode_modify}) {
    const VFile holder(place.name(), first);
    for (const VFile::mode second : {VFile::mode_read, VFile::mode_create, VFile::mode_modify}) {
      EXPECT_VREL_ERROR(VFile(place.name(), second), "Could not open file!", -1);
    }
  }
  VFile(place.name(), VFile::mode_read).close();
}

TEST(VFileTest, ARefusedCreatingHasNotEmptiedTheFileInUse) {
  TemporaryFile place("precious");
  const VFile holder(place.name(), VFile::mode_read);
  EXPECT_VREL_ERROR(VFile(place.name(), VFile::mode_create), "Could not open file!", -1);
  EXPECT_EQ(place.content(), "precious");
}

TEST(VFileTest, AnotherProcessIsKeptOutToo) {
  TemporaryFile place("precious");
  const VFile holder(place.name(), VFile::mode_read);
  const pid_t child = ::fork();
  if (child == 0) {
    try {
      VFile(place.name(), VFile::mode_create);
      ::_exit(1);
    } catch (const VrelError&) {
      ::_exit(0);
    }
  }
  int status = -1;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);
}

TEST(VFileTest, ADescriptorOfOurOwnReadsBesideTheHolder) {
  TemporaryFile place("precious");
  const VFile holder(place.name(), VFile::mode_modify);
  ForeignHandle handle(place.path(), O_RDONLY);
  VFile file;
  file.attach(handle.get(), VFile::mode_read);
  EXPECT_EQ(read_text(file, 8), "precious");
}

TEST(VFileTest, AFileDoesNotReachAProgramThatIsStarted) {
  TemporaryFile place;
  VFile file(place.name(), VFile::mode_create);
  const int descriptor = VFile::to_descriptor(VFile(file).detach());
  EXPECT_EQ(::fcntl(descriptor, F_GETFD) & FD_CLOEXEC, FD_CLOEXEC);
}

TEST(VFileTest, TheDestructorClosesWhatWasOpened) {
  TemporaryFile place;
  { const VFile file(place.name(), VFile::mode_create); }
  const VFile again(place.name(), VFile::mode_modify);
  EXPECT_TRUE(again.is_open());
}

TEST(VFileTest, AnAttachedHandleStaysOpenBehindTheObject) {
  TemporaryFile place("abc");
  ForeignHandle handle(place.path(), O_RDONLY);
  void* const before = handle.get();
  {
    VFile file;
    file.attach(handle.get(), VFile::mode_read);
    EXPECT_EQ(handle.get(), before);
    EXPECT_EQ(file.get_mode(), VFile::mode_read);
  }
  EXPECT_TRUE(handle.is_open());
}

TEST(VFileTest, ClosingAnAttachedFileIsRefusedAndTheFileStays) {
  TemporaryFile place("abc");
  ForeignHandle handle(place.path(), O_RDONLY);
  VFile file;
  file.attach(handle.get(), VFile::mode_read);
  EXPECT_VREL_ERROR(file.close(), "File not opened with open(), cannot close.", -1);
  EXPECT_TRUE(file.is_open());
  EXPECT_EQ(read_text(file, 3), "abc");
  EXPECT_EQ(file.detach(), handle.get());
}

TEST(VFileTest, ADetachedFileIsAttachedToAnotherObject) {
  TemporaryFile place("abcdef");
  VFile first(place.name(), VFile::mode_read);
  EXPECT_EQ(read_text(first, 2), "ab");
  void* handle = first.detach();
  {
    VFile second;
    second.attach(handle, VFile::mode_read);
    EXPECT_EQ(read_text(second, 2), "cd");
  }
  EXPECT_EQ(::close(VFile::to_descriptor(handle)), 0);
}

TEST(VFileTest, AnAttachedNullIsNoFileToTheSystemOnly) {
  VFile file;
  void* handle = nullptr;
  file.attach(handle, VFile::mode_modify);
  EXPECT_TRUE(file.is_open());
  EXPECT_EQ(file.tell(), all_ones);
  EXPECT_EQ(file.seek(0), all_ones);
  char byte = 0;
  EXPECT_VREL_ERROR(file.read(&byte, 1), "Failed reading 1 bytes from file!", -3);
  EXPECT_VREL_ERROR(file.write(&byte, 1), "Failed writing 1 bytes to file!", -3);
  EXPECT_EQ(file.detach(), nullptr);
}

TEST(VFileTest, ADetachedFileIsTheCallersAndTheObjectIsEmpty) {
  TemporaryFile place("abc");
  VFile file(place.name(), VFile::mode_read);
  void* const handle = file.detach();
  EXPECT_FALSE(file.is_open());
  EXPECT_EQ(file.get_mode(), VFile::mode_none);
  file.close();
  EXPECT_NE(::fcntl(VFile::to_descriptor(handle), F_GETFD), -1);
  EXPECT_EQ(::close(VFile::to_descriptor(handle)), 0);
}

TEST(VFileTest, AnObjectMayBeOpenedAgain) {
  TemporaryFile place("abc");
  VFile file(place.name(), VFile::mode_read);
  file.close();
  EXPECT_FALSE(file.is_open());
  file.open(place.name(), VFile::mode_read);
  EXPECT_EQ(read_text(file, 3), "abc");
}

TEST(VFileTest, CopiesShareTheHandleAndItsPosition) {
  TemporaryFile place("abcdef");
  VFile file(place.name(), VFile::mode_read);
  file.set_chunk_size(123);
  VFile copy(file);
  EXPECT_EQ(copy.get_mode(), VFile::mode_read);
  EXPECT_EQ(copy.get_chunk_size(), 123u);
  EXPECT_EQ(read_text(file, 2), "ab");
  EXPECT_EQ(read_text(copy, 2), "cd");
  copy.detach();
}

TEST(VFileTest, AnAssignedObjectSharesTheHandleToo) {
  TemporaryFile place("abcdef");
  VFile file(place.name(), VFile::mode_modify);
  file.set_chunk_size(123);
  VFile assigned;
  assigned = file;
  EXPECT_EQ(assigned.get_mode(), VFile::mode_modify);
  EXPECT_EQ(assigned.get_chunk_size(), 123u);
  EXPECT_EQ(read_text(file, 2), "ab");
  EXPECT_EQ(read_text(assigned, 2), "cd");
  file.detach();
  assigned.close();
  EXPECT_TRUE(VFile(place.name(), VFile::mode_read).is_open());
}

TEST(VFileTest, AHandleIsTheDescriptorPlusOneAndNullIsNone) {
  EXPECT_EQ(VFile::to_handle(-1), nullptr);
  EXPECT_NE(VFile::to_handle(0), nullptr);
  for (const int descriptor : {-1, 0, 1, 1023})
    EXPECT_EQ(VFile::to_descriptor(VFile::to_handle(descriptor)), descriptor);
}

TEST(VFileTest, ASeekToAllOnesGivesTheSizeOfTheFile) {
  TemporaryFile place("12345");
  VFile file(place.name(), VFile::mode_read);
  EXPECT_EQ(file.seek(all_ones), 5u);
  EXPECT_EQ(file.tell(), 5u);
}

TEST(VFileTest, ASeekBeyondTheEndSucceedsAndTheReadFails) {
  TemporaryFile place("12345");
  VFile file(place.name(), VFile::mode_read);
  EXPECT_EQ(file.seek(6000000000u), 6000000000u);
  char bytes[7];
  EXPECT_VREL_ERROR(file.read(bytes, 7), "Failed reading 7 bytes from file!", -3);
}

TEST(VFileTest, ASeekThatTheSystemRefusesGivesAllOnes) {
  TemporaryFile place("12345");
  VFile file(place.name(), VFile::mode_read);
  EXPECT_EQ(file.seek(all_ones - 1), all_ones);
  EXPECT_EQ(file.seek(u64{1} << 63), all_ones);
  EXPECT_EQ(file.tell(), 0u);
}

TEST(VFileTest, AShortReadNamesItsSizeAndHasNoSystemError) {
  TemporaryFile place("12345");
  VFile file(place.name(), VFile::mode_read);
  char bytes[10];
  errno = EIO;
  try {
    file.read(bytes, 10);
    FAIL();
  } catch (const VrelError& error) {
    EXPECT_STREQ(error.get_msg(), "Failed reading 10 bytes from file!");
    EXPECT_EQ(error.get_id(), -3);
    EXPECT_EQ(error.get_oserr_id(), 0);
  }
}

TEST(VFileTest, ReadingNothingAtTheEndSucceeds) {
  TemporaryFile place("12345");
  VFile file(place.name(), VFile::mode_read);
  file.seek(all_ones);
  file.read(nullptr, 0);
  file.write(nullptr, 0);
}

TEST(VFileTest, AWriteThatTheSystemRefusesCarriesItsError) {
  VFile file;
  const int descriptor = ::open("/dev/full", O_WRONLY);
  ASSERT_NE(descriptor, -1);
  void* handle = VFile::to_handle(descriptor);
  file.attach(handle, VFile::mode_modify);
  try {
    file.write("abc", 3);
    FAIL();
  } catch (const VrelError& error) {
    EXPECT_STREQ(error.get_msg(), "Failed writing 3 bytes to file!");
    EXPECT_EQ(error.get_id(), -3);
    EXPECT_EQ(error.get_oserr_id(), ENOSPC);
  }
  ::close(descriptor);
}

TEST(VFileTest, ADirectoryReadsAsASystemError) {
  const int descriptor = ::open("/tmp", O_RDONLY);
  void* handle = VFile::to_handle(descriptor);
  VFile file;
  file.attach(handle, VFile::mode_read);
  char byte;
  try {
    file.read(&byte, 1);
    FAIL();
  } catch (const VrelError& error) {
    EXPECT_EQ(error.get_oserr_id(), EISDIR);
  }
  ::close(descriptor);
}

TEST(VFileTest, RemovingDeletesTheFileOrSaysWhyNot) {
  TemporaryFile place("abc");
  VFile::remove(place.name());
  EXPECT_FALSE(place.exists());
  try {
    VFile::remove(place.name());
    FAIL();
  } catch (const VrelError& error) {
    EXPECT_STREQ(error.get_msg(), "Could not remove file.");
    EXPECT_EQ(error.get_id(), -1);
    EXPECT_EQ(error.get_oserr_id(), ENOENT);
  }
}

TEST(VFileTest, AChunkSizeOfZeroChangesNothingHere) {
  TemporaryFile place("abc");
  VFile file(place.name(), VFile::mode_read);
  file.set_chunk_size(0);
  EXPECT_EQ(file.get_chunk_size(), 0u);
  EXPECT_EQ(read_text(file, 3), "abc");
}

TEST(VFileTest, PositionsHave64Bits) {
  TemporaryFile place;
  VFile file(place.name(), VFile::mode_create);
  file.seek(5000000000u);
  file.write("end", 3);
  EXPECT_EQ(file.tell(), 5000000003u);
  file.seek(5000000001u);
  EXPECT_EQ(read_text(file, 2), "nd");
  EXPECT_EQ(file.seek(all_ones), 5000000003u);
}

}  // namespace
