// The codec against golden bytes, field by field, and there and back.
#include "container/format_internal.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vrelio/container/chain.h>

#include <cstring>
#include <string>

#include "support/expect_error.h"
#include "support/golden.h"
#include "support/memory_file.h"
#include "support/temporary_file.h"
#include "support/vbf_writer.h"

namespace {

using namespace Vrel::detail;
using Vrel::data_length_offset;
using Vrel::Dictionary;
using Vrel::encoded_size;
using Vrel::FileHeader;
using Vrel::first_stack_offset;
using Vrel::next_stack_offset;
using Vrel::stack_footer_size;
using Vrel::StackFooter;
using Vrel::StackHeader;
using Vrel::testing::golden;
using Vrel::testing::MemoryFile;
using Vrel::testing::StackToWrite;
using Vrel::testing::TemporaryFile;

template <class Bytes>
std::string text_of(const Bytes& bytes) {
  return {bytes.begin(), bytes.end()};
}

// The stacks of the golden file "raw", as a program that writes them holds them.
StackToWrite full_stack() {
  StackToWrite stack;
  stack.record = Vrel::testing::make_stack_record(4, {6, 4});
  stack.record.name = "probe";
  stack.record.description = "a stack";
  stack.record.header.lengths = {6e-6, 2.5};
  stack.record.header.offsets = {0.0, -1.25};
  stack.record.labels = {"X", "Zeit"};
  stack.record.column_positions[0] = {0.0, 0.5, 1.5, 2.0, 4.0, 8.0};
  stack.record.column_labels[1] = {"a", "", "ccc", "dd"};
  stack.record.metadata = "<root/>";
  stack.record.footer.data_unit.exponents[2] = {-1, 2};
  stack.record.footer.data_unit.factor = 0.5;
  stack.record.footer.units[0].exponents[0] = {1, 1};
  stack.record.footer.units[0].factor = 1e-6;
  stack.record.tags = {{"alpha", "1"},
                       {"empty", ""},
                       {"\xff"
                        "byte",
                        "some words"}};
  for (char sample = 1; sample < 49; ++sample) stack.samples += sample;
  return stack;
}

StackToWrite plain_stack() {
  StackToWrite stack;
  stack.record = Vrel::testing::make_stack_record(1, {3});
  stack.samples = "\x07\x08\x09";
  return stack;
}

std::string written(const std::vector<StackToWrite>& stacks, std::uint32_t version) {
  TemporaryFile place;
  VFile file(place.name(), VFile::mode_create);
  Vrel::testing::write_vbf(file, "golden", stacks, {{"ome_xml", "<OME/>"}}, version);
  return place.content();
}

TEST(FormatTest, AWholeFileIsWrittenByteForByte) {
  EXPECT_EQ(written({full_stack(), plain_stack()}, 2), golden("raw"));
}

TEST(FormatTest, AFileOfVersionOneIsWrittenByteForByte) {
  EXPECT_EQ(written({full_stack(), plain_stack()}, 1), golden("version_1"));
}

TEST(FormatTest, AFileWithoutStacksIsWrittenByteForByte) {
  EXPECT_EQ(written({}, 2), golden("no_stack"));
  EXPECT_EQ(written({}, 1), golden("no_stack_version_1"));
}

TEST(FormatTest, RecordsHaveTheirSizes) {
  EXPECT_EQ(encode(FileHeader()).size(), 26u);
  EXPECT_EQ(encode(StackHeader()).size(), 368u);
  EXPECT_EQ(encode(StackFooter()).size(), 1444u);
}

TEST(FormatTest, RecordsComeBackFromTheirBytes) {
  const std::string bytes = golden("zipped");
  StackHeaderBytes header_bytes;
  std::memcpy(header_bytes.data(), bytes.data() + 40, header_bytes.size());
  StackHeader header;
  ASSERT_TRUE(decode(header_bytes, header));
  EXPECT_EQ(text_of(encode(header)), text_of(header_bytes));
  StackFooterBytes footer_bytes;
  std::memcpy(footer_bytes.data(), bytes.data() + 420 + header.data_length, footer_bytes.size());
  StackFooter footer;
  decode(footer_bytes, footer);
  EXPECT_EQ(text_of(encode(footer)), text_of(footer_bytes));
}

// Each byte of a record belongs to one field, and none is left out.
TEST(FormatTest, EveryByteOfEveryRecordGoesThereAndBack) {
  StackHeaderBytes header_bytes = encode(StackHeader());
  for (std::size_t i = 16; i < header_bytes.size(); ++i)
    header_bytes[i] = static_cast<unsigned char>(i * 7 + 1);
  StackHeader header;
  ASSERT_TRUE(decode(header_bytes, header));
  EXPECT_EQ(text_of(encode(header)), text_of(header_bytes));
  StackFooterBytes footer_bytes;
  for (std::size_t i = 0; i < footer_bytes.size(); ++i)
    footer_bytes[i] = static_cast<unsigned char>(i * 5 + 3);
  StackFooter footer;
  decode(footer_bytes, footer);
  EXPECT_EQ(text_of(encode(footer)), text_of(footer_bytes));
  FileHeaderBytes file_bytes = encode(FileHeader());
  for (std::size_t i = 10; i < file_bytes.size(); ++i)
    file_bytes[i] = static_cast<unsigned char>(i);
  FileHeader file;
  ASSERT_TRUE(decode(file_bytes, file));
  EXPECT_EQ(text_of(encode(file)), text_of(file_bytes));
}

TEST(FormatTest, AHeaderWithAnotherMagicOrMarkIsNone) {
  for (std::size_t i = 0; i < 16; ++i) {
    StackHeaderBytes bytes = encode(StackHeader());
    bytes[i] ^= 1;
    StackHeader header;
    header.rank = 7;
    EXPECT_FALSE(decode(bytes, header)) << i;
    EXPECT_EQ(header.rank, 7u);
  }
  for (std::size_t i = 0; i < 10; ++i) {
    FileHeaderBytes bytes = encode(FileHeader());
    bytes[i] ^= 1;
    FileHeader header;
    EXPECT_FALSE(decode(bytes, header)) << i;
  }
}

TEST(FormatTest, FieldsThatAreCorrectedLaterStandWhereTheirOffsetsSay) {
  FileHeader file;
  file.first_stack = 0xAB;
  EXPECT_EQ(encode(file)[first_stack_offset], 0xAB);
  StackHeader header;
  header.sizes[0] = 0x11;
  header.data_length = 0x22;
  header.next_stack = 0x33;
  EXPECT_EQ(encode(header)[sizes_offset], 0x11);
  EXPECT_EQ(encode(header)[data_length_offset], 0x22);
  EXPECT_EQ(encode(header)[next_stack_offset], 0x33);
  StackFooter footer;
  footer.stack_end = 0x44;
  EXPECT_EQ(encode(footer)[stack_end_offset], 0x44);
}

TEST(FormatTest, ALengthThatItsFieldCannotHoldIsRefused) {
  EXPECT_EQ(length_field(0), 0u);
  EXPECT_EQ(length_field(0xFFFFFFFE), 0xFFFFFFFEu);
  for (const std::size_t length :
       {std::size_t{0xFFFFFFFF}, std::size_t{1} << 32, ~std::size_t{0}}) {
    EXPECT_VREL_ERROR(length_field(length), "String too long!", -1);
  }
}

TEST(FormatTest, AnEmptyDictionaryIsFourZeroBytes) {
  MemoryFile file;
  write_dictionary(file, {});
  EXPECT_EQ(file.bytes(), std::string(4, '\0'));
  EXPECT_EQ(encoded_size({}), 4u);
}

TEST(FormatTest, TheSizeOfADictionaryIsThatOfItsBytes) {
  const Dictionary dictionary = {{"b", ""}, {"a", "some words"}, {"\xff", std::string(300, 'x')}};
  MemoryFile file;
  write_dictionary(file, dictionary);
  EXPECT_EQ(encoded_size(dictionary), file.bytes().size());
  EXPECT_EQ(file.bytes().substr(0, 5), std::string("\x01\0\0\0a", 5));
}

TEST(FormatTest, AnEmptyKeyIsRefusedBeforeAnythingIsWritten) {
  MemoryFile file;
  EXPECT_VREL_ERROR(write_dictionary(file, {{"", "x"}, {"a", "b"}}), "Tag keys cannot be empty!",
                    -1);
  StackToWrite stack = full_stack();
  stack.record.tags[""] = "x";
  EXPECT_VREL_ERROR(write_sections(file, stack.record), "Tag keys cannot be empty!", -1);
  EXPECT_EQ(file.bytes(), "");
}

TEST(FormatTest, AFooterCountsWhatItsSectionsHold) {
  StackToWrite stack = full_stack();
  stack.record.flush_positions = {24, 46};
  stack.record.flush_block_size = 16;
  const StackFooter footer = make_footer(stack.record);
  EXPECT_EQ(footer.has_column_positions[0], 1u);
  EXPECT_EQ(footer.has_column_positions[1], 0u);
  EXPECT_EQ(footer.has_column_labels[0], 0u);
  EXPECT_EQ(footer.has_column_labels[1], 1u);
  EXPECT_EQ(footer.metadata_length, 7u);
  EXPECT_EQ(footer.flush_point_count, 2u);
  EXPECT_EQ(footer.flush_block_size, 16u);
  EXPECT_EQ(footer.tag_block_size, encoded_size(stack.record.tags));
  EXPECT_EQ(footer.stack_end, 0u);
  EXPECT_EQ(footer.required_reader_version, 0u);
}

TEST(FormatTest, ATableOfManyNumbersIsWrittenWhole) {
  StackToWrite stack = plain_stack();
  stack.record.header.sizes[0] = 2500;
  for (int i = 0; i < 2500; ++i) stack.record.column_positions[0].push_back(i * 0.5);
  MemoryFile file;
  write_sections(file, stack.record);
  EXPECT_EQ(file.bytes().size(), 4u + 2500 * 8 + 4);
}

}  // namespace
