// Writers that die: what was committed stays readable.
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "container/writing_session.h"

namespace {

using namespace Vrel::testing;

// The writes of a whole session, and after how many of them each stack is complete.
struct RecordedSession {
  std::vector<WrittenBytes> writes;
  std::vector<std::size_t> commits;

  std::size_t committed_after(std::size_t count) const {
    return static_cast<std::size_t>(std::count_if(commits.begin(), commits.end(),
                                                  [&](std::size_t end) { return end <= count; }));
  }
};

RecordedSession record_session() {
  RecordedSession session;
  const TemporaryFile target;
  const ScopedWriteRecord record;
  VBFFile file(target.name(), VFile::mode_create);
  for (unsigned i = 0; i < stack_count; ++i) {
    write_stack(file, i);
    session.commits.push_back(record.writes().size());
  }
  file->close();
  session.writes = record.writes();
  return session;
}

void apply(const WrittenBytes& write, std::size_t size, std::string& content) {
  content.resize(std::max(content.size(), write.position + size));
  content.replace(write.position, size, write.bytes, 0, size);
}

std::string content_after(const RecordedSession& session, std::size_t count) {
  std::string content;
  for (std::size_t i = 0; i < count; ++i) {
    apply(session.writes[i], session.writes[i].bytes.size(), content);
  }
  return content;
}

// A file in memory, since thousands of them are opened.
class OpenedBytes {
 public:
  explicit OpenedBytes(const std::string& content)
      : descriptor_(::memfd_create("vrelio", MFD_CLOEXEC)), handle_(VFile::to_handle(descriptor_)) {
    const auto size = static_cast<ssize_t>(content.size());
    EXPECT_EQ(::pwrite(descriptor_, content.data(), content.size(), 0), size);
  }
  ~OpenedBytes() { ::close(descriptor_); }
  OpenedBytes(const OpenedBytes&) = delete;
  OpenedBytes& operator=(const OpenedBytes&) = delete;

  void*& handle() const { return handle_; }

 private:
  int descriptor_;
  mutable void* handle_;
};

std::size_t count_readable(const std::string& content) {
  const OpenedBytes killed(content);
  VBFFile file;
  file->attach(killed.handle(), VFile::mode_read);
  const std::size_t count = read_stacks(file);
  file->detach();
  return count;
}

// A torn link is told, and what stands in front of it stays.
std::size_t count_in_front_of_damage(const std::string& content) {
  const OpenedBytes torn(content);
  VBFFile file;
  try {
    file->attach(torn.handle(), VFile::mode_read);
  } catch (const VrelError& error) {
    EXPECT_TRUE(error.get_id() == -3 || error.get_id() == -4) << error.get_msg();
  }
  const std::size_t count = read_stacks(file);
  file->detach();
  return count;
}

TEST(BFFileDeathTest, BehindEveryWriteTheFileHoldsExactlyTheCommittedStacks) {
  const RecordedSession session = record_session();
  for (std::size_t count = 1; count <= session.writes.size(); ++count) {
    SCOPED_TRACE("after write " + std::to_string(count));
    EXPECT_EQ(count_readable(content_after(session, count)), session.committed_after(count));
  }
}

// Part of a write is a point of death too. A link of which a part stands leads anywhere.
TEST(BFFileDeathTest, InEveryByteOfASmallWriteTheFileHoldsTheCommittedStacks) {
  constexpr std::size_t small = 2048;
  constexpr std::size_t link_size = 8;
  const RecordedSession session = record_session();
  for (std::size_t count = 1; count < session.writes.size(); ++count) {
    const WrittenBytes& next = session.writes[count];
    if (next.bytes.size() > small) continue;
    const std::string before = content_after(session, count);
    for (std::size_t size = 1; size < next.bytes.size(); ++size) {
      SCOPED_TRACE("after write " + std::to_string(count) + " and " + std::to_string(size) +
                   " bytes");
      std::string content = before;
      apply(next, size, content);
      if (next.bytes.size() != link_size) {
        EXPECT_EQ(count_readable(content), session.committed_after(count));
        continue;
      }
      EXPECT_GE(count_in_front_of_damage(content), session.committed_after(count));
    }
  }
}

TEST(BFFileDeathTest, PrefixesOfTheHeaderAreNoFile) {
  const RecordedSession session = record_session();
  const std::string header = session.writes[0].bytes;
  for (std::size_t size = 0; size < header.size(); ++size) {
    const OpenedBytes torn(header.substr(0, size));
    VBFFile file;
    EXPECT_THROW(file->attach(torn.handle(), VFile::mode_read), VrelError) << size;
    EXPECT_EQ(file->get_number_of_stacks(), 0U);
  }
}

// Runs a session in a process of its own that is killed behind its n-th write.
int run_and_die(const TemporaryFile& target, int write) {
  const pid_t child = ::fork();
  if (child == 0) {
    const ScopedDeath death(write);
    const Session session = run_session(target, VFile::mode_create);
    ::_exit(session.failed ? 1 : 0);
  }
  int status = -1;
  ::waitpid(child, &status, 0);
  return status;
}

TEST(BFFileDeathTest, AKilledProcessLeavesExactlyTheCommittedStacks) {
  const RecordedSession session = record_session();
  const auto last = static_cast<int>(session.writes.size());
  for (int write = 1; write <= last; ++write) {
    SCOPED_TRACE("killed behind write " + std::to_string(write));
    const TemporaryFile target;
    const int status = run_and_die(target, write);
    ASSERT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(WTERMSIG(status), SIGKILL);
    VBFFile file(target.name(), VFile::mode_read);
    EXPECT_EQ(read_stacks(file), session.committed_after(static_cast<std::size_t>(write)));
  }
  const TemporaryFile target;
  EXPECT_EQ(run_and_die(target, last + 1), 0);
}

TEST(BFFileDeathTest, AFileWhoseWriterWasKilledIsGoneOnWith) {
  const RecordedSession session = record_session();
  for (std::size_t count = 1; count <= session.writes.size(); ++count) {
    SCOPED_TRACE("after write " + std::to_string(count));
    const TemporaryFile killed(content_after(session, count));
    EXPECT_FALSE(run_session(killed, VFile::mode_modify).failed);
    VBFFile file(killed.name(), VFile::mode_read);
    EXPECT_EQ(read_stacks(file), stack_count);
  }
}

}  // namespace
