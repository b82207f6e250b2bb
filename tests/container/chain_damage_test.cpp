// Broken and hostile files: a listed error, little memory, and the stacks in front of the damage.
#include <vrelio/container/chain.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "support/expect_error.h"
#include "support/golden.h"
#include "support/memory_file.h"
#include "support/read_record.h"

namespace {

using testing::SizeIs;
using Vrel::FileRecord;
using Vrel::testing::golden;
using Vrel::testing::golden_names;
using Vrel::testing::MemoryFile;
using Vrel::testing::read_record;

std::string little_endian(unsigned long long value, std::size_t size) {
  std::string bytes;
  for (std::size_t i = 0; i < size; ++i, value >>= 8) bytes += static_cast<char>(value & 0xFF);
  return bytes;
}

std::string patched(std::string bytes, std::size_t position, unsigned long long value,
                    std::size_t size) {
  return bytes.replace(position, size, little_endian(value, size));
}

// The golden file "raw": the first stack's header at 40, its data at 420, its footer at 468.
constexpr std::size_t stack = 40;
constexpr std::size_t footer = 468;

struct Defect {
  const char* name;
  std::size_t position;
  unsigned long long value;
  std::size_t size;
  const char* message;
  int id;
};

class ChainDefectTest : public testing::TestWithParam<Defect> {};

TEST_P(ChainDefectTest, RaisesItsMessage) {
  const Defect& defect = GetParam();
  const std::string bytes = patched(golden("raw"), defect.position, defect.value, defect.size);
  EXPECT_VREL_ERROR(read_record(bytes), defect.message, defect.id);
}

constexpr const char* bad_position = "Invalid stack position specified in header!";
constexpr const char* bad_stack = "Stack header not in vbf format!";
constexpr const char* bad_footer = "Stack footer not in vbf format!";

INSTANTIATE_TEST_SUITE_P(
    Defects, ChainDefectTest,
    testing::Values(
        Defect{"FileMagic", 0, 'v', 1, "No VBF file header found!", -4},
        Defect{"FileMagicLineEnd", 7, '\r', 1, "No VBF file header found!", -4},
        Defect{"FileMark", 9, 0xFE, 1, "No VBF file header found!", -4},
        Defect{"DescriptionLength", 22, 2147483632, 4, "Failed reading 2147483632 bytes from file!",
               -3},
        Defect{"DescriptionLengthAllOnes", 22, 0xFFFFFFFF, 4, "Failed reading -1 bytes from file!",
               -3},
        Defect{"FirstStackAllOnes", 14, ~0ull, 8, "Failed reading 368 bytes from file!", -3},
        Defect{"FirstStackNegative", 14, ~1ull, 8, bad_position, -4},
        Defect{"FirstStackBeyond", 14, 1000000, 8, "Failed reading 368 bytes from file!", -3},
        Defect{"FirstStackAtFileHeader", 14, 1, 8, bad_stack, -4},
        Defect{"StackMagic", stack + 3, 'x', 1, bad_stack, -4},
        Defect{"StackMark", stack + 14, 0, 1, bad_stack, -4},
        Defect{"Rank16", stack + 20, 16, 4, bad_stack, -4},
        Defect{"RankAllOnes", stack + 20, 0xFFFFFFFF, 4, bad_stack, -4},
        Defect{"SizesOverflow", stack + 24, 0x50000000, 4, "The product exceeds the maximum size.",
               -1},
        Defect{"NameLength", stack + 336, 2147483632, 4,
               "Failed reading 2147483632 bytes from file!", -3},
        Defect{"NameLengthAllOnes", stack + 336, 0xFFFFFFFF, 4,
               "Failed reading -1 bytes from file!", -3},
        Defect{"StackDescriptionLength", stack + 340, 100000, 4,
               "Failed reading 100000 bytes from file!", -3},
        Defect{"StackDescriptionLengthAllOnes", stack + 340, 0xFFFFFFFF, 4,
               "Failed reading -1 bytes from file!", -3},
        Defect{"DataLengthBeyond", stack + 352, 1000000, 8, "Failed reading 4 bytes from file!",
               -3},
        Defect{"DataLengthNegative", stack + 352, 1ull << 63, 8, bad_position, -4},
        Defect{"DataLengthWraps", stack + 352, ~0ull - 419, 8, bad_position, -4},
        Defect{"DataLengthWrapsToTheStack", stack + 352, ~0ull - 379, 8, bad_position, -4},
        Defect{"NextBeyond", stack + 360, 1000000, 8, "Failed reading 368 bytes from file!", -3},
        Defect{"NextNegative", stack + 360, 1ull << 63, 8, bad_position, -4},
        Defect{"NextBack", stack + 360, stack, 8, bad_position, -4},
        Defect{"FooterSize0", footer, 0, 4, bad_footer, -4},
        Defect{"FooterSize3", footer, 3, 4, bad_footer, -4},
        Defect{"FooterSizeBeyond", footer, 0xFFFFFFFF, 4, "Failed reading 4 bytes from file!", -3},
        Defect{"MetadataLength", footer + 124, 2147483632, 4,
               "Failed reading 2147483632 bytes from file!", -3},
        Defect{"MetadataLengthAllOnes", footer + 124, 0xFFFFFFFF, 4,
               "Failed reading -1 bytes from file!", -3},
        Defect{"FlushCountAllOnes", footer + 1408, ~0ull, 8, "Failed reading -8 bytes from file!",
               -3},
        Defect{"FlushCountWraps", footer + 1408, 1ull << 61, 8, "Failed reading 0 bytes from file!",
               -3},
        Defect{"FlushCountBeyond", footer + 1408, 1000, 8, "Failed reading 8000 bytes from file!",
               -3},
        Defect{"RequiredVersion6", footer + 1440, 6, 4,
               "Cannot read stack with file format reader version 5. Need >= 6!", -4},
        Defect{"RequiredVersionNextToNone", footer + 1440, 0xFFFFFFFE, 4,
               "Cannot read stack with file format reader version 5. Need >= -2!", -4},
        Defect{"LabelLengthAllOnes", footer + 1444, 0xFFFFFFFF, 4,
               "Failed reading -1 bytes from file!", -3},
        Defect{"LabelLength", footer + 1444, 5000, 4, "Failed reading 5000 bytes from file!", -3}),
    [](const auto& defect) { return std::string(defect.param.name); });

TEST(ChainDamageTest, ARequiredVersionOfSixNamesBothNumbersAndKeepsTheStackInFront) {
  MemoryFile file(golden("required_version_6"));
  FileRecord record;
  EXPECT_VREL_ERROR(read_chain(file, record),
                    "Cannot read stack with file format reader version 5. Need >= 6!", -4);
  EXPECT_THAT(record.stacks, SizeIs(1));
}

TEST(ChainDamageTest, AnEmptyFileNamesTheHeader) {
  EXPECT_VREL_ERROR(read_record(""), "Failed reading 26 bytes from file!", -3);
}

TEST(ChainDamageTest, AZeroInFrontHidesSizesThatWouldOverflow) {
  std::string bytes = patched(golden("stack_version_0"), stack + 20, 3, 4);
  bytes = patched(patched(bytes, stack + 24, 0, 4), stack + 28, ~0ull, 8);
  EXPECT_EQ(read_record(bytes).stacks[0].number_of_samples, 0u);
  bytes = patched(patched(bytes, stack + 24, ~0ull, 8), stack + 32, 0, 4);
  EXPECT_VREL_ERROR(read_record(bytes), "The product exceeds the maximum size.", -1);
}

TEST(ChainDamageTest, TheLargestProductIsAccepted) {
  const std::string bytes = golden("stack_version_0");
  EXPECT_EQ(
      read_record(patched(bytes, stack + 24, 0x00000001FFFFFFFF, 8)).stacks[0].number_of_samples,
      0xFFFFFFFFu);
  EXPECT_VREL_ERROR(read_record(patched(bytes, stack + 24, 0x0000000280000000, 8)),
                    "The product exceeds the maximum size.", -1);
}

TEST(ChainDamageTest, AColumnCountThatTheFileCannotHoldTakesNoMemory) {
  // Size 0 of the first axis lets the second be anything.
  std::string bytes = patched(golden("raw"), stack + 24, 0x4000000000000000, 8);
  bytes = patched(bytes, footer + 4, 0x0000000100000000, 8);
  EXPECT_VREL_ERROR(read_record(bytes), "Failed reading 0 bytes from file!", -3);
}

// Stack headers that all point at one large text would take the square of the file's size.
TEST(ChainDamageTest, NoByteIsReadTwice) {
  constexpr std::size_t stacks = 200;
  const std::string plain = golden("raw");
  const std::string header = plain.substr(stack, 368);
  const std::size_t shared_footer = 40 + stacks * 368;
  std::string bytes = plain.substr(0, 32) + std::string(8, '\0');
  bytes = patched(bytes, 14, 40, 8);
  for (std::size_t i = 0; i < stacks; ++i) {
    const std::size_t position = 40 + i * 368;
    std::string one = patched(header, 20, 0, 4);
    one = patched(one, 336, 0, 8);
    one = patched(one, 352, shared_footer - position - 368, 8);
    bytes += patched(one, 360, i + 1 < stacks ? position + 368 : 0, 8);
  }
  std::string shared = patched(plain.substr(footer, 1444), 4, 0, 64);
  shared = patched(patched(shared, 68, 0, 56), 124, 100000, 4);
  bytes += patched(shared, 1424, 0, 8) + std::string(100000, ' ');
  MemoryFile file(bytes);
  FileRecord record;
  EXPECT_VREL_ERROR(read_chain(file, record), "Failed reading 100000 bytes from file!", -3);
  EXPECT_THAT(record.stacks, SizeIs(1));
}

// Raises nothing but a VrelError, whatever the bytes.
void read_or_refuse(const std::string& bytes) {
  try {
    read_record(bytes);
  } catch (const VrelError& error) {
    EXPECT_STRNE(error.get_msg(), "");
  }
}

TEST(ChainDamageTest, EveryGoldenFileMayBeCutAtEveryLength) {
  for (const std::string& name : golden_names()) {
    const std::string bytes = golden(name);
    for (std::size_t length = 0; length < bytes.size(); ++length) {
      SCOPED_TRACE(name + " cut at " + std::to_string(length));
      read_or_refuse(bytes.substr(0, length));
    }
  }
}

TEST(ChainDamageTest, EveryBitOfTwoGoldenFilesMayBeFlipped) {
  for (const char* name : {"raw", "footer_1500"}) {
    std::string bytes = golden(name);
    for (std::size_t bit = 0; bit < 8 * bytes.size(); ++bit) {
      SCOPED_TRACE(std::string(name) + " with bit " + std::to_string(bit) + " flipped");
      const auto flip = [&] {
        bytes[bit / 8] = static_cast<char>(bytes[bit / 8] ^ (1 << (bit % 8)));
      };
      flip();
      read_or_refuse(bytes);
      flip();
    }
  }
}

}  // namespace
