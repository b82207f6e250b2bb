#include "lib/shared_blocks.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>
#include <vrelio/stack/shared_memory.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <optional>

#include "support/expect_error.h"

namespace Vrel::tool {
namespace {

std::optional<SharedBlock> listed(const std::string& id) {
  const std::vector<SharedBlock> blocks = list_shared_blocks();
  const auto found = std::find_if(blocks.begin(), blocks.end(),
                                  [&](const SharedBlock& block) { return block.id == id; });
  if (found == blocks.end()) return std::nullopt;
  return *found;
}

// A block of 5 bytes whose process is gone, or an object of the system that is no block.
class LeftObject {
 public:
  explicit LeftObject(std::string name = unused_id()) : name_(std::move(name)) {
    const int descriptor = ::shm_open(path().c_str(), O_RDWR | O_CREAT | O_EXCL, 0600);
    EXPECT_EQ(::ftruncate(descriptor, 5), 0);
    ::close(descriptor);
  }
  ~LeftObject() { ::shm_unlink(path().c_str()); }
  LeftObject(const LeftObject&) = delete;
  LeftObject& operator=(const LeftObject&) = delete;

  const std::string& name() const { return name_; }
  bool exists() const {
    const int descriptor = ::shm_open(path().c_str(), O_RDONLY, 0);
    if (descriptor != -1) ::close(descriptor);
    return descriptor != -1;
  }

  static std::string unused_id() { return SharedMemory(0).id(); }

 private:
  std::string path() const { return '/' + name_; }

  std::string name_;
};

int system_error_of_removing(const std::string& id) {
  try {
    remove_shared_block(id, false);
    return 0;
  } catch (const VrelError& error) {
    return error.get_oserr_id();
  }
}

TEST(SharedBlocksTest, ABlockIsListedWithItsProcess) {
  const SharedMemory memory(100000);
  const std::optional<SharedBlock> block = listed(memory.id());
  ASSERT_TRUE(block);
  EXPECT_EQ(block->bytes, 100000u);
  EXPECT_EQ(block->user, ::geteuid());
  EXPECT_TRUE(block->is_own);
  EXPECT_LT(block->age, 3600u);
  EXPECT_EQ(block->processes, std::vector<int>{::getpid()});
}

TEST(SharedBlocksTest, AProcessThatHoldsABlockWithoutBytesIsSeen) {
  const SharedMemory memory(0);
  const std::optional<SharedBlock> block = listed(memory.id());
  ASSERT_TRUE(block);
  EXPECT_EQ(block->processes, std::vector<int>{::getpid()});
}

TEST(SharedBlocksTest, AProcessThatMapsABlockWithoutItsDescriptorIsSeen) {
  const LeftObject left;
  const int descriptor = ::shm_open(('/' + left.name()).c_str(), O_RDONLY, 0);
  void* const bytes = ::mmap(nullptr, 5, PROT_READ, MAP_SHARED, descriptor, 0);
  ::close(descriptor);
  ASSERT_NE(bytes, MAP_FAILED);
  EXPECT_EQ(listed(left.name())->processes, std::vector<int>{::getpid()});
  ::munmap(bytes, 5);
  EXPECT_EQ(listed(left.name())->processes, std::vector<int>());
}

TEST(SharedBlocksTest, BlocksAreListedById) {
  const SharedMemory one(1);
  const SharedMemory other(1);
  const std::vector<SharedBlock> blocks = list_shared_blocks();
  EXPECT_GE(blocks.size(), 2u);
  EXPECT_TRUE(
      std::is_sorted(blocks.begin(), blocks.end(),
                     [](const SharedBlock& a, const SharedBlock& b) { return a.id < b.id; }));
}

TEST(SharedBlocksTest, ABlockThatIsGoneIsNotListed) {
  auto memory = std::make_unique<SharedMemory>(1);
  const std::string id = memory->id();
  EXPECT_TRUE(listed(id));
  memory.reset();
  EXPECT_FALSE(listed(id));
}

TEST(SharedBlocksTest, OtherNamesAreNotListed) {
  const LeftObject other(LeftObject::unused_id() + "_vrelio_test");
  EXPECT_FALSE(listed(other.name()));
}

TEST(SharedBlocksTest, ABlockThatNobodyUsesIsRemoved) {
  const LeftObject left;
  EXPECT_EQ(listed(left.name())->processes, std::vector<int>());
  remove_shared_block(left.name(), false);
  EXPECT_FALSE(left.exists());
}

TEST(SharedBlocksTest, ABlockInUseIsRemovedOnlyByForce) {
  SharedMemory memory(10);
  const std::string id = memory.id();
  EXPECT_VREL_ERROR(remove_shared_block(id, false),
                    "Shared memory block is in use by process " + std::to_string(::getpid()) +
                        ", --force removes its name!",
                    -1);
  EXPECT_EQ(system_error_of_removing(id), EBUSY);
  EXPECT_TRUE(listed(id));
  remove_shared_block(id, true);
  EXPECT_FALSE(listed(id));
  static_cast<char*>(memory.data())[9] = 'x';
}

TEST(SharedBlocksTest, ABlockOfAnotherUserIsRemovedOnlyByForce) {
  if (::geteuid() != 0) GTEST_SKIP() << "only the administrator can give a block away";
  const LeftObject left;
  ASSERT_EQ(::chown(("/dev/shm/" + left.name()).c_str(), 4711, 4711), 0);
  EXPECT_FALSE(listed(left.name())->is_own);
  EXPECT_EQ(listed(left.name())->user, 4711u);
  EXPECT_VREL_ERROR(remove_shared_block(left.name(), false),
                    "Shared memory block belongs to another user, --force removes it!", -1);
  EXPECT_EQ(system_error_of_removing(left.name()), EPERM);
  EXPECT_TRUE(left.exists());
  remove_shared_block(left.name(), true);
  EXPECT_FALSE(left.exists());
}

TEST(SharedBlocksTest, ABlockThatDoesNotExistIsNamedAsSuch) {
  const std::string id = LeftObject::unused_id();
  for (const bool force : {false, true}) {
    EXPECT_VREL_ERROR(remove_shared_block(id, force), "No such shared memory block!", -1);
  }
  EXPECT_EQ(system_error_of_removing(id), ENOENT);
}

TEST(SharedBlocksTest, ANameThatIsNoIdIsNeverRemoved) {
  const LeftObject other(LeftObject::unused_id() + "_vrelio_test");
  for (const bool force : {false, true}) {
    EXPECT_VREL_ERROR(remove_shared_block(other.name(), force), "No id of a shared memory block!",
                      -1);
    EXPECT_VREL_ERROR(remove_shared_block("../shm/" + other.name(), force),
                      "No id of a shared memory block!", -1);
  }
  EXPECT_EQ(system_error_of_removing(other.name()), 0);
  EXPECT_TRUE(other.exists());
}

TEST(SharedBlocksTest, ALinkIsNoBlock) {
  const LeftObject target(LeftObject::unused_id() + "_vrelio_test");
  const std::string id = LeftObject::unused_id();
  const std::string link = "/dev/shm/" + id;
  ASSERT_EQ(::symlink(target.name().c_str(), link.c_str()), 0);
  EXPECT_FALSE(listed(id));
  EXPECT_VREL_ERROR(remove_shared_block(id, true), "No such shared memory block!", -1);
  ::unlink(link.c_str());
  EXPECT_TRUE(target.exists());
}

}  // namespace
}  // namespace Vrel::tool
