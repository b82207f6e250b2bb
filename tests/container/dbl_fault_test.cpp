#include <gtest/gtest.h>

#include <cerrno>

#include "container/dbl_samples.h"
#include "support/system_fault.h"
#include "support/temporary_file.h"

namespace {

using namespace Vrel::testing;

std::vector<std::size_t> write_sizes(const Dims& dims, std::size_t count, int single) {
  const TemporaryFile file;
  const ScopedWriteRecord record;
  const std::vector<double> samples = some_samples(count);
  EXPECT_EQ(
      vrel_dbl_write(file.path().c_str(), dims.data(), some_lengths.data(), samples.data(), single),
      1);
  std::vector<std::size_t> sizes;
  for (const WrittenBytes& bytes : record.writes()) sizes.push_back(bytes.bytes.size());
  return sizes;
}

TEST(DblFaultTest, SamplesGoOutInPiecesOfAMebibyte) {
  using Sizes = std::vector<std::size_t>;
  EXPECT_EQ(write_sizes({1024, 128, 1, 1}, 131072, 0), (Sizes{128, 1048576}));
  EXPECT_EQ(write_sizes({1024, 129, 1, 1}, 132096, 0), (Sizes{128, 1048576, 8192}));
  EXPECT_EQ(write_sizes({1024, 257, 1, 1}, 263168, 1), (Sizes{128, 1048576, 4096}));
}

TEST(DblFaultTest, AFailedWriteGivesZeroAndWhatWasWrittenStays) {
  const std::vector<double> samples = some_samples(131073);
  const Dims dims = {131073 / 3, 3, 1, 1};
  for (const int single : {0, 1}) {
    for (int occurrence = 1; occurrence <= 2; ++occurrence) {
      const TemporaryFile file;
      const ScopedSystemFault fault({SystemCall::write, occurrence, ENOSPC, 0});
      EXPECT_EQ(vrel_dbl_write(file.path().c_str(), dims.data(), some_lengths.data(),
                               samples.data(), single),
                0);
      EXPECT_TRUE(fault.happened());
      EXPECT_EQ(file.content().size(), occurrence == 1 ? 0U : 128U);
    }
  }
}

TEST(DblFaultTest, AFailedReadGivesZeroAndLeavesNoBlock) {
  const Dims dims = {100, 1, 1, 1};
  const TemporaryFile file(dbl_header(dims, some_lengths, 0) + bytes_of(some_samples(100)));
  for (const int code : {0xAE, 0xAF, 0}) {
    const ScopedSystemFault fault({SystemCall::read, 2, EIO, 0});
    const DblReading reading(file.path(), code);
    EXPECT_EQ(reading.result, 0);
    EXPECT_TRUE(fault.happened());
    EXPECT_EQ(reading.dims, dims);
    int code_kept = -1;
    std::memcpy(&code_kept, &reading.place, sizeof code_kept);
    EXPECT_EQ(code_kept, code);
  }
}

TEST(DblFaultTest, NoMemoryForTheBlockGivesZero) {
  const TemporaryFile file(dbl_header({100, 1, 1, 1}, some_lengths, 0) +
                           bytes_of(some_samples(100)));
  const ScopedSystemFault fault({SystemCall::allocate, 1, ENOMEM, 0});
  EXPECT_EQ(DblReading(file.path(), 0xAF).result, 0);
  EXPECT_TRUE(fault.happened());
}

// Let each allocation of a call in turn fail, which has to give 0, until it has all that it asks for.
template <class Call>
void expect_zero_without_memory(int result, Call call) {
  int occurrence = 0;
  for (bool happened = true; happened;) {
    SCOPED_TRACE("allocation " + std::to_string(++occurrence));
    int given = -1;
    {
      const ScopedSystemFault fault({SystemCall::allocate_object, occurrence, ENOMEM, 0});
      given = call();
      happened = fault.happened();
    }
    EXPECT_EQ(given, happened ? 0 : result);
  }
  EXPECT_GT(occurrence, 1);
}

TEST(DblFaultTest, NoMemoryForConvertingGivesZero) {
  const Dims dims = {100, 1, 1, 1};
  const std::vector<double> samples = some_samples(100);
  const TemporaryFile file;
  expect_zero_without_memory(1, [&] {
    return vrel_dbl_write(file.path().c_str(), dims.data(), some_lengths.data(), samples.data(), 1);
  });
  expect_zero_without_memory(1, [&] { return DblReading(file.path(), 0).result; });
}

TEST(DblFaultTest, AFileWhoseEndCannotBeToldIsReadAsItsSizesSay) {
  const TemporaryFile file(dbl_header({100, 1, 1, 1}, some_lengths, 0) +
                           bytes_of(some_samples(100)));
  // Each move, or the one to the end alone.
  for (const int occurrence : {0, 2}) {
    const ScopedSystemFault fault({SystemCall::seek, occurrence, ESPIPE, 0});
    const DblReading reading(file.path(), 0xAF);
    ASSERT_EQ(reading.result, 1);
    EXPECT_EQ(reading.samples<double>(100), some_samples(100));
  }
}

}  // namespace
