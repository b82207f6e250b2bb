// Stacks beyond 4 GiB, in files that take no room on the disk.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>
#include <vrelio/container/bf_file.h>
#include <vrelio/container/chain.h>
#include <vrelio/container/sample_reader.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "container/format_internal.h"
#include "support/temporary_file.h"

namespace {

using testing::ElementsAre;
using Vrel::FileHeader;
using Vrel::StackHeader;
using Vrel::testing::TemporaryFile;

constexpr int real = 0x80;
constexpr unsigned columns = 65536;
constexpr unsigned rows = 49152;
constexpr u64 header_end = 26 + 368;

// A raw stack of 24 GiB of doubles, all of them 0 but for one, without footer and dictionary.
class SparseFile {
 public:
  SparseFile() : descriptor_(::open(file_.path().c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600)) {
    FileHeader header;
    header.format_version = 1;
    header.first_stack = 26;
    write(Vrel::detail::encode(header), 0);
    StackHeader stack;
    stack.format_version = 0;
    stack.rank = 2;
    stack.sizes[0] = columns;
    stack.sizes[1] = rows;
    stack.data_type = real;
    stack.data_length = u64{8} * columns * rows;
    write(Vrel::detail::encode(stack), 26);
    is_made_ = ::ftruncate(descriptor_, static_cast<off_t>(header_end + stack.data_length)) == 0;
  }
  SparseFile(const SparseFile&) = delete;
  SparseFile& operator=(const SparseFile&) = delete;
  ~SparseFile() { ::close(descriptor_); }

  bool is_made() const { return is_made_; }
  std::wstring name() const { return file_.name(); }

  void set_sample(u64 index, double value) const {
    ASSERT_EQ(
        ::pwrite(descriptor_, &value, sizeof value, static_cast<off_t>(header_end + 8 * index)), 8);
  }

 private:
  template <class Bytes>
  void write(const Bytes& bytes, off_t position) const {
    ASSERT_EQ(::pwrite(descriptor_, bytes.data(), bytes.size(), position),
              static_cast<ssize_t>(bytes.size()));
  }

  TemporaryFile file_;
  int descriptor_;
  bool is_made_ = false;
};

TEST(BFLargeStackTest, SamplesBehindFourGiBAreReadByTheirPosition) {
  const SparseFile sparse;
  if (!sparse.is_made()) GTEST_SKIP() << "no sparse files here";
  constexpr unsigned place = 3000000000U;
  sparse.set_sample(place, 0.5);
  sparse.set_sample(u64{columns} * rows - 1, 0.25);
  VBFFile file(sparse.name(), VFile::mode_read);
  const auto stack = file->get_stack(0);
  EXPECT_EQ(stack->get_size(0), u64{8} * columns * rows);
  std::vector<double> samples(3, 7.0);
  int position = static_cast<int>(place - 1);
  stack->read(real, samples.data(), nullptr, 3, position);
  EXPECT_THAT(samples, ElementsAre(0.0, 0.5, 0.0));
  EXPECT_EQ(static_cast<unsigned>(position), place + 2);
  position = static_cast<int>(columns * rows - 1);
  stack->read(real, samples.data(), nullptr, VBFStackInterface::all_samples, position);
  EXPECT_EQ(samples[0], 0.25);
  EXPECT_EQ(position, VBFStackInterface::position_exhausted);
}

TEST(BFLargeStackTest, AStackBehindThemIsAppendedAndRead) {
  const SparseFile sparse;
  if (!sparse.is_made()) GTEST_SKIP() << "no sparse files here";
  {
    VBFFile file(sparse.name(), VFile::mode_modify);
    const auto stack = file->add_stack(false);
    stack->create({3}, 1);
    stack->write(1, "abc", nullptr, 3);
    file->close();
  }
  VBFFile file(sparse.name(), VFile::mode_read);
  std::string samples(3, '?');
  file->get_stack(1)->read(1, samples.data(), nullptr);
  EXPECT_EQ(samples, "abc");
}

// Room for a large transfer, which takes only as much memory as its window: that is mapped again and again.
class RepeatedWindow {
 public:
  static constexpr std::size_t window_size = 64U << 20U;

  explicit RepeatedWindow(std::size_t count)
      : size_(count * window_size),
        bytes_(static_cast<char*>(::mmap(nullptr, size_, PROT_NONE,
                                         MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0))) {
    const int window = ::memfd_create("window", MFD_CLOEXEC);
    EXPECT_EQ(::ftruncate(window, window_size), 0);
    for (std::size_t i = 0; i < count; ++i) {
      EXPECT_NE(::mmap(bytes_ + i * window_size, window_size, PROT_READ | PROT_WRITE,
                       MAP_SHARED | MAP_FIXED, window, 0),
                MAP_FAILED);
    }
    ::close(window);
  }
  RepeatedWindow(const RepeatedWindow&) = delete;
  RepeatedWindow& operator=(const RepeatedWindow&) = delete;
  ~RepeatedWindow() { ::munmap(bytes_, size_); }

  char* data() const { return bytes_; }

 private:
  std::size_t size_;
  char* bytes_;
};

// A file moves at most what 32 bits count, a sample reader a quarter of it.
TEST(BFLargeStackTest, ARequestAboveOneGiBIsReadWhole) {
  const SparseFile sparse;
  if (!sparse.is_made()) GTEST_SKIP() << "no sparse files here";
  constexpr u64 first = 1000;
  constexpr u64 count = (u64{1} << 30U) / sizeof(double) + 2;
  sparse.set_sample(first + count - 2, 0.5);
  sparse.set_sample(first + count - 1, 0.25);
  const RepeatedWindow target(17);
  VFile file(sparse.name(), VFile::mode_read);
  Vrel::FileRecord record;
  read_chain(file, record);
  Vrel::SampleReader(file, record.stacks.at(0)).read(first, count, target.data());
  double last[2];
  std::memcpy(last, target.data() + (count - 2) * sizeof(double), sizeof last);
  EXPECT_THAT(last, ElementsAre(0.5, 0.25));
}

// Planes of 32 MiB, which zlib makes a few thousandths of: 5 GiB take room neither on the disk nor in memory.
class LargeStack {
 public:
  static constexpr unsigned side = 4096;
  static constexpr unsigned plane_length = side * side;
  static constexpr unsigned planes = 160;
  static constexpr int uint16 = 4;
  static_assert(u64{planes} * plane_length * 2 == u64{5} << 30U);

  // One that grows has no flush points, the other has one behind each plane.
  explicit LargeStack(bool grows) {
    VBFFile file(target_.name(), VFile::mode_create);
    const auto stack = file->add_stack(false);
    stack->create({side, side, grows ? 0 : planes}, uint16);
    stack->set_compression(1, 1);
    stack->set_flush_block_size(2 * plane_length);
    std::vector<unsigned short> plane(plane_length);
    for (unsigned i = 0; i < planes; ++i) {
      plane.back() = static_cast<unsigned short>(i);
      stack->write(uint16, plane.data(), nullptr, plane_length);
    }
    if (grows) stack->commit(0);
    file->close();
  }

  const TemporaryFile& target() const { return target_; }

  std::size_t count_flush_points() const {
    VFile file(target_.name(), VFile::mode_read);
    Vrel::FileRecord record;
    read_chain(file, record);
    return record.stacks.at(0).flush_positions.size();
  }

  // The last samples of a plane and the first of the next.
  static void expect_border_behind(VBFStackInterface& stack, unsigned plane) {
    std::vector<unsigned short> samples(4, 7);
    int position = static_cast<int>((plane + 1) * plane_length - 2);
    stack.read(uint16, samples.data(), nullptr, 4, position);
    EXPECT_THAT(samples, ElementsAre(0, plane, 0, 0));
  }

 private:
  TemporaryFile target_;
};

TEST(BFLargeStackTest, AStackOfFiveGiBIsReadNearItsEndByItsFlushPoints) {
  const LargeStack large(false);
  EXPECT_EQ(large.count_flush_points(), LargeStack::planes);
  VBFFile file(large.target().name(), VFile::mode_read);
  const auto stack = file->get_stack(0);
  EXPECT_THAT(stack->get_sizes(), ElementsAre(4096, 4096, 160));
  EXPECT_EQ(stack->get_size(0), u64{5} << 30U);
  LargeStack::expect_border_behind(*stack, 158);
  LargeStack::expect_border_behind(*stack, 0);
  std::vector<unsigned short> last(1, 7);
  int position = static_cast<int>(LargeStack::planes * LargeStack::plane_length - 1);
  stack->read(LargeStack::uint16, last.data(), nullptr, VBFStackInterface::all_samples, position);
  EXPECT_EQ(last[0], 159);
  EXPECT_EQ(position, VBFStackInterface::position_exhausted);
}

// Decoded from the begin on, past 4 GiB of samples.
TEST(BFLargeStackTest, AStackThatHasGrownToFiveGiBIsReadNearItsEndToo) {
  const LargeStack large(true);
  EXPECT_EQ(large.count_flush_points(), 0u);
  VBFFile file(large.target().name(), VFile::mode_read);
  EXPECT_THAT(file->get_stack(0)->get_sizes(), ElementsAre(4096, 4096, 160));
  LargeStack::expect_border_behind(*file->get_stack(0), 158);
}

}  // namespace
