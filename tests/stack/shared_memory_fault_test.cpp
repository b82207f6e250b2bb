// A block of shared memory when the system does not do what it was asked for.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>
#include <vrelio/stack/shared_memory.h>

#include <boost/interprocess/exceptions.hpp>
#include <cerrno>
#include <cstring>
#include <string>

#include "support/file_size_limit.h"
#include "support/system_fault.h"

namespace {

using boost::interprocess::interprocess_exception;
using Vrel::SharedMemory;
using Vrel::testing::last_name_of_shared_memory;
using Vrel::testing::ScopedFileSizeLimit;
using Vrel::testing::ScopedSystemFault;
using Vrel::testing::SystemCall;

// The system error that making a block raises; 0 if it raises nothing.
int error_of_making(unsigned size) {
  try {
    const SharedMemory block(size);
    return 0;
  } catch (const interprocess_exception& error) {
    return error.get_native_error();
  }
}

bool exists(const std::string& name) {
  const int descriptor = ::shm_open(name.c_str(), O_RDONLY, 0);
  if (descriptor != -1) ::close(descriptor);
  return descriptor != -1;
}

// What a new descriptor would be: the same before and after if none was left open.
int next_descriptor() {
  const int descriptor = ::open("/dev/null", O_RDONLY);
  ::close(descriptor);
  return descriptor;
}

TEST(SharedMemoryFaultTest, MakingThatFailsAtAnyStepTellsTheErrorAndLeavesNothing) {
  const int before = next_descriptor();
  for (const SystemCall call :
       {SystemCall::open_shared, SystemCall::truncate, SystemCall::reserve, SystemCall::map}) {
    for (const int error : {ENOSPC, ENOMEM, EACCES}) {
      const ScopedSystemFault fault({call, 1, error});
      EXPECT_EQ(error_of_making(1000), error);
      EXPECT_TRUE(fault.happened());
      EXPECT_EQ(last_name_of_shared_memory().size(), 37u);
      EXPECT_FALSE(exists(last_name_of_shared_memory()));
      EXPECT_EQ(next_descriptor(), before);
    }
  }
}

TEST(SharedMemoryFaultTest, ALaterPieceThatDoesNotFitLeavesNothing) {
  for (const int piece : {2, 3}) {
    const ScopedSystemFault fault({SystemCall::reserve, piece, ENOSPC});
    EXPECT_EQ(error_of_making(9u << 20), ENOSPC);
    EXPECT_EQ(fault.calls(), piece);
    EXPECT_FALSE(exists(last_name_of_shared_memory()));
  }
}

TEST(SharedMemoryFaultTest, AFullFileSystemIsToldAsSuch) {
  const ScopedSystemFault fault({SystemCall::reserve, 1, ENOSPC});
  try {
    const SharedMemory block(1000);
    FAIL();
  } catch (const interprocess_exception& error) {
    EXPECT_EQ(error.get_error_code(), boost::interprocess::out_of_space_error);
    EXPECT_STREQ(error.what(), std::strerror(ENOSPC));
  }
}

TEST(SharedMemoryFaultTest, ANameThatExistsAlreadyIsToldAsSuch) {
  const ScopedSystemFault fault({SystemCall::open_shared, 1, EEXIST});
  try {
    const SharedMemory block(1000);
    FAIL();
  } catch (const interprocess_exception& error) {
    EXPECT_EQ(error.get_error_code(), boost::interprocess::already_exists_error);
  }
}

TEST(SharedMemoryFaultTest, AnInterruptedReservationGoesOnWithThePiece) {
  constexpr unsigned size = 9u << 20;
  for (const int piece : {1, 2, 3}) {
    const ScopedSystemFault fault({SystemCall::reserve, piece, EINTR});
    SharedMemory block(size);
    EXPECT_EQ(fault.calls(), 4);
    std::memset(block.data(), 1, size);
  }
}

TEST(SharedMemoryFaultTest, AFileSystemThatCannotReserveIsNoObstacle) {
  const ScopedSystemFault fault({SystemCall::reserve, 0, EOPNOTSUPP});
  SharedMemory block(5u << 20);
  EXPECT_EQ(block.size(), 5u << 20);
  EXPECT_TRUE(fault.happened());
}

TEST(SharedMemoryFaultTest, ABlockWithoutBytesReservesAndMapsNothing) {
  for (const SystemCall call : {SystemCall::reserve, SystemCall::map}) {
    const ScopedSystemFault fault({call, 0, EINVAL});
    SharedMemory block(0);
    SharedMemory same{std::string(block.id())};
    EXPECT_EQ(fault.calls(), 0);
  }
}

TEST(SharedMemoryFaultTest, ARealLimitOfFileSizesIsToldAndLeavesNothing) {
  int error = 0;
  {
    const ScopedFileSizeLimit limit(4096);
    EXPECT_EQ(error_of_making(4096), 0);
    error = error_of_making(4097);
  }
  EXPECT_EQ(error, EFBIG);
  EXPECT_FALSE(exists(last_name_of_shared_memory()));
}

TEST(SharedMemoryFaultTest, OpeningThatFailsLeavesTheBlockToItsCreator) {
  const SharedMemory block(1000);
  const int before = next_descriptor();
  for (const SystemCall call : {SystemCall::open_shared, SystemCall::map}) {
    const ScopedSystemFault fault({call, 1, EMFILE});
    EXPECT_THROW(SharedMemory{std::string(block.id())}, interprocess_exception);
    EXPECT_TRUE(fault.happened());
    EXPECT_EQ(next_descriptor(), before);
  }
  EXPECT_EQ(SharedMemory{std::string(block.id())}.size(), 1000u);
}

}  // namespace
