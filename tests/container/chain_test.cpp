// What a reader gets from files that it has to accept.
#include <vrelio/container/chain.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "support/golden.h"
#include "support/memory_file.h"
#include "support/read_record.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;
using Vrel::Dictionary;
using Vrel::FileRecord;
using Vrel::StackRecord;
using Vrel::testing::golden;
using Vrel::testing::MemoryFile;
using Vrel::testing::read_record;

FileRecord read_golden(const std::string& name) { return read_record(golden(name)); }

// Golden bytes with other numbers in some places.
std::string with_number(std::string bytes, std::size_t position, u64 value, std::size_t size) {
  for (std::size_t i = 0; i < size; ++i) {
    bytes[position + i] = static_cast<char>(value >> (8 * i));
  }
  return bytes;
}

// In the golden files with the description "golden" the first stack stands here.
constexpr std::size_t first_stack = 40;
// The footer of the golden stack "probe", where it is raw.
constexpr std::size_t probe_footer = first_stack + 368 + 5 + 7 + 48;

bool is_neutral(const Vrel::UnitRecord& unit) {
  for (const auto& exponent : unit.exponents) {
    if (exponent.numerator != 0 || exponent.denominator != 1) return false;
  }
  return unit.factor == 1.0;
}

// What all sections of the golden stack "probe" hold.
void expect_full_sections(const StackRecord& stack) {
  EXPECT_THAT(stack.labels, ElementsAre("X", "Zeit"));
  EXPECT_THAT(stack.column_positions,
              ElementsAre(ElementsAre(0.0, 0.5, 1.5, 2.0, 4.0, 8.0), IsEmpty()));
  EXPECT_THAT(stack.column_labels, ElementsAre(IsEmpty(), ElementsAre("a", "", "ccc", "dd")));
  EXPECT_EQ(stack.metadata, "<root/>");
  EXPECT_THAT(stack.tags, ElementsAre(Pair("alpha", "1"), Pair("empty", ""),
                                      Pair("\xff"
                                           "byte",
                                           "some words")));
}

TEST(ChainTest, AFileWithoutStacksHasItsDictionary) {
  const std::string bytes = golden("no_stack");
  EXPECT_EQ(bytes.size(), 26 + 6 + 8 + (4 + 7) + (4 + 6) + 4u);
  const FileRecord file = read_record(bytes);
  EXPECT_EQ(file.header.format_version, 2u);
  EXPECT_EQ(file.header.first_stack, 0u);
  EXPECT_EQ(file.description, "golden");
  EXPECT_TRUE(file.has_dictionary);
  EXPECT_THAT(file.dictionary, ElementsAre(Pair("ome_xml", "<OME/>")));
  EXPECT_EQ(file.dictionary_field_position, 32u);
  EXPECT_EQ(file.dictionary_position, 40u);
  EXPECT_EQ(file.dictionary_end, bytes.size());
  EXPECT_THAT(file.stacks, IsEmpty());
}

TEST(ChainTest, AFileOfVersionOneHasNoDictionary) {
  EXPECT_EQ(golden("no_stack_version_1").size(), 32u);
  const FileRecord file = read_golden("no_stack_version_1");
  EXPECT_EQ(file.header.format_version, 1u);
  EXPECT_FALSE(file.has_dictionary);
  EXPECT_EQ(file.dictionary_field_position, 0u);
  EXPECT_EQ(file.dictionary_end, 0u);
}

TEST(ChainTest, InVersionOneTheChainStandsDirectlyBehindTheDescription) {
  const FileRecord file = read_golden("version_1");
  ASSERT_THAT(file.stacks, SizeIs(2));
  EXPECT_EQ(file.stacks[0].stack_position, 32u);
  expect_full_sections(file.stacks[0]);
}

TEST(ChainTest, EveryFieldOfARawStackIsRead) {
  const FileRecord file = read_golden("raw");
  ASSERT_THAT(file.stacks, SizeIs(2));
  const StackRecord& stack = file.stacks[0];
  EXPECT_EQ(stack.name, "probe");
  EXPECT_EQ(stack.description, "a stack");
  EXPECT_EQ(stack.header.format_version, 5u);
  EXPECT_EQ(stack.header.rank, 2u);
  EXPECT_EQ(stack.header.sizes[0], 6u);
  EXPECT_EQ(stack.header.sizes[1], 4u);
  EXPECT_EQ(stack.number_of_samples, 24u);
  EXPECT_EQ(stack.header.lengths[0], 6e-6);
  EXPECT_EQ(stack.header.lengths[1], 2.5);
  EXPECT_EQ(stack.header.offsets[1], -1.25);
  EXPECT_EQ(stack.header.data_type, 4);
  EXPECT_EQ(stack.header.compression_type, 0u);
  EXPECT_EQ(stack.header.compression_level, 1);
  EXPECT_EQ(stack.header.data_length, 48u);
  EXPECT_EQ(stack.header.has_data, 1u);
  EXPECT_EQ(stack.footer.data_unit.exponents[2].numerator, -1);
  EXPECT_EQ(stack.footer.data_unit.exponents[2].denominator, 2);
  EXPECT_EQ(stack.footer.data_unit.factor, 0.5);
  EXPECT_EQ(stack.footer.units[0].exponents[0].numerator, 1);
  EXPECT_EQ(stack.footer.units[0].factor, 1e-6);
  EXPECT_TRUE(is_neutral(stack.footer.units[1]));
  EXPECT_EQ(stack.footer.required_reader_version, 0u);
  EXPECT_EQ(stack.stack_position, 40u);
  EXPECT_EQ(stack.data_position, 40u + 368 + 5 + 7);
  EXPECT_EQ(stack.stack_end, stack.header.next_stack);
  EXPECT_EQ(stack.footer.stack_end, stack.stack_end);
  EXPECT_EQ(file.stacks[1].stack_position, stack.stack_end);
  EXPECT_EQ(file.stacks[1].header.next_stack, 0u);
  expect_full_sections(stack);
}

TEST(ChainTest, AZippedStackBringsItsFlushTable) {
  const StackRecord stack = read_golden("zipped").stacks[0];
  EXPECT_EQ(stack.header.compression_type, 1u);
  EXPECT_EQ(stack.header.compression_level, 6);
  EXPECT_THAT(stack.flush_positions, ElementsAre(28, 54, 80));
  EXPECT_EQ(stack.flush_block_size, 16u);
  expect_full_sections(stack);
}

TEST(ChainTest, WithoutFlushPointsThereIsNoBlockSizeWhateverTheFooterSays) {
  std::string bytes = golden("raw");
  const std::size_t field = read_record(bytes).stacks[0].data_position + 48 + 1416;
  bytes[field] = 100;
  const StackRecord stack = read_record(bytes).stacks[0];
  EXPECT_EQ(stack.footer.flush_block_size, 100u);
  EXPECT_EQ(stack.flush_block_size, 0u);
}

TEST(ChainTest, AStackOfRankZeroHasOneSampleAndNoSectionsPerDimension) {
  const StackRecord stack = read_golden("rank_0").stacks[0];
  EXPECT_EQ(stack.header.rank, 0u);
  EXPECT_EQ(stack.number_of_samples, 1u);
  EXPECT_THAT(stack.labels, IsEmpty());
  EXPECT_THAT(stack.column_positions, IsEmpty());
  EXPECT_THAT(stack.column_labels, IsEmpty());
}

TEST(ChainTest, FifteenDimensionsAreRead) {
  const StackRecord stack = read_golden("rank_15").stacks[0];
  EXPECT_EQ(stack.header.rank, 15u);
  EXPECT_EQ(stack.number_of_samples, 2u);
  EXPECT_THAT(stack.labels, SizeIs(15));
}

TEST(ChainTest, DataLengthZeroIsAnEmptyStackAlsoWithCompression) {
  const StackRecord stack = read_golden("empty_zipped").stacks[0];
  EXPECT_EQ(stack.header.compression_type, 1u);
  EXPECT_EQ(stack.header.data_length, 0u);
  EXPECT_EQ(stack.number_of_samples, 3u);
}

TEST(ChainTest, OnlyALengthThatIsNotANumberBecomesOne) {
  const StackRecord stack = read_golden("not_a_number").stacks[0];
  EXPECT_EQ(stack.header.lengths[0], 1.0);
  EXPECT_EQ(stack.header.lengths[1], std::numeric_limits<double>::infinity());
  EXPECT_TRUE(std::isnan(stack.header.offsets[0]));
}

TEST(ChainTest, NotANumberIsEveryOneOfTheFirstRankLengths) {
  constexpr std::size_t lengths = first_stack + 84;
  for (const u64 bits : {0x7FF0000000000001U, 0x7FF8000000000000U, 0xFFF0000000000001U,
                         0xFFFFFFFFFFFFFFFFU, 0x7FF0000080000000U}) {
    std::string bytes = with_number(golden("raw"), lengths + 8, bits, 8);
    bytes = with_number(bytes, lengths + 16, bits, 8);
    const StackRecord stack = read_record(bytes).stacks[0];
    EXPECT_EQ(stack.header.lengths[1], 1.0) << std::hex << bits;
    EXPECT_TRUE(std::isnan(stack.header.lengths[2])) << std::hex << bits;
  }
  const std::string bytes = with_number(golden("raw"), lengths, 0xFFF0000000000000, 8);
  EXPECT_EQ(read_record(bytes).stacks[0].header.lengths[0],
            -std::numeric_limits<double>::infinity());
}

TEST(ChainTest, AFileOfALaterVersionIsReadLikeTheNewestAndOneOfVersionZeroLikeTheFirst) {
  const FileRecord later = read_record(with_number(golden("raw"), 10, 3, 4));
  EXPECT_EQ(later.header.format_version, 3u);
  EXPECT_TRUE(later.has_dictionary);
  EXPECT_THAT(later.stacks, SizeIs(2));
  const FileRecord earlier = read_record(with_number(golden("version_1"), 10, 0, 4));
  EXPECT_FALSE(earlier.has_dictionary);
  EXPECT_THAT(earlier.stacks, SizeIs(2));
}

TEST(ChainTest, EveryStackVersionButZeroHasAFooter) {
  for (const u64 version : {1U, 2U, 3U, 4U, 5U, 6U, 0xFFFFFFFFU}) {
    expect_full_sections(
        read_record(with_number(golden("raw"), first_stack + 16, version, 4)).stacks[0]);
  }
}

TEST(ChainTest, StackVersionZeroEndsBehindItsData) {
  const FileRecord file = read_golden("stack_version_0");
  ASSERT_THAT(file.stacks, SizeIs(2));
  const StackRecord& stack = file.stacks[0];
  EXPECT_EQ(stack.stack_end, stack.data_position + 48);
  EXPECT_THAT(stack.labels, ElementsAre("", ""));
  EXPECT_TRUE(is_neutral(stack.footer.data_unit));
  EXPECT_TRUE(is_neutral(stack.footer.units[0]));
  EXPECT_THAT(stack.column_positions, ElementsAre(IsEmpty(), IsEmpty()));
  EXPECT_EQ(stack.metadata, "");
  EXPECT_THAT(stack.tags, IsEmpty());
}

TEST(ChainTest, StackVersionsTwoAndThreeHaveTheirFooters) {
  for (const char* name : {"stack_version_2", "stack_version_3"})
    expect_full_sections(read_golden(name).stacks[0]);
}

TEST(ChainTest, AShortFooterLeavesTheRestAtItsDefaults) {
  const StackRecord stack = read_golden("footer_1000").stacks[0];
  EXPECT_EQ(stack.footer.units[0].factor, 1e-6);
  EXPECT_TRUE(is_neutral(stack.footer.units[14]));
  EXPECT_EQ(stack.footer.required_reader_version, 0xFFFFFFFFu);
  EXPECT_EQ(stack.metadata, "<root/>");
  EXPECT_THAT(stack.tags, IsEmpty());
  EXPECT_EQ(stack.footer.stack_end, 0u);
  EXPECT_EQ(stack.stack_end, golden("footer_1000").size() - (4 + 7 + 4 + 6 + 4));
}

TEST(ChainTest, AFooterThatEndsInsideAFieldOverlaysItsDefaultBytes) {
  const StackRecord stack = read_golden("footer_1002").stacks[0];
  EXPECT_EQ(stack.footer.units[8].factor, 1e-6);
  EXPECT_EQ(stack.footer.units[9].exponents[0].numerator, 1);
  // The two low bytes of 1e-6 in front of the six high bytes of 1.0.
  EXPECT_EQ(stack.footer.units[9].factor, 1.0 + 0xED8D * std::numeric_limits<double>::epsilon());
  EXPECT_TRUE(is_neutral(stack.footer.units[10]));
}

TEST(ChainTest, AFooterOf64BytesStillBringsColumnPositions) {
  const FileRecord file = read_golden("footer_64");
  ASSERT_THAT(file.stacks, SizeIs(2));
  EXPECT_THAT(file.stacks[0].column_positions[0], ElementsAre(0.0, 0.5, 1.5, 2.0, 4.0, 8.0));
  EXPECT_THAT(file.stacks[0].column_labels[1], IsEmpty());
  EXPECT_THAT(file.stacks[0].labels, ElementsAre("X", "Zeit"));
}

TEST(ChainTest, AFooterOfItsSizeAloneLeavesEverythingAtItsDefaults) {
  std::string bytes = with_number(golden("footer_64"), probe_footer, 4, 4);
  // The labels come at once, and what stood in front of them is dead.
  const std::string labels = bytes.substr(probe_footer + 64, 5 + 8);
  bytes.replace(probe_footer + 4, labels.size(), labels);
  const FileRecord file = read_record(bytes);
  ASSERT_THAT(file.stacks, SizeIs(2));
  EXPECT_THAT(file.stacks[0].labels, ElementsAre("X", "Zeit"));
  EXPECT_THAT(file.stacks[0].column_positions, ElementsAre(IsEmpty(), IsEmpty()));
  EXPECT_TRUE(is_neutral(file.stacks[0].footer.data_unit));
  EXPECT_EQ(file.stacks[0].footer.required_reader_version, 0xFFFFFFFFu);
  EXPECT_EQ(file.stacks[0].stack_end, probe_footer + 4 + labels.size());
}

TEST(ChainTest, AnyNumberButZeroSaysThatColumnsAreStored) {
  for (const u64 flag : {2U, 0x100U, 0x80000000U, 0xFFFFFFFFU}) {
    std::string bytes = with_number(golden("raw"), probe_footer + 4, flag, 4);
    bytes = with_number(bytes, probe_footer + 64 + 4, flag, 4);
    expect_full_sections(read_record(bytes).stacks[0]);
  }
}

TEST(ChainTest, OfADimensionOfSizeZeroNoColumnsStandInTheFile) {
  std::string bytes = with_number(golden("empty_zipped"), first_stack + 24, 0, 4);
  bytes = with_number(bytes, first_stack + 368 + 4, 1, 4);
  bytes = with_number(bytes, first_stack + 368 + 64, 1, 4);
  const StackRecord stack = read_record(bytes).stacks[0];
  EXPECT_EQ(stack.footer.has_column_positions[0], 1u);
  EXPECT_EQ(stack.footer.has_column_labels[0], 1u);
  EXPECT_THAT(stack.column_positions, ElementsAre(IsEmpty()));
  EXPECT_THAT(stack.column_labels, ElementsAre(IsEmpty()));
  EXPECT_EQ(stack.footer.stack_end, first_stack + 368 + 1444 + 4 + 4);
}

TEST(ChainTest, TagsEndWithTheirEmptyKeyWhateverTheirSizeSays) {
  const StackRecord whole = read_golden("raw").stacks[0];
  for (const u64 size : {u64{1}, u64{4}, u64{1} << 40, ~u64{0}}) {
    const std::string bytes = with_number(golden("raw"), probe_footer + 1424, size, 8);
    EXPECT_EQ(read_record(bytes).stacks[0].tags, whole.tags);
  }
  const std::string bytes = with_number(golden("raw"), probe_footer + 1424, 0, 8);
  EXPECT_THAT(read_record(bytes).stacks[0].tags, IsEmpty());
}

TEST(ChainTest, TheStackEndThatIsStoredIsTaken) {
  for (const u64 end : {u64{1}, u64{123456789}, u64{1} << 63, ~u64{0}}) {
    const std::string bytes = with_number(golden("raw"), probe_footer + 1432, end, 8);
    EXPECT_EQ(read_record(bytes).stacks[0].stack_end, end);
  }
}

TEST(ChainTest, ALongFooterIsSkippedToItsEnd) {
  const StackRecord stack = read_golden("footer_1500").stacks[0];
  EXPECT_EQ(stack.footer.footer_size, 1500u);
  EXPECT_THAT(stack.flush_positions, SizeIs(3));
  expect_full_sections(stack);
}

TEST(ChainTest, ARequiredVersionUpToOurOwnPasses) {
  EXPECT_EQ(read_golden("required_version_1").stacks[0].footer.required_reader_version, 1u);
  for (const u64 version : {0U, 5U, 0xFFFFFFFFU}) {
    const std::string bytes = with_number(golden("raw"), probe_footer + 1440, version, 4);
    EXPECT_EQ(read_record(bytes).stacks[0].footer.required_reader_version, version);
  }
}

TEST(ChainTest, AFirstPositionOfZeroEndsTheChainWhateverFollows) {
  std::string bytes = golden("raw");
  bytes.replace(14, 8, 8, '\0');
  EXPECT_THAT(read_record(bytes).stacks, IsEmpty());
}

TEST(ChainTest, TheFileStandsBehindItsHeaderAfterwards) {
  MemoryFile file(golden("raw"));
  FileRecord record;
  read_chain(file, record);
  EXPECT_EQ(file.tell(), 40u);
  EXPECT_EQ(record.header_end, 40u);
}

TEST(ChainTest, AFileMayStandFurtherOnInAStream) {
  MemoryFile file("in front" + golden("no_stack_version_1"));
  file.seek(8);
  FileRecord record;
  read_chain(file, record);
  EXPECT_EQ(record.file_position, 8u);
  EXPECT_EQ(record.header_end, 40u);
  EXPECT_EQ(record.description, "golden");
}

TEST(ChainTest, ARecordIsFilledAnew) {
  MemoryFile file(golden("raw"));
  FileRecord record;
  read_chain(file, record);
  file.seek(0);
  read_chain(file, record);
  EXPECT_THAT(record.stacks, SizeIs(2));
}

TEST(ChainTest, WhatFollowsTheEmptyKeyOfTheDictionaryIsNotLookedAt) {
  const FileRecord file = read_record(golden("no_stack") + std::string("\1\0\0\0k\0\0\0\0", 9));
  EXPECT_THAT(file.dictionary, ElementsAre(Pair("ome_xml", "<OME/>")));
  EXPECT_EQ(file.dictionary_end, golden("no_stack").size());
}

// The dictionary is what a killed writer has not written yet.
class ChainDictionaryTest : public testing::Test {
 protected:
  static std::string with_position(u64 position) {
    std::string bytes = golden("raw");
    for (std::size_t i = 0; i < 8; ++i) bytes[32 + i] = static_cast<char>(position >> (8 * i));
    return bytes;
  }

  static void expect_stacks_without_dictionary(const std::string& bytes) {
    const FileRecord file = read_record(bytes);
    EXPECT_FALSE(file.has_dictionary);
    EXPECT_THAT(file.dictionary, IsEmpty());
    EXPECT_EQ(file.dictionary_end, 0u);
    EXPECT_THAT(file.stacks, SizeIs(2));
  }
};

TEST_F(ChainDictionaryTest, APositionOutsideTheFileOrItsContentCountsAsNone) {
  const u64 size = golden("raw").size();
  for (const u64 position : {u64{0}, u64{1}, u64{39}, size, size + 1, u64{1} << 63, ~u64{0}}) {
    expect_stacks_without_dictionary(with_position(position));
  }
}

TEST_F(ChainDictionaryTest, OneInsideTheHeaderIsNone) {
  std::string bytes = golden("no_stack");
  // Four zero bytes of the description would pass for an empty dictionary.
  bytes.replace(26, 6, 6, '\0');
  bytes[32] = 26;
  EXPECT_FALSE(read_record(bytes).has_dictionary);
}

TEST_F(ChainDictionaryTest, APositionAmongTheStacksDoesNotKeepThemFromBeingRead) {
  for (u64 position = 40; position < 3000; position += 7) {
    EXPECT_THAT(read_record(with_position(position)).stacks, SizeIs(2)) << position;
  }
}

TEST_F(ChainDictionaryTest, OneThatTheFileCutsOffCountsAsNone) {
  const std::string bytes = golden("raw");
  for (std::size_t missing = 1; missing < 25; ++missing) {
    expect_stacks_without_dictionary(bytes.substr(0, bytes.size() - missing));
  }
}

}  // namespace
