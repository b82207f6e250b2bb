// What a file does when the system does not do what it was asked for.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>
#include <vrelio/file/file.h>

#include <cerrno>
#include <string>

#include "support/expect_error.h"
#include "support/system_fault.h"
#include "support/temporary_file.h"

namespace {

using Vrel::testing::ScopedSystemFault;
using Vrel::testing::SystemCall;
using Vrel::testing::TemporaryFile;

TEST(VFileFaultTest, AnInterruptedReadGoesOn) {
  TemporaryFile place("hello");
  VFile file(place.name(), VFile::mode_read);
  const ScopedSystemFault fault({SystemCall::read, 1, EINTR});
  std::string text(5, '\0');
  file.read(text.data(), 5);
  EXPECT_EQ(text, "hello");
  EXPECT_EQ(fault.calls(), 2);
}

TEST(VFileFaultTest, AShortReadGoesOn) {
  TemporaryFile place("hello");
  VFile file(place.name(), VFile::mode_read);
  const ScopedSystemFault fault({SystemCall::read, 1, 0, 2});
  std::string text(5, '\0');
  file.read(text.data(), 5);
  EXPECT_EQ(text, "hello");
  EXPECT_EQ(fault.calls(), 2);
}

TEST(VFileFaultTest, AnInterruptedOrShortWriteGoesOn) {
  TemporaryFile place;
  for (const int error : {EINTR, 0}) {
    VFile file(place.name(), VFile::mode_create);
    const ScopedSystemFault fault({SystemCall::write, 1, error, 2});
    file.write("hello", 5);
    EXPECT_EQ(fault.calls(), 2);
    file.close();
    EXPECT_EQ(place.content(), "hello");
  }
}

TEST(VFileFaultTest, ATransferIsOneSystemCall) {
  TemporaryFile place;
  VFile file(place.name(), VFile::mode_create);
  const std::string bytes(9000000, 'x');
  {
    const ScopedSystemFault never({SystemCall::write, -1, EIO});
    file.write(bytes.data(), 9000000);
    EXPECT_EQ(never.calls(), 1);
  }
  file.seek(0);
  const ScopedSystemFault never({SystemCall::read, -1, EIO});
  std::string read(bytes.size(), '\0');
  file.read(read.data(), 9000000);
  EXPECT_EQ(never.calls(), 1);
  EXPECT_TRUE(read == bytes);
}

// The kernel moves at most 2,147,479,552 bytes in one call. Its null device takes them without
// looking at the memory.
TEST(VFileFaultTest, ARequestAboveTheKernelsLimitIsMovedWhole) {
  constexpr unsigned size = 0x7FFFF000u + 5;
  void* const nothing =
      ::mmap(nullptr, size, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  ASSERT_NE(nothing, MAP_FAILED);
  const int descriptor = ::open("/dev/null", O_WRONLY);
  void* handle = VFile::to_handle(descriptor);
  VFile file;
  file.attach(handle, VFile::mode_modify);
  {
    const ScopedSystemFault never({SystemCall::write, -1, EIO});
    file.write(nothing, size);
    EXPECT_EQ(never.calls(), 2);
  }
  ::close(descriptor);
  ::munmap(nothing, size);
}

TEST(VFileFaultTest, ASystemErrorComesWithTheMessage) {
  TemporaryFile place("hello");
  VFile file(place.name(), VFile::mode_modify);
  char bytes[5] = {};
  try {
    const ScopedSystemFault fault({SystemCall::read, 1, EIO});
    file.read(bytes, 5);
    FAIL();
  } catch (const VrelError& error) {
    EXPECT_STREQ(error.get_msg(), "Failed reading 5 bytes from file!");
    EXPECT_EQ(error.get_id(), -3);
    EXPECT_EQ(error.get_oserr_id(), EIO);
  }
  try {
    const ScopedSystemFault fault({SystemCall::write, 1, ENOSPC});
    file.write(bytes, 5);
    FAIL();
  } catch (const VrelError& error) {
    EXPECT_STREQ(error.get_msg(), "Failed writing 5 bytes to file!");
    EXPECT_EQ(error.get_oserr_id(), ENOSPC);
  }
}

TEST(VFileFaultTest, ATransferThatMovesNothingFailsWithoutASystemError) {
  TemporaryFile place("hello");
  VFile file(place.name(), VFile::mode_modify);
  char bytes[5] = {};
  for (const SystemCall call : {SystemCall::read, SystemCall::write}) {
    const ScopedSystemFault fault({call, 0, 0, 0});
    errno = EIO;
    try {
      call == SystemCall::read ? file.read(bytes, 5) : file.write(bytes, 5);
      ADD_FAILURE();
    } catch (const VrelError& error) {
      EXPECT_EQ(error.get_id(), -3);
      EXPECT_EQ(error.get_oserr_id(), 0);
    }
    EXPECT_EQ(fault.calls(), 1);
  }
  EXPECT_EQ(place.content(), "hello");
}

TEST(VFileFaultTest, ATransferOfNothingIsNoSystemCall) {
  TemporaryFile place("hello");
  VFile file(place.name(), VFile::mode_modify);
  for (const SystemCall call : {SystemCall::read, SystemCall::write}) {
    const ScopedSystemFault fault({call, 0, EIO});
    file.read(nullptr, 0);
    file.write(nullptr, 0);
    EXPECT_EQ(fault.calls(), 0);
  }
}

// A device or a pipe answers so.
TEST(VFileFaultTest, AFileWithoutALengthIsCreatedAsItIs) {
  TemporaryFile place("hello");
  const ScopedSystemFault fault({SystemCall::truncate, 1, EINVAL});
  VFile file(place.name(), VFile::mode_create);
  EXPECT_TRUE(fault.happened());
  EXPECT_EQ(file.get_mode(), VFile::mode_create);
}

TEST(VFileFaultTest, ASeekThatFailsGivesAllOnes) {
  TemporaryFile place("hello");
  VFile file(place.name(), VFile::mode_read);
  const ScopedSystemFault fault({SystemCall::seek, 0, EIO});
  EXPECT_EQ(file.seek(2), ~u64{0});
  EXPECT_EQ(file.tell(), ~u64{0});
}

TEST(VFileFaultTest, AFileSystemWithoutLocksIsNoObstacle) {
  TemporaryFile place("hello");
  for (const int error : {ENOLCK, EOPNOTSUPP}) {
    const ScopedSystemFault fault({SystemCall::lock, 1, error});
    EXPECT_TRUE(VFile(place.name(), VFile::mode_read).is_open());
  }
}

TEST(VFileFaultTest, AnInterruptedOpeningGoesOn) {
  TemporaryFile place("hello");
  for (const SystemCall call : {SystemCall::open, SystemCall::lock, SystemCall::truncate}) {
    const ScopedSystemFault fault({call, 1, EINTR});
    EXPECT_TRUE(VFile(place.name(), VFile::mode_create).is_open());
    EXPECT_TRUE(fault.happened());
  }
}

TEST(VFileFaultTest, AnOpeningThatFailsAtAnyStepLeavesTheFileFree) {
  TemporaryFile place("hello");
  for (const SystemCall call : {SystemCall::open, SystemCall::lock, SystemCall::truncate}) {
    {
      const ScopedSystemFault fault({call, 1, EIO});
      EXPECT_VREL_ERROR(VFile(place.name(), VFile::mode_create), "Could not open file!", -1);
    }
    EXPECT_EQ(place.content(), "hello");
    EXPECT_TRUE(VFile(place.name(), VFile::mode_modify).is_open());
  }
}

}  // namespace
