// Blocks of shared memory between two processes.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vrelio/stack/shared_memory.h>

#include <array>
#include <boost/interprocess/exceptions.hpp>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <string>

extern char** environ;

namespace {

using boost::interprocess::interprocess_exception;
using boost::interprocess::shared_memory_object;
using Vrel::SharedMemory;

class Pipe {
 public:
  Pipe() { EXPECT_EQ(::pipe2(ends_.data(), O_CLOEXEC), 0); }
  ~Pipe() {
    close_reader();
    close_writer();
  }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;

  int reader() const { return ends_[0]; }
  int writer() const { return ends_[1]; }
  void close_reader() { close(ends_[0]); }
  void close_writer() { close(ends_[1]); }

 private:
  static void close(int& end) {
    if (end != -1) ::close(end);
    end = -1;
  }

  std::array<int, 2> ends_{-1, -1};
};

// The program of shared_memory_peer.cpp, running.
class Peer {
 public:
  Peer(const std::string& verb, const std::string& argument) {
    std::array<std::string, 3> words{VRELIO_SHARED_MEMORY_PEER, verb, argument};
    std::array<char*, 4> arguments{words[0].data(), words[1].data(), words[2].data(), nullptr};
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, input_.reader(), STDIN_FILENO);
    ::posix_spawn_file_actions_adddup2(&actions, output_.writer(), STDOUT_FILENO);
    EXPECT_EQ(::posix_spawn(&process_, arguments[0], &actions, nullptr, arguments.data(), environ),
              0);
    ::posix_spawn_file_actions_destroy(&actions);
    input_.close_reader();
    output_.close_writer();
  }
  ~Peer() {
    if (process_ != 0) finish();
  }
  Peer(const Peer&) = delete;
  Peer& operator=(const Peer&) = delete;

  // Without its end; what is there by then if the process ends.
  std::string read_line() {
    std::string line;
    char character = 0;
    while (::read(output_.reader(), &character, 1) == 1 && character != '\n') line += character;
    return line;
  }

  // The status that the process ends with by itself once its input has ended.
  int finish() {
    input_.close_writer();
    return wait();
  }

  int kill() {
    ::kill(process_, SIGKILL);
    return wait();
  }

 private:
  int wait() {
    int status = 0;
    EXPECT_EQ(::waitpid(process_, &status, 0), process_);
    process_ = 0;
    return status;
  }

  Pipe input_;
  Pipe output_;
  pid_t process_ = 0;
};

int error_of_opening(const std::string& id) {
  try {
    const SharedMemory block(id);
    return 0;
  } catch (const interprocess_exception& error) {
    return error.get_native_error();
  }
}

TEST(SharedMemoryProcessTest, AnotherProcessReadsAndWritesTheBytes) {
  SharedMemory block(5);
  std::memcpy(block.data(), "\1\2\3\4\5", 5);
  Peer peer("change", block.id());
  EXPECT_EQ(peer.read_line(), "5 15");
  EXPECT_EQ(peer.finish(), 0);
  EXPECT_EQ(std::memcmp(block.data(), "\2\3\4\5\6", 5), 0);
}

TEST(SharedMemoryProcessTest, ABlockOfAnotherProcessOpensByItsId) {
  Peer peer("create", "1000");
  SharedMemory block(peer.read_line());
  ASSERT_EQ(block.size(), 1000u);
  const auto* const bytes = static_cast<unsigned char*>(block.data());
  for (unsigned i = 0; i < 1000; ++i) EXPECT_EQ(bytes[i], i % 256);
}

TEST(SharedMemoryProcessTest, TheNameIsGoneWhenItsCreatorEnds) {
  Peer peer("create", "1000");
  const std::string id = peer.read_line();
  EXPECT_EQ(error_of_opening(id), 0);
  EXPECT_EQ(peer.finish(), 0);
  EXPECT_EQ(error_of_opening(id), ENOENT);
}

TEST(SharedMemoryProcessTest, TheEndOfWhoOpenedABlockLeavesItsName) {
  const SharedMemory block(10);
  Peer peer("change", block.id());
  EXPECT_EQ(peer.finish(), 0);
  EXPECT_EQ(error_of_opening(block.id()), 0);
}

TEST(SharedMemoryProcessTest, TheBytesOutliveTheirCreatorWhereTheyAreMapped) {
  Peer peer("create", "1000");
  SharedMemory block(peer.read_line());
  EXPECT_EQ(peer.finish(), 0);
  EXPECT_EQ(static_cast<unsigned char*>(block.data())[77], 77);
}

TEST(SharedMemoryProcessTest, AKilledCreatorLeavesItsBlockUntilTheNameIsRemoved) {
  Peer peer("create", "1000");
  const std::string id = peer.read_line();
  const int status = peer.kill();
  EXPECT_TRUE(WIFSIGNALED(status));
  {
    SharedMemory block(id);
    EXPECT_EQ(static_cast<unsigned char*>(block.data())[77], 77);
  }
  EXPECT_EQ(error_of_opening(id), 0);
  EXPECT_TRUE(shared_memory_object::remove(id.c_str()));
  EXPECT_EQ(error_of_opening(id), ENOENT);
}

TEST(SharedMemoryProcessTest, AFullFileSystemIsAnErrorWhenTheBlockIsMade) {
  for (const auto& [size, outcome] : {std::pair<const char*, std::string>{"65536", "made 0"},
                                      {"65537", std::to_string(ENOSPC) + " 0"},
                                      {"100000000", std::to_string(ENOSPC) + " 0"}}) {
    Peer peer("full", size);
    const std::string line = peer.read_line();
    EXPECT_EQ(peer.finish(), 0);
    if (line == "cannot") GTEST_SKIP() << "the system gives no small file system to a test";
    EXPECT_EQ(line, outcome);
  }
}

}  // namespace
