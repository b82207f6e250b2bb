#include "container/chain_source_internal.h"

#include <gtest/gtest.h>

#include <string>

#include "support/expect_error.h"
#include "support/memory_file.h"

namespace {

using Vrel::detail::ChainSource;
using Vrel::testing::MemoryFile;

std::string counted_bytes(std::size_t size) {
  std::string bytes;
  for (std::size_t i = 0; i < size; ++i) bytes += static_cast<char>(i * 31 + i / 256);
  return bytes;
}

std::string take(ChainSource& source, std::size_t size) {
  std::string bytes(size, '\0');
  source.read(bytes.data(), size);
  return bytes;
}

TEST(ChainSourceTest, PiecesOfEverySizeGiveTheBytesOfTheFile) {
  const std::string bytes = counted_bytes(300000);
  for (const std::size_t piece : {1u, 3u, 368u, 16383u, 16384u, 16385u, 40000u}) {
    MemoryFile file(bytes);
    ChainSource source(file);
    std::string read;
    while (read.size() + piece <= bytes.size()) read += take(source, piece);
    EXPECT_TRUE(read == bytes.substr(0, read.size())) << piece;
  }
}

TEST(ChainSourceTest, ManyShortFieldsCostFewCalls) {
  MemoryFile file(counted_bytes(160000));
  ChainSource source(file);
  for (int i = 0; i < 40000; ++i) take(source, 4);
  EXPECT_LE(file.reads(), 10u);
}

TEST(ChainSourceTest, StartsWhereTheFileStands) {
  MemoryFile file("0123456789");
  file.seek(4);
  ChainSource source(file);
  EXPECT_EQ(source.position(), 4u);
  EXPECT_EQ(source.end(), 10u);
  EXPECT_EQ(take(source, 2), "45");
}

TEST(ChainSourceTest, SeeksInsideAndOutsideItsWindow) {
  const std::string bytes = counted_bytes(100000);
  MemoryFile file(bytes);
  ChainSource source(file);
  for (const std::size_t position : {0u, 10u, 5u, 16384u, 99000u, 16000u, 50000u}) {
    source.seek(position);
    EXPECT_EQ(take(source, 500), bytes.substr(position, 500));
  }
}

TEST(ChainSourceTest, WhatPassesTheEndNamesItsSize) {
  MemoryFile file("0123456789");
  ChainSource source(file);
  EXPECT_VREL_ERROR(take(source, 11), "Failed reading 11 bytes from file!", -3);
  EXPECT_VREL_ERROR(source.read_text(4000000000u), "Failed reading -294967296 bytes from file!",
                    -3);
  EXPECT_VREL_ERROR(source.expect(1ull << 62, 8), "Failed reading 0 bytes from file!", -3);
  source.seek(1000);
  EXPECT_VREL_ERROR(take(source, 1), "Failed reading 1 bytes from file!", -3);
  take(source, 0);
}

// Says that it is large enough for everything.
class HugeFile : public MemoryFile {
 public:
  u64 seek(u64 position) override {
    return position == ~u64{0} ? u64{1} << 40 : MemoryFile::seek(position);
  }
};

TEST(ChainSourceTest, ALengthOfAllOnesIsImpossible) {
  HugeFile file;
  ChainSource source(file);
  EXPECT_VREL_ERROR(source.read_text(0xFFFFFFFFu), "Failed reading -1 bytes from file!", -3);
}

// Has lost its second half since its size was asked for.
class ShrunkFile : public MemoryFile {
 public:
  using MemoryFile::MemoryFile;
  u64 seek(u64 position) override {
    return MemoryFile::seek(position == ~u64{0} ? 2 * bytes().size() : position);
  }
};

TEST(ChainSourceTest, AReadThatFailsLeavesNothingToBeTakenForBytesOfTheFile) {
  const std::string bytes = counted_bytes(20000);
  ShrunkFile file(bytes);
  ChainSource source(file);
  EXPECT_EQ(take(source, 100), bytes.substr(0, 100));
  source.seek(30000);
  EXPECT_VREL_ERROR(take(source, 10), "Failed reading 10000 bytes from file!", -3);
  source.seek(50);
  EXPECT_EQ(take(source, 100), bytes.substr(50, 100));
}

TEST(ChainSourceTest, APositionThatIsRefusedRaises) {
  MemoryFile file("0123456789");
  ChainSource source(file);
  EXPECT_VREL_ERROR(source.seek(1ull << 63), "Invalid stack position specified in header!", -4);
  source.seek(~0ull);
  EXPECT_EQ(source.position(), 10u);
  EXPECT_VREL_ERROR(source.skip(~0ull - 10), "Invalid stack position specified in header!", -4);
  EXPECT_VREL_ERROR(source.skip(~0ull), "Invalid stack position specified in header!", -4);
  source.skip(0);
  source.skip(90);
  EXPECT_EQ(source.position(), 100u);
}

TEST(ChainSourceTest, BytesMayBeReadOnceOnly) {
  MemoryFile file("0123456789");
  ChainSource source(file);
  take(source, 8);
  source.seek(0);
  EXPECT_VREL_ERROR(take(source, 3), "Failed reading 3 bytes from file!", -3);
  EXPECT_EQ(take(source, 2), "01");
  source.set_allowance(8);
  EXPECT_EQ(take(source, 8), "23456789");
}

}  // namespace
