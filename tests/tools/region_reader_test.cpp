#include "lib/region_reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vrelio/container/bf_file.h>
#include <vrelio/container/sample_reader.h>

#include <cstring>
#include <fstream>
#include <numeric>
#include <random>

#include "lib/description.h"
#include "lib/input_file.h"
#include "support/temporary_file.h"

namespace Vrel::tool {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

using Sizes = std::vector<std::uint32_t>;
using Runs = std::vector<std::pair<u64, u64>>;

Runs runs_of(const Sizes& sizes, const Region& region) {
  RegionWalk walk(sizes, region);
  Runs runs;
  for (SampleRange run = walk.next(); run.count != 0; run = walk.next()) {
    runs.emplace_back(run.position, run.count);
  }
  return runs;
}

TEST(RegionWalkTest, AWholeStackIsOneRun) {
  EXPECT_THAT(runs_of({4, 3, 2}, {{0, 4}, {0, 3}, {0, 2}}), ElementsAre(Pair(0, 24)));
  EXPECT_THAT(runs_of({}, {}), ElementsAre(Pair(0, 1)));
}

TEST(RegionWalkTest, WholeRowsAndPlanesAreMerged) {
  EXPECT_THAT(runs_of({4, 3, 5}, {{0, 4}, {0, 3}, {1, 4}}), ElementsAre(Pair(12, 36)));
  EXPECT_THAT(runs_of({4, 3, 3}, {{0, 4}, {1, 3}, {1, 3}}), ElementsAre(Pair(16, 8), Pair(28, 8)));
  EXPECT_THAT(runs_of({1, 3, 3}, {{0, 1}, {0, 3}, {1, 2}}), ElementsAre(Pair(3, 3)));
}

TEST(RegionWalkTest, PartsOfRowsAreRunsOfTheirOwn) {
  EXPECT_THAT(runs_of({4, 2, 2}, {{1, 3}, {0, 2}, {0, 2}}),
              ElementsAre(Pair(1, 2), Pair(5, 2), Pair(9, 2), Pair(13, 2)));
}

TEST(RegionWalkTest, ARegionWithoutSamplesHasNoRuns) {
  EXPECT_THAT(runs_of({4, 3}, {{0, 4}, {2, 2}}), IsEmpty());
  EXPECT_THAT(runs_of({0, 3}, {{0, 0}, {0, 3}}), IsEmpty());
}

TEST(RegionWalkTest, PositionsDoNotWrapAround) {
  const Sizes sizes = {65535, 65537, 1};
  EXPECT_THAT(runs_of(sizes, {{65534, 65535}, {65536, 65537}, {0, 1}}),
              ElementsAre(Pair(4294967294u, 1)));
}

// The region's samples by a plain loop over the stack.
std::vector<u64> positions_in(const Sizes& sizes, const Region& region) {
  const u64 total = std::accumulate(sizes.begin(), sizes.end(), u64{1}, std::multiplies<>());
  std::vector<u64> positions;
  for (u64 position = 0; position < total; ++position) {
    u64 rest = position;
    bool is_inside = true;
    for (std::size_t axis = 0; axis < sizes.size(); ++axis) {
      const u64 index = rest % sizes[axis];
      is_inside = is_inside && index >= region[axis].first && index < region[axis].end;
      rest /= sizes[axis];
    }
    if (is_inside) positions.push_back(position);
  }
  return positions;
}

std::vector<u64> read_numbers(const Sizes& sizes, const Region& region, std::mt19937& random) {
  u64 last_end = 0;
  const auto read = [&](u64 position, u64 count, void* destination) {
    EXPECT_GE(position, last_end) << "reads backwards";
    last_end = position + count;
    for (u64 i = 0; i < count; ++i) {
      const u64 sample = position + i;
      std::memcpy(static_cast<char*>(destination) + i * sizeof sample, &sample, sizeof sample);
    }
  };
  RegionReader reader(read, sizeof(u64), RegionWalk(sizes, region));
  std::vector<u64> samples(number_of_samples(region));
  for (u64 done = 0; done < samples.size();) {
    const u64 piece = std::min<u64>(samples.size() - done, 1 + random() % 50);
    reader.read(piece, samples.data() + done);
    done += piece;
  }
  return samples;
}

TEST(RegionReaderTest, RandomRegionsHoldWhatAPlainLoopFinds) {
  constexpr unsigned seed = 4711;
  std::mt19937 random(seed);
  for (int number = 0; number < 500; ++number) {
    Sizes sizes(random() % 6);
    Region region;
    for (std::uint32_t& size : sizes) {
      size = 1 + static_cast<std::uint32_t>(random() % 6);
      const u64 first = random() % size;
      const u64 end = random() % 3 == 0 ? size : first + 1 + random() % (size - first);
      region.push_back({random() % 3 == 0 ? 0 : first, end, false});
    }
    EXPECT_EQ(read_numbers(sizes, region, random), positions_in(sizes, region))
        << "seed " << seed << ", case " << number;
  }
}

TEST(RegionReaderTest, ALargeRunIsReadAsAWhole) {
  Runs reads;
  const auto read = [&](u64 position, u64 count, void*) { reads.emplace_back(position, count); };
  RegionReader reader(read, 1, RegionWalk({1000, 1000}, {{0, 1000}, {10, 900}}));
  std::vector<char> block(600000);
  reader.read(600000, block.data());
  reader.read(290000, block.data());
  EXPECT_THAT(reads, ElementsAre(Pair(10000, 600000), Pair(610000, 290000)));
}

// What this process has read from files so far.
u64 bytes_read() {
  std::ifstream file("/proc/self/io");
  std::string key;
  u64 bytes = 0;
  file >> key >> bytes;
  return key == "rchar:" ? bytes : 0;
}

std::vector<unsigned short> noise(std::size_t count) {
  std::mt19937 random(1);
  std::vector<unsigned short> samples(count);
  for (unsigned short& sample : samples) sample = static_cast<unsigned short>(random());
  return samples;
}

TEST(RegionReaderTest, ARegionFromTheMiddleOfACompressedStackCostsItsOwnBlocks) {
  constexpr unsigned size = 512;
  constexpr unsigned planes = 40;
  const Vrel::testing::TemporaryFile temporary;
  const std::vector<unsigned short> samples = noise(std::size_t{size} * size * planes);
  {
    VBFFile file(VPropstring(temporary.name()), VFile::mode_create);
    const auto stack = file->add_stack(false);
    stack->create({size, size, planes}, 4);
    stack->set_compression(1, 1);
    stack->write(4, samples.data(), nullptr, VBFStackInterface::all_samples);
    file->close();
  }
  InputFile input(temporary.path());
  const Description description = read_description(input.get_file());
  SampleReader source(input.get_file(), description.file.stacks[0]);
  const auto read = [&](u64 position, u64 count, void* destination) {
    source.read(position, count, destination);
  };
  constexpr unsigned width = 300;
  const Region region = {{100, 100 + width}, {0, size}, {20, 24}};
  RegionReader reader(read, 2, RegionWalk({size, size, planes}, region));
  std::vector<unsigned short> taken(number_of_samples(region));
  const u64 before = bytes_read();
  reader.read(taken.size(), taken.data());
  const u64 cost = bytes_read() - before;
  if (before == 0) GTEST_SKIP() << "the system does not count what is read";
  // Noise does not compress, so the blocks are as large as their samples.
  EXPECT_LT(cost, u64{size} * size * 4 * 2 * 5 / 4);
  for (std::size_t row = 0; row < std::size_t{size} * 4; ++row) {
    const auto* const expected = &samples[(std::size_t{20} * size + row) * size + 100];
    ASSERT_EQ(std::memcmp(&taken[row * width], expected, width * 2), 0) << "row " << row;
  }
}

}  // namespace
}  // namespace Vrel::tool
