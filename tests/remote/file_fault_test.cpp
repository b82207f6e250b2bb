// Files of the facade while the system fails.
#include <gtest/gtest.h>
#include <vrelio/foundation/error.h>
#include <vrelio/remote/file.h>
#include <vrelio/remote/stack_object.h>

#include <boost/interprocess/exceptions.hpp>
#include <cerrno>
#include <optional>
#include <string>

#include "support/system_fault.h"
#include "support/temporary_file.h"

namespace {

using Vrel::testing::ScopedSystemFault;
using Vrel::testing::SystemCall;
using Vrel::testing::TemporaryFile;
using stack_ptr = boost::shared_ptr<Remote::Stack>;

TEST(RemoteFileFaultTest, AFailureWhileClosingIsReportedAndSwallowed) {
  const TemporaryFile target;
  std::optional<Remote::File> file(std::in_place, target.path(), Remote::File::mode_create);
  file->write(stack_ptr(Remote::get_stack(Remote::type_uint8, {3})), false);
  {
    const ScopedSystemFault fault({SystemCall::write, 0, ENOSPC});
    file.reset();
  }
  EXPECT_EQ(vrel_get_last_error(), -3);
  EXPECT_NE(std::string(vrel_get_last_error_string()).find("Failed writing"), std::string::npos);
  Remote::File again(target.path(), Remote::File::mode_read);
  EXPECT_EQ(again.number_of_stacks(), 1U);
}

TEST(RemoteFileFaultTest, AStackThatCannotBeSharedIsNotWritten) {
  const TemporaryFile target;
  Remote::File file(target.path(), Remote::File::mode_create);
  const stack_ptr stack(Remote::get_stack(Remote::type_uint8, {3}));
  {
    const ScopedSystemFault fault({SystemCall::open_shared, 1, ENFILE});
    EXPECT_THROW(file.write(stack, false), boost::interprocess::interprocess_exception);
  }
  EXPECT_EQ(file.number_of_stacks(), 0U);
  file.write(stack, false);
  EXPECT_EQ(file.number_of_stacks(), 1U);
}

}  // namespace
