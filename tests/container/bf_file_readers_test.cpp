// One process commits stacks while others read the file.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vrelio/container/bf_file.h>
#include <vrelio/foundation/error.h>

#include <array>
#include <string>
#include <vector>

#include "support/temporary_file.h"

namespace {

using Vrel::testing::TemporaryFile;

constexpr unsigned stack_count = 500;
constexpr int reader_count = 8;
constexpr unsigned length = 300;
constexpr int uint16 = 4;

std::vector<unsigned short> samples_of(unsigned stack) {
  std::vector<unsigned short> samples(length);
  for (unsigned i = 0; i < length; ++i) samples[i] = static_cast<unsigned short>(stack * 7 + i * i);
  return samples;
}

bool is_whole(VBFFileInterface* file, unsigned index) {
  const auto stack = file->get_stack(index);
  std::vector<unsigned short> samples(stack->get_number_of_elements());
  stack->read(uint16, samples.data(), nullptr);
  return samples == samples_of(index) && stack->get_name() == std::to_string(index) &&
         stack->get_tag("index") == std::to_string(index);
}

constexpr int is_damaged = -1;

// How many stacks stand in the file, or that one is not whole.
int count_whole_stacks(int descriptor) {
  void* handle = VFile::to_handle(descriptor);
  VBFFile file;
  try {
    ::lseek(descriptor, 0, SEEK_SET);
    file->attach(handle, VFile::mode_read);
  } catch (const VrelError&) {
    // The header may not be there yet, and what stands in front of a link that is being written counts.
  }
  const unsigned count = file->get_number_of_stacks();
  bool all_whole = true;
  for (unsigned i = 0; i < count; ++i) all_whole = all_whole && is_whole(file, i);
  file->detach();
  return all_whole ? static_cast<int>(count) : is_damaged;
}

enum Verdict : int { fine = 0, fell = 1, damaged = 2, no_file = 3 };

// Reads until every stack is there. The order of verdicts is that of the exit codes.
int read_until_all_is_there(const std::string& path) {
  const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (descriptor == -1) return no_file;
  for (int seen = 0; seen < static_cast<int>(stack_count);) {
    const int count = count_whole_stacks(descriptor);
    if (count == is_damaged) return damaged;
    if (count < seen) return fell;
    seen = count;
  }
  return fine;
}

std::array<pid_t, reader_count> start_readers(const std::string& path) {
  std::array<pid_t, reader_count> readers{};
  for (pid_t& reader : readers) {
    reader = ::fork();
    if (reader == 0) ::_exit(read_until_all_is_there(path));
  }
  return readers;
}

// Committed a few at a time, so that readers meet the file in many states.
void write_all(VBFFileInterface* file) {
  for (unsigned i = 0; i < stack_count; ++i) {
    const auto stack = file->add_stack(false);
    stack->create(std::vector<unsigned>{length}, uint16);
    stack->set_name(std::to_string(i));
    stack->set_tag("index", std::to_string(i));
    if (i % 2 == 1) stack->set_compression(1, 1);
    stack->write(uint16, samples_of(i).data(), nullptr, length);
    ::usleep(1000);
  }
}

TEST(BFFileReadersTest, WhileOneProcessCommitsOthersSeeOnlyWholeStacksAndNeverFewer) {
  const TemporaryFile target;
  VBFFile file(target.name(), VFile::mode_create);
  const auto readers = start_readers(target.path());
  write_all(file);
  file->close();
  for (const pid_t reader : readers) {
    int status = -1;
    ASSERT_EQ(::waitpid(reader, &status, 0), reader);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), fine);
  }
}

}  // namespace
