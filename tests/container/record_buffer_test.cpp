// Records on their way into a file.
#include "container/record_buffer_internal.h"

#include <gtest/gtest.h>

#include <array>
#include <cerrno>

#include "support/attached_file.h"
#include "support/expect_error.h"
#include "support/system_fault.h"

namespace {

using Vrel::detail::RecordBuffer;
using Vrel::testing::AttachedFile;
using Vrel::testing::ScopedSystemFault;
using Vrel::testing::SystemCall;

TEST(RecordBufferTest, TakesBytesAtItsEndAlone) {
  RecordBuffer buffer;
  buffer.write("ab", 2);
  EXPECT_EQ(buffer.seek(0), 2u);
  buffer.put(std::array<unsigned char, 2>{'c', 'd'});
  buffer.write_str("e", false);
  EXPECT_EQ(buffer.tell(), 5u);
  char byte = 'x';
  EXPECT_VREL_ERROR(buffer.read(&byte, 1), "Failed reading 1 bytes from file!", -3);
  EXPECT_EQ(byte, 'x');
  AttachedFile target("0123456789");
  target.file().seek(3);
  buffer.flush_to(target.file());
  EXPECT_EQ(target.content(), "012abcde89");
  EXPECT_EQ(target.file().tell(), 8u);
}

TEST(RecordBufferTest, AFileThatTakesNothingStandsWhereItStood) {
  RecordBuffer buffer;
  buffer.write("ab", 2);
  AttachedFile target("0123456789");
  target.file().seek(3);
  {
    const ScopedSystemFault fault({SystemCall::write, 1, ENOSPC, 0});
    EXPECT_VREL_ERROR(buffer.flush_to(target.file()), "Failed writing 2 bytes to file!", -3);
  }
  EXPECT_EQ(target.file().tell(), 3u);
  EXPECT_EQ(target.content(), "0123456789");
}

}  // namespace
