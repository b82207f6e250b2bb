// Sessions that run out of memory anywhere: what was committed stays readable.
#include <gtest/gtest.h>

#include <cerrno>
#include <new>
#include <utility>

#include "container/writing_session.h"

#ifdef __SANITIZE_ADDRESS__
// The XML library loses its nodes when it runs out of memory itself; vrelio_tests holds that we lose none.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() { return "leak:libtinyxml"; }
#endif

namespace {

using namespace Vrel::testing;

// Let every allocation in turn fail, until a session has all that it asks for.
template <class Work>
int fail_each_allocation(Work work) {
  bool happened = true;
  int occurrence = 0;
  while (happened) {
    SCOPED_TRACE("allocation " + std::to_string(++occurrence));
    happened = work(Fault{SystemCall::allocate_object, occurrence, ENOMEM, 0});
    if (::testing::Test::HasFailure()) break;
  }
  return occurrence;
}

// A session that runs out of memory, and whether that happened.
std::pair<Session, bool> run_without_memory(const TemporaryFile& target, VFile::mode mode,
                                            const Fault& fault) {
  const ScopedSystemFault scope(fault);
  const Session session = run_session(target, mode);
  return {session, scope.happened()};
}

TEST(BFFileMemoryTest, WhateverAllocationOfAWriterFailsWhatWasCommittedIsReadable) {
  const int allocations = fail_each_allocation([](const Fault& fault) {
    const TemporaryFile target;
    const auto [session, happened] = run_without_memory(target, VFile::mode_create, fault);
    if (target.exists()) expect_readable(target, session.committed);
    EXPECT_EQ(session.failed, happened);
    return happened;
  });
  EXPECT_GT(allocations, 100);
}

TEST(BFFileMemoryTest, WhateverAllocationOfAModificationFailsTheOldStacksAreReadable) {
  const TemporaryFile two;
  {
    VBFFile file(two.name(), VFile::mode_create);
    write_stack(file, 0);
    write_stack(file, 1);
  }
  const std::string content = two.content();
  fail_each_allocation([&](const Fault& fault) {
    const TemporaryFile target(content);
    const auto [session, happened] = run_without_memory(target, VFile::mode_modify, fault);
    expect_readable(target, std::max<std::size_t>(2, session.committed));
    EXPECT_EQ(session.failed, happened);
    return happened;
  });
}

// A file with a stack that only closing completes, so that the destructor has all to do.
VBFFile make_unclosed(const TemporaryFile& target) {
  VBFFile file(target.name(), VFile::mode_create);
  write_stack(file, 0);
  const stack_ptr stack = file->add_stack(true);
  stack->create({length}, uint16);
  return file;
}

TEST(BFFileMemoryTest, ADestructorWithoutMemoryTellsItAndLetsNothingOut) {
  fail_each_allocation([](const Fault& fault) {
    const TemporaryFile target;
    VBFFile file = make_unclosed(target);
    VrelError()("something else")(-7).process();
    bool happened = false;
    {
      const ScopedSystemFault scope(fault);
      file.reset();
      happened = scope.happened();
    }
    EXPECT_EQ(vrel_get_last_error() == -7, !happened) << vrel_get_last_error_string();
    VBFFile written(target.name(), VFile::mode_read);
    EXPECT_GE(written->get_number_of_stacks(), 1U);
    return happened;
  });
}

TEST(BFFileMemoryTest, ADestructorThatCannotEvenTellLetsNothingOut) {
  const TemporaryFile target;
  VBFFile file = make_unclosed(target);
  {
    const ScopedSystemFault scope({SystemCall::allocate_object, 0, ENOMEM, 0});
    file.reset();
    EXPECT_TRUE(scope.happened());
  }
  expect_readable(target, 1);
}

// A caller who goes on after the memory is back.
TEST(BFFileMemoryTest, AFileThatCouldNotBeReadForLackOfMemoryCanBeReadAgain) {
  const TemporaryFile target;
  run_session(target, VFile::mode_create);
  fail_each_allocation([&](const Fault& fault) {
    bool failed = false;
    bool happened = false;
    {
      const ScopedSystemFault scope(fault);
      try {
        VBFFile file(target.name(), VFile::mode_read);
        for (unsigned i = 0; i < stack_count; ++i) file->read_stack(i, 0);
      } catch (const std::bad_alloc&) {
        failed = true;
      } catch (const VrelError&) {
        failed = true;
      }
      happened = scope.happened();
    }
    EXPECT_EQ(failed, happened);
    VBFFile file(target.name(), VFile::mode_read);
    EXPECT_EQ(read_stacks(file), stack_count);
    return happened;
  });
}

}  // namespace
