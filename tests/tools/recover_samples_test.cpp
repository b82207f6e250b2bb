#include "lib/recover_samples.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "support/attached_file.h"
#include "zlib_text.h"

namespace Vrel::tool {
namespace {

using Vrel::testing::AttachedFile;
using Vrel::testing::zlib_stream;

StackRecord make_stack(const std::vector<std::uint32_t>& sizes, int level = 0) {
  StackRecord stack;
  stack.header.rank = static_cast<std::uint32_t>(sizes.size());
  std::copy(sizes.begin(), sizes.end(), stack.header.sizes.begin());
  stack.header.data_type = 4;
  stack.header.compression_type = level == 0 ? 0 : 1;
  stack.header.compression_level = level;
  for (const std::uint32_t size : sizes) stack.number_of_samples *= size;
  return stack;
}

TEST(RecoverSamplesTest, AStepIsAllOfTheAxesInFrontOfTheLast) {
  EXPECT_EQ(bytes_per_step(make_stack({4, 3, 5})), 24u);
  EXPECT_EQ(bytes_per_step(make_stack({5})), 2u);
  EXPECT_EQ(bytes_per_step(make_stack({})), 2u);
}

TEST(RecoverSamplesTest, AStackGrowsWhoseLastSizeAloneIsZero) {
  EXPECT_TRUE(is_growing(make_stack({4, 0}).header));
  EXPECT_TRUE(is_growing(make_stack({0}).header));
  EXPECT_FALSE(is_growing(make_stack({0, 0}).header));
  EXPECT_FALSE(is_growing(make_stack({4, 1}).header));
  EXPECT_FALSE(is_growing(make_stack({}).header));
}

TEST(RecoverSamplesTest, AGrowingStackHasAsManySamplesAsCanBeCounted) {
  EXPECT_EQ(most_bytes(make_stack({3, 0})), u64{0xFFFFFFFF} / 3 * 6);
  EXPECT_EQ(most_bytes(make_stack({3, 7})), 42u);
}

TEST(RecoverSamplesTest, RawBytesAreThoseUpToTheEnd) {
  AttachedFile file("0123456789");
  StackRecord stack = make_stack({3, 0});
  stack.data_position = 4;
  EXPECT_EQ(count_remains(file.file(), stack, 10), 6u);
  EXPECT_EQ(count_remains(file.file(), stack, 3), 0u);
  stack.header.data_length = 5;
  EXPECT_EQ(count_remains(file.file(), stack, 10), 5u);
  stack.header.data_length = 7;
  EXPECT_EQ(count_remains(file.file(), stack, 10), 6u);
  stack = make_stack({2});
  EXPECT_EQ(count_remains(file.file(), stack, 10), 4u);
}

TEST(RecoverSamplesTest, ADamagedStreamIsDecodedUpToTheDamage) {
  const std::string text(1000, 'x');
  std::string stream = zlib_stream(text, 100);
  const StackRecord stack = make_stack({500}, 6);
  const auto count = [&] {
    AttachedFile file(stream);
    return count_remains(file.file(), stack, stream.size());
  };
  EXPECT_EQ(count(), 1000u);
  const std::size_t second = stream.find(std::string("\0\0\xFF\xFF", 4)) + 4;
  stream[second] = '\x07';
  EXPECT_EQ(count(), 100u);
}

TEST(RecoverSamplesTest, AStreamIsWholeWithItsChecksum) {
  std::string stream = zlib_stream("some samples", 100);
  const StackRecord stack = make_stack({6}, 6);
  const auto is_whole = [&](std::size_t size) {
    AttachedFile file(stream + "more");
    SampleRemains remains(file.file(), stack, size);
    unsigned char bytes[12];
    EXPECT_EQ(remains.read(bytes, 12), 12u);
    const bool whole = remains.is_stream_whole();
    EXPECT_TRUE(!whole || remains.stored_size() == stream.size());
    return whole;
  };
  EXPECT_TRUE(is_whole(stream.size() + 4));
  EXPECT_TRUE(is_whole(stream.size()));
  EXPECT_FALSE(is_whole(stream.size() - 1));
  stream.back() = static_cast<char>(stream.back() + 1);
  EXPECT_FALSE(is_whole(stream.size()));
}

TEST(RecoverSamplesTest, CuttingTheLastAxisCutsItsColumns) {
  StackRecord stack = make_stack({2, 3});
  stack.column_positions = {{1, 2}, {1, 2, 3}};
  stack.column_labels = {{}, {"a", "b", "c"}};
  cut_last_axis(stack, 2);
  EXPECT_EQ(stack.header.sizes[1], 2u);
  EXPECT_EQ(stack.column_positions, (std::vector<std::vector<double>>{{1, 2}, {1, 2}}));
  EXPECT_EQ(stack.column_labels[1], (std::vector<std::string>{"a", "b"}));
}

}  // namespace
}  // namespace Vrel::tool
