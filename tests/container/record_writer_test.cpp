#include <vrelio/container/record_writer.h>

#include <gtest/gtest.h>
#include <vrelio/container/chain.h>
#include <vrelio/container/sample_reader.h>

#include <string>

#include "support/attached_file.h"
#include "support/expect_error.h"
#include "support/golden.h"
#include "support/memory_file.h"
#include "support/read_record.h"

namespace {

using Vrel::ExponentRecord;
using Vrel::FileRecord;
using Vrel::RecordWriter;
using Vrel::SampleReader;
using Vrel::StackRecord;
using Vrel::testing::AttachedFile;
using Vrel::testing::golden;
using Vrel::testing::golden_names;
using Vrel::testing::MemoryFile;
using Vrel::testing::read_record;

std::string stored_bytes(const std::string& file, const StackRecord& stack) {
  return file.substr(stack.data_position, stack.header.data_length);
}

void copy_stack(RecordWriter& writer, const std::string& bytes, const StackRecord& stack) {
  writer.begin_stack(stack, RecordWriter::Samples::stored);
  const std::string stored = stored_bytes(bytes, stack);
  if (!stored.empty()) writer.write(stored.data(), static_cast<unsigned>(stored.size()));
  writer.commit_stack();
}

std::string copy_file(const std::string& bytes) {
  const FileRecord record = read_record(bytes);
  AttachedFile target;
  RecordWriter writer(target.file(), record);
  for (const StackRecord& stack : record.stacks) copy_stack(writer, bytes, stack);
  writer.finish(record.dictionary);
  return target.content();
}

bool can_be_read(const std::string& name) { return name != "required_version_6"; }

// A footer in full length, no not-a-number, and one dictionary behind the stacks.
bool is_written_as_ours(const std::string& name) {
  const bool is_short = name.rfind("footer_", 0) == 0;
  return can_be_read(name) && !is_short && name != "not_a_number";
}

TEST(RecordWriterTest, AFileInOurFormIsCopiedByteForByte) {
  for (const std::string& name : golden_names()) {
    if (!is_written_as_ours(name)) continue;
    EXPECT_EQ(copy_file(golden(name)), golden(name)) << name;
  }
}

TEST(RecordWriterTest, CopyingTwiceChangesNothing) {
  for (const std::string& name : golden_names()) {
    if (!can_be_read(name)) continue;
    const std::string copy = copy_file(golden(name));
    EXPECT_EQ(copy_file(copy), copy) << name;
  }
}

TEST(RecordWriterTest, AShorterFooterIsFilledUpWithItsDefaults) {
  const StackRecord before = read_record(golden("footer_1000")).stacks.at(0);
  const StackRecord after = read_record(copy_file(golden("footer_1000"))).stacks.at(0);
  EXPECT_EQ(after.footer.footer_size, 1444u);
  EXPECT_EQ(after.footer.required_reader_version, before.footer.required_reader_version);
  EXPECT_EQ(after.labels, before.labels);
  EXPECT_EQ(after.column_positions, before.column_positions);
}

StackRecord make_stack(const std::vector<std::uint32_t>& sizes) {
  StackRecord stack;
  stack.header.rank = static_cast<std::uint32_t>(sizes.size());
  std::copy(sizes.begin(), sizes.end(), stack.header.sizes.begin());
  stack.header.data_type = 1;
  stack.labels.resize(sizes.size());
  stack.column_positions.resize(sizes.size());
  stack.column_labels.resize(sizes.size());
  return stack;
}

TEST(RecordWriterTest, NumbersThatNoClassWouldKeepSurvive) {
  StackRecord stack = make_stack({2});
  stack.header.compression_level = 42;
  stack.header.has_data = 77;
  stack.header.reserved = 5;
  stack.footer.units[0].exponents[0] = ExponentRecord{4, -6};
  stack.footer.units[14].exponents[8] = ExponentRecord{1, 0};
  stack.footer.has_column_positions[0] = 9;
  stack.column_positions[0] = {1, 2};
  stack.footer.flush_block_size = 123;
  stack.footer.required_reader_version = 3;
  stack.metadata = "no xml";
  AttachedFile target;
  RecordWriter writer(target.file(), FileRecord());
  writer.begin_stack(stack, RecordWriter::Samples::stored);
  writer.write("ab", 2);
  writer.commit_stack();
  writer.finish({});
  const StackRecord copy = read_record(target.content()).stacks.at(0);
  EXPECT_EQ(copy.header.compression_level, 42);
  EXPECT_EQ(copy.header.has_data, 77u);
  EXPECT_EQ(copy.header.reserved, 5u);
  EXPECT_EQ(copy.footer.units[0].exponents[0].numerator, 4);
  EXPECT_EQ(copy.footer.units[0].exponents[0].denominator, -6);
  EXPECT_EQ(copy.footer.units[14].exponents[8].denominator, 0);
  EXPECT_EQ(copy.footer.has_column_positions[0], 9u);
  EXPECT_EQ(copy.footer.flush_block_size, 123u);
  EXPECT_EQ(copy.footer.required_reader_version, 3u);
  EXPECT_EQ(copy.metadata, "no xml");
  EXPECT_EQ(copy.stack_end, copy.footer.stack_end);
}

TEST(RecordWriterTest, FlagsSayWhatColumnsAreWrittenWhateverTheySaidBefore) {
  StackRecord stack = make_stack({2, 2});
  stack.column_positions[0] = {1, 2};
  stack.column_labels[1] = {"a", "b"};
  stack.footer.has_column_positions[1] = 1;
  stack.footer.has_column_labels[0] = 1;
  AttachedFile target;
  RecordWriter writer(target.file(), FileRecord());
  writer.begin_stack(stack, RecordWriter::Samples::plain);
  writer.write("abcd", 4);
  writer.commit_stack();
  const StackRecord read = read_record(target.content()).stacks.at(0);
  EXPECT_EQ(read.footer.has_column_positions[0], 1u);
  EXPECT_EQ(read.footer.has_column_positions[1], 0u);
  EXPECT_EQ(read.footer.has_column_labels[0], 0u);
  EXPECT_EQ(read.footer.has_column_labels[1], 1u);
  EXPECT_EQ(read.column_positions, stack.column_positions);
  EXPECT_EQ(read.column_labels, stack.column_labels);
}

class PlainSamples {
 public:
  PlainSamples(int type, int level, u64 flush_block_size) {
    for (int i = 0; i < 200000; ++i) samples_ += static_cast<char>(i % 251);
    StackRecord stack = make_stack({1000, 200});
    stack.header.compression_type = static_cast<std::uint32_t>(type);
    stack.header.compression_level = level;
    stack.flush_block_size = flush_block_size;
    stack.flush_positions = {7, 8};
    RecordWriter writer(target_.file(), FileRecord());
    writer.begin_stack(stack, RecordWriter::Samples::plain);
    writer.write(samples_.data(), 150001);
    writer.write(samples_.data() + 150001, 49999);
    writer.commit_stack();
    writer.finish({});
    stack_ = read_record(target_.content()).stacks.at(0);
  }

  const StackRecord& stack() const { return stack_; }
  const std::string& samples() const { return samples_; }

  std::string read() {
    std::string bytes(samples_.size(), ' ');
    SampleReader(target_.file(), stack_).read(0, bytes.size(), bytes.data());
    return bytes;
  }

 private:
  AttachedFile target_;
  std::string samples_;
  StackRecord stack_;
};

TEST(RecordWriterTest, PlainSamplesAreCompressedAsTheHeaderSays) {
  PlainSamples zipped(1, 6, 1000);
  EXPECT_LT(zipped.stack().header.data_length, zipped.samples().size());
  EXPECT_EQ(zipped.stack().flush_positions.size(), 200u);
  EXPECT_EQ(zipped.stack().flush_block_size, 1000u);
  EXPECT_EQ(zipped.read(), zipped.samples());
  PlainSamples raw(0, 6, 0);
  EXPECT_EQ(raw.stack().header.data_length, raw.samples().size());
  EXPECT_TRUE(raw.stack().flush_positions.empty());
  EXPECT_EQ(raw.read(), raw.samples());
}

TEST(RecordWriterTest, TheFlushBlockSizeCanBeChosen) {
  PlainSamples zipped(1, 1, RecordWriter::automatic_flush_block_size);
  EXPECT_EQ(zipped.stack().flush_block_size, 200000u);
  EXPECT_EQ(zipped.stack().flush_positions.size(), 1u);
  EXPECT_TRUE(PlainSamples(1, 1, 0).stack().flush_positions.empty());
}

TEST(RecordWriterTest, PlainSamplesThatAreMissingAreNotCommitted) {
  AttachedFile target;
  RecordWriter writer(target.file(), FileRecord());
  writer.begin_stack(make_stack({3}), RecordWriter::Samples::plain);
  writer.write("ab", 2);
  EXPECT_VREL_ERROR(writer.commit_stack(), "Not enough samples written!", -1);
  EXPECT_TRUE(read_record(target.content()).stacks.empty());
}

TEST(RecordWriterTest, AStackWithoutSamplesStaysEmpty) {
  AttachedFile target;
  RecordWriter writer(target.file(), FileRecord());
  StackRecord stack = make_stack({3});
  stack.header.data_length = 5;
  stack.flush_positions = {7, 8};
  writer.begin_stack(stack, RecordWriter::Samples::plain);
  writer.commit_stack();
  const StackRecord read = read_record(target.content()).stacks.at(0);
  EXPECT_EQ(read.header.data_length, 0u);
  EXPECT_TRUE(read.flush_positions.empty());
}

TEST(RecordWriterTest, ARecordThatDoesNotFitItsSizesIsRefusedBeforeAnythingIsWritten) {
  AttachedFile target;
  RecordWriter writer(target.file(), FileRecord());
  const std::string before = target.content();
  const auto refuse = [&](StackRecord stack, const char* message, int id) {
    EXPECT_VREL_ERROR(writer.begin_stack(stack, RecordWriter::Samples::stored), message, id);
    EXPECT_EQ(target.content(), before);
  };
  constexpr const char* unfit = "Stack record does not fit its sizes!";
  StackRecord stack = make_stack({2, 3});
  stack.labels.pop_back();
  refuse(stack, unfit, -1);
  stack = make_stack({2, 3});
  stack.column_positions[1] = {1, 2};
  refuse(stack, unfit, -1);
  stack = make_stack({2, 3});
  stack.column_labels.pop_back();
  refuse(stack, unfit, -1);
  stack = make_stack({2});
  stack.header.rank = 16;
  refuse(stack, "Stack header not in vbf format!", -4);
  stack = make_stack({2});
  stack.tags[""] = "x";
  refuse(stack, "Tag keys cannot be empty!", -1);
  refuse(make_stack({65536, 65536}), "The product exceeds the maximum size.", -1);
}

TEST(RecordWriterTest, WhatWasCommittedStaysReadableWithoutTheRest) {
  AttachedFile target;
  RecordWriter writer(target.file(), FileRecord());
  const std::string bytes = golden("raw");
  const FileRecord record = read_record(bytes);
  copy_stack(writer, bytes, record.stacks.at(0));
  writer.begin_stack(record.stacks.at(1), RecordWriter::Samples::stored);
  writer.write("x", 1);
  const FileRecord seen = read_record(target.content());
  ASSERT_EQ(seen.stacks.size(), 1u);
  EXPECT_EQ(seen.stacks[0].tags, record.stacks[0].tags);
}

TEST(ReadStackRecordTest, AStackIsReadWhereverItsLinkMayBe) {
  const std::string bytes = golden("raw");
  const FileRecord record = read_record(bytes);
  MemoryFile file(bytes);
  file.seek(record.stacks.at(1).stack_position);
  StackRecord stack;
  read_stack_record(file, stack);
  EXPECT_EQ(stack.stack_position, record.stacks[1].stack_position);
  EXPECT_EQ(stack.number_of_samples, 3u);
  EXPECT_EQ(file.tell(), record.stacks[1].stack_end);
}

TEST(ReadStackRecordTest, AfterAnErrorWhatCameBeforeIsThere) {
  const std::string bytes = golden("raw");
  const StackRecord whole = read_record(bytes).stacks.at(0);
  StackRecord stack;
  MemoryFile cut(bytes.substr(0, whole.stack_end - 2));
  cut.seek(whole.stack_position);
  EXPECT_VREL_ERROR(read_stack_record(cut, stack), "Failed reading 4 bytes from file!", -3);
  EXPECT_EQ(stack.name, whole.name);
  EXPECT_EQ(stack.labels, whole.labels);
  EXPECT_EQ(stack.metadata, whole.metadata);
  EXPECT_GT(cut.tell(), whole.data_position + whole.header.data_length + 1444);
  MemoryFile header(bytes.substr(0, whole.stack_position + 368));
  header.seek(whole.stack_position);
  EXPECT_VREL_ERROR(read_stack_record(header, stack), "Failed reading 5 bytes from file!", -3);
  EXPECT_EQ(stack.header.rank, 2u);
  EXPECT_EQ(stack.data_position, 0u);
}

TEST(ReadStackRecordTest, ALengthThatItsWriterCouldNotWriteIsTakenFromTheCaller) {
  std::string bytes = golden("raw");
  const StackRecord whole = read_record(bytes).stacks.at(0);
  const std::size_t field = whole.stack_position + Vrel::data_length_offset;
  bytes.replace(field, 8, 8, '\0');
  MemoryFile file(bytes);
  StackRecord stack;
  file.seek(whole.stack_position);
  read_stack_record(file, stack, whole.header.data_length);
  EXPECT_EQ(stack.header.data_length, whole.header.data_length);
  EXPECT_EQ(stack.tags, whole.tags);
  EXPECT_EQ(file.tell(), whole.stack_end);
  file.seek(whole.stack_position);
  EXPECT_THROW(read_stack_record(file, stack), VrelError);
}

TEST(ReadStackRecordTest, ALengthThatWasWrittenIsNotOverridden) {
  const std::string bytes = golden("raw");
  const StackRecord whole = read_record(bytes).stacks.at(0);
  MemoryFile file(bytes);
  StackRecord stack;
  file.seek(whole.stack_position);
  read_stack_record(file, stack, 1);
  EXPECT_EQ(stack.header.data_length, whole.header.data_length);
}

TEST(RequiredReaderTest, OnlyAVersionAboveOursKeepsUsFromReading) {
  Vrel::StackFooter footer;
  EXPECT_FALSE(footer.needs_newer_reader());
  footer.required_reader_version = Vrel::newest_stack_version;
  EXPECT_FALSE(footer.needs_newer_reader());
  footer.required_reader_version = Vrel::newest_stack_version + 1;
  EXPECT_TRUE(footer.needs_newer_reader());
}

TEST(ReadFileStartTest, HeaderAndDictionaryAreReadWithoutTheStacks) {
  std::string bytes = golden("raw");
  bytes[read_record(bytes).stacks.at(0).stack_position] = 'x';
  MemoryFile file(bytes);
  FileRecord record;
  read_file_start(file, record);
  EXPECT_EQ(record.description, "golden");
  EXPECT_EQ(record.dictionary.at("ome_xml"), "<OME/>");
  EXPECT_TRUE(record.stacks.empty());
  EXPECT_EQ(file.tell(), record.header_end);
}

}  // namespace
