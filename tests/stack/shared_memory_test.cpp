// Blocks of shared memory inside one process.
#include <vrelio/stack/shared_memory.h>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <boost/interprocess/exceptions.hpp>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <type_traits>

namespace {

using boost::interprocess::interprocess_exception;
using Vrel::SharedMemory;

static_assert(!std::is_copy_constructible_v<SharedMemory>);
static_assert(!std::is_move_constructible_v<SharedMemory>);
static_assert(!std::is_copy_assignable_v<SharedMemory>);
static_assert(std::is_nothrow_destructible_v<SharedMemory>);

// The system error that opening raises; 0 if it raises nothing.
int error_of_opening(const std::string& id) {
  try {
    SharedMemory block(id);
    return 0;
  } catch (const interprocess_exception& error) {
    return error.get_native_error();
  }
}

// An object of the system with a name and a size that the library would not make.
class ForeignObject {
 public:
  ForeignObject(std::string name, std::int64_t size) : name_(std::move(name)) {
    const int descriptor = ::shm_open(name_.c_str(), O_RDWR | O_CREAT | O_EXCL, 0600);
    EXPECT_EQ(::ftruncate(descriptor, size), 0);
    ::close(descriptor);
  }
  ~ForeignObject() { ::shm_unlink(name_.c_str()); }
  ForeignObject(const ForeignObject&) = delete;
  ForeignObject& operator=(const ForeignObject&) = delete;

  std::string id() const { return name_.substr(1); }

 private:
  std::string name_;
};

// A name for one test of one process.
std::string foreign_name(const std::string& what) {
  return "/vrelio_test_" + what + '_' + std::to_string(::getpid());
}

TEST(SharedMemoryTest, TwoBlocksHaveDifferentIds) {
  const SharedMemory one(10);
  const SharedMemory other(10);
  EXPECT_STRNE(one.id(), other.id());
}

TEST(SharedMemoryTest, AnIdIsARandomUuidInLowerCase) {
  const SharedMemory block(1);
  const std::string id = block.id();
  ASSERT_EQ(id.size(), 36u);
  for (std::size_t i = 0; i < id.size(); ++i) {
    const bool is_hyphen = i == 8 || i == 13 || i == 18 || i == 23;
    const std::string allowed = is_hyphen ? "-" : i == 14 ? "4" : "0123456789abcdef";
    EXPECT_NE(allowed.find(id[i]), std::string::npos) << id << " at " << i;
  }
}

TEST(SharedMemoryTest, ANewBlockHoldsZerosAndCanBeWritten) {
  SharedMemory block(10000);
  ASSERT_EQ(block.size(), 10000u);
  const auto* const bytes = static_cast<unsigned char*>(block.data());
  EXPECT_EQ(std::count(bytes, bytes + 10000, 0), 10000);
  std::memset(block.data(), 7, 10000);
  EXPECT_EQ(std::count(bytes, bytes + 10000, 7), 10000);
}

TEST(SharedMemoryTest, TheBytesBeginAtAPage) {
  SharedMemory block(3);
  const auto page = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block.data()) % page, 0u);
}

TEST(SharedMemoryTest, OpeningByTheIdGivesTheSameBytesAndSize) {
  for (const unsigned size : {1u, 4095u, 4096u, 4097u, 9000000u}) {
    SharedMemory block(size);
    std::memset(block.data(), 0x5A, size);
    SharedMemory same{std::string(block.id())};
    ASSERT_EQ(same.size(), size);
    EXPECT_STREQ(same.id(), block.id());
    EXPECT_NE(same.data(), block.data());
    EXPECT_EQ(std::memcmp(same.data(), block.data(), size), 0);
    static_cast<char*>(same.data())[size - 1] = 'x';
    EXPECT_EQ(static_cast<char*>(block.data())[size - 1], 'x');
  }
}

TEST(SharedMemoryTest, ABlockWithoutBytesHasANameAndNoData) {
  SharedMemory block(0);
  EXPECT_EQ(std::strlen(block.id()), 36u);
  EXPECT_EQ(block.data(), nullptr);
  EXPECT_EQ(block.size(), 0u);
  SharedMemory same{std::string(block.id())};
  EXPECT_STREQ(same.id(), block.id());
  EXPECT_EQ(same.data(), nullptr);
  EXPECT_EQ(same.size(), 0u);
}

TEST(SharedMemoryTest, TheNameIsGoneWithItsCreator) {
  for (const unsigned size : {0u, 1u, 100000u}) {
    std::string id;
    {
      const SharedMemory block(size);
      id = block.id();
      EXPECT_EQ(error_of_opening(id), 0);
    }
    EXPECT_EQ(error_of_opening(id), ENOENT);
  }
}

TEST(SharedMemoryTest, WhoOpenedABlockLeavesItsName) {
  const SharedMemory block(10);
  { const SharedMemory same{std::string(block.id())}; }
  EXPECT_EQ(error_of_opening(block.id()), 0);
}

TEST(SharedMemoryTest, WhoOpenedABlockKeepsItsBytesWithoutTheCreator) {
  auto block = std::make_unique<SharedMemory>(6);
  std::memcpy(block->data(), "hello", 6);
  SharedMemory same{std::string(block->id())};
  block.reset();
  EXPECT_EQ(error_of_opening(same.id()), ENOENT);
  EXPECT_STREQ(static_cast<char*>(same.data()), "hello");
  static_cast<char*>(same.data())[0] = 'j';
  EXPECT_STREQ(static_cast<char*>(same.data()), "jello");
}

TEST(SharedMemoryTest, ANameThatDoesNotExistIsRefusedAndNotMade) {
  const std::string id = "00000000-0000-4000-8000-000000000000";
  EXPECT_EQ(error_of_opening(id), ENOENT);
  EXPECT_EQ(error_of_opening(id), ENOENT);
  try {
    const SharedMemory block(id);
  } catch (const interprocess_exception& error) {
    EXPECT_EQ(error.get_error_code(), boost::interprocess::not_found_error);
  }
}

TEST(SharedMemoryTest, ATextThatIsNoNameIsRefused) {
  const SharedMemory block(10);
  const std::string id = block.id();
  for (const std::string& text :
       {std::string(), std::string("/"), "/" + id, id + '/', "x/" + id, "../shm/" + id,
        std::string("../../etc/hostname"), std::string("/etc/hostname"), id + '\0',
        id + std::string("\0x", 2), std::string(1, '\0')}) {
    EXPECT_EQ(error_of_opening(text), EINVAL) << text;
  }
  EXPECT_EQ(error_of_opening(id), 0);
}

TEST(SharedMemoryTest, AnyOtherTextLeadsNowhere) {
  const SharedMemory block(10);
  const std::string id = block.id();
  for (const std::string& text :
       {std::string("."), std::string(".."), std::string("..."), std::string("%s%n"), ' ' + id,
        id + ' ', id + '\n', '{' + id + '}', id.substr(1), std::string("\xFF\xFE"),
        std::string("C:\\block"), std::string(255, 'a'), std::string(256, 'a'),
        std::string(100000, 'a')}) {
    EXPECT_NE(error_of_opening(text), 0) << text;
  }
}

TEST(SharedMemoryTest, ABlockOfAnotherMakerIsOpenedByItsName) {
  const ForeignObject object(foreign_name("other"), 5);
  SharedMemory block(object.id());
  EXPECT_EQ(block.size(), 5u);
  EXPECT_EQ(block.id(), object.id());
}

TEST(SharedMemoryTest, ABlockWhoseSizePasses32BitsIsRefusedAndLeftAlone) {
  for (const std::int64_t size : {std::int64_t{1} << 32, (std::int64_t{1} << 32) + 5}) {
    const ForeignObject object(foreign_name("large"), size);
    EXPECT_EQ(error_of_opening(object.id()), EOVERFLOW);
    EXPECT_EQ(error_of_opening(object.id()), EOVERFLOW);
  }
}

// It is opened only: without a byte written it takes no memory.
TEST(SharedMemoryTest, TheLargestSizeIsToldWhole) {
  const ForeignObject object(foreign_name("largest"), 0xFFFFFFFF);
  SharedMemory block(object.id());
  EXPECT_EQ(block.size(), 0xFFFFFFFFu);
  static_cast<char*>(block.data())[0xFFFFFFFEu] = 'x';
}

}  // namespace
