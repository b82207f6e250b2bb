// Files that are cut or changed anywhere: chain and samples are read, or refused with a VrelError,
// and neither takes more memory than a small file can be worth.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <vrelio/container/chain.h>
#include <vrelio/container/sample_reader.h>
#include <vrelio/foundation/error.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "support/attached_file.h"
#include "support/golden.h"
#include "support/source_tree.h"

namespace {

using Vrel::FileRecord;
using Vrel::SampleReader;
using Vrel::StackRecord;
using Vrel::testing::AttachedFile;

// A few samples from the begin, the middle and the end, whatever number the sizes make.
void read_samples(VFile& file, const StackRecord& stack) {
  SampleReader reader(file, stack);
  const u64 all = reader.get_number_of_samples();
  for (const u64 position : {u64{0}, all / 2, all - std::min<u64>(all, 3)}) {
    std::string bytes(std::min<u64>(all - position, 256) * reader.get_sample_size(), '\0');
    reader.read(position, bytes.size() / reader.get_sample_size(), bytes.data());
  }
}

template <class Work>
void expect_nothing_but_vrel_errors(Work work) {
  try {
    work();
  } catch (const VrelError& error) {
    EXPECT_STRNE(error.get_msg(), "");
  }
}

void read_or_refuse(AttachedFile& open, const std::string& bytes) {
  open.set_content(bytes);
  open.file().seek(0);
  FileRecord record;
  expect_nothing_but_vrel_errors([&] { read_chain(open.file(), record); });
  for (const StackRecord& stack : record.stacks) {
    expect_nothing_but_vrel_errors([&] { read_samples(open.file(), stack); });
  }
}

long peak_memory_in_kib() {
  rusage usage{};
  ::getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}

// The address sanitizer keeps freed memory for a while, which says nothing of the library.
#if defined(__SANITIZE_ADDRESS__)
constexpr bool memory_counts = false;
#else
constexpr bool memory_counts = true;
#endif

// Fails where the memory of the process has grown by more than 64 MiB.
class MemoryGuard {
 public:
  ~MemoryGuard() {
    if (memory_counts) {
      EXPECT_LE(peak_memory_in_kib() - before_, 64 * 1024);
    }
  }

 private:
  long before_ = peak_memory_in_kib();
};

void cut_everywhere(const std::string& bytes) {
  const MemoryGuard guard;
  AttachedFile open;
  for (std::size_t length = 0; length < bytes.size(); ++length) {
    SCOPED_TRACE("cut at " + std::to_string(length));
    read_or_refuse(open, bytes.substr(0, length));
  }
}

void flip_everywhere(std::string bytes) {
  const MemoryGuard guard;
  AttachedFile open;
  for (std::size_t bit = 0; bit < 8 * bytes.size(); ++bit) {
    SCOPED_TRACE("bit " + std::to_string(bit) + " flipped");
    const auto flip = [&] {
      bytes[bit / 8] = static_cast<char>(bytes[bit / 8] ^ (1 << (bit % 8)));
    };
    flip();
    read_or_refuse(open, bytes);
    flip();
  }
}

class GoldenDamageTest : public testing::TestWithParam<const char*> {};

TEST_P(GoldenDamageTest, CutAtEveryLength) { cut_everywhere(Vrel::testing::golden(GetParam())); }
TEST_P(GoldenDamageTest, EveryBitFlipped) { flip_everywhere(Vrel::testing::golden(GetParam())); }

INSTANTIATE_TEST_SUITE_P(Files, GoldenDamageTest, testing::Values("zipped", "stack_version_0"));

// The same with the files of the sample data, which other programs wrote.
class SampleDataDamageTest : public testing::TestWithParam<const char*> {
 protected:
  void SetUp() override {
    const std::string path =
        Vrel::testing::sample_data_folder() + "/vbf/good/" + GetParam() + ".vbf";
    if (!std::filesystem::exists(path)) GTEST_SKIP() << "no sample data at " << path;
    std::ifstream file(path, std::ios::binary);
    bytes_.assign(std::istreambuf_iterator<char>(file), {});
  }

  std::string bytes_;
};

class SampleDataCutTest : public SampleDataDamageTest {};
class SampleDataFlipTest : public SampleDataDamageTest {};

TEST_P(SampleDataCutTest, CutAtEveryLength) { cut_everywhere(bytes_); }
TEST_P(SampleDataFlipTest, EveryBitFlipped) { flip_everywhere(bytes_); }

INSTANTIATE_TEST_SUITE_P(Files, SampleDataCutTest,
                         testing::Values("stack_versions_mixed", "chain_shuffled", "zlib_random"));
INSTANTIATE_TEST_SUITE_P(Files, SampleDataFlipTest,
                         testing::Values("columns_odd_flags", "stack_version_0_zlib"));

}  // namespace
