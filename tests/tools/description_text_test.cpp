#include "lib/description_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Vrel::tool {
namespace {

using testing::HasSubstr;

StackRecord two_axes() {
  StackRecord stack;
  stack.name = "probe";
  stack.description = "a stack";
  stack.header.rank = 2;
  stack.header.data_type = 0x40000008;
  stack.header.sizes = {6, 4};
  stack.header.lengths = {6, 2.5};
  stack.header.offsets = {0, -1.25};
  stack.header.compression_type = 1;
  stack.header.compression_level = 6;
  stack.header.data_length = 74;
  stack.labels = {"x", "yy"};
  stack.column_positions.resize(2);
  stack.column_labels.resize(2);
  stack.footer.units[0].factor = 1e-6;
  stack.footer.units[0].exponents[0] = {1, 1};
  stack.footer.has_column_positions[0] = 1;
  stack.footer.has_column_labels[1] = 1;
  stack.flush_positions = {24, 46, 68};
  stack.flush_block_size = 16;
  stack.stack_position = 37;
  stack.data_position = 417;
  stack.stack_end = 2577;
  stack.metadata = "<root/>";
  stack.tags = {{"alpha", "1"}};
  return stack;
}

std::string text_of(const StackRecord& stack) {
  FileRecord file;
  file.stacks.push_back(stack);
  return to_text("name", file);
}

TEST(DescriptionTextTest, AFileIsToldInFull) {
  FileRecord file;
  file.description = "corpus file";
  file.dictionary = {{"ome_xml", "<a/>"}};
  file.stacks.push_back(two_axes());
  EXPECT_EQ(to_text("folder/name.vbf", file),
            R"(folder/name.vbf
  description     "corpus file"
  format version  2
  dictionary      1
    "ome_xml", 4 bytes
  stacks          1

  stack 0: "probe"
    description     "a stack"
    format version  5
    type            cplx_int16
    sizes           6 x 4
    axis 0          "x", size 6, length 6, offset 0, unit µm, a position per column
    axis 1          "yy", size 4, length 2.5, offset -1.25, unit 1, a label per column
    sample unit     1
    compression     zlib, level 6
    flush points    3, one every 16 bytes of samples
    data            74 bytes
    positions       stack 37, data 417, end 2577, next 0
    metadata        7 bytes
    tags            1
      "alpha" = "1"
)");
}

TEST(DescriptionTextTest, WhatIsMissingIsSaid) {
  StackRecord stack;
  stack.header.data_type = 64;
  const std::string text = text_of(stack);
  EXPECT_THAT(text, HasSubstr("  sizes           none, one sample\n"));
  EXPECT_THAT(text, HasSubstr("  compression     none\n"));
  EXPECT_THAT(text, HasSubstr("  flush points    none\n"));
  EXPECT_THAT(text, HasSubstr("  data            none, reads as zeros\n"));
}

TEST(DescriptionTextTest, ATypeWithoutNameShowsItsNumber) {
  StackRecord stack;
  for (const int id : {1024, 12345, 0x40004000, -2147483647 - 1}) {
    stack.header.data_type = id;
    EXPECT_THAT(text_of(stack), HasSubstr("  type            id " + std::to_string(id) + "\n"));
  }
}

TEST(DescriptionTextTest, AnUnknownCompressionShowsItsNumber) {
  StackRecord stack;
  stack.header.compression_type = 2;
  EXPECT_THAT(text_of(stack), HasSubstr("unknown type 2, level 1\n"));
}

TEST(DescriptionTextTest, AHostileFileCannotControlTheTerminal) {
  StackRecord stack = two_axes();
  const std::string hostile = "\x1B]0;gone\x07\n\x9B";
  stack.name = stack.description = stack.labels[0] = hostile;
  stack.tags = {{hostile, hostile}};
  FileRecord file;
  file.description = hostile;
  file.dictionary = {{hostile, hostile}};
  file.stacks.push_back(stack);
  const std::string text = to_text("a\x1B[31m", file);
  EXPECT_EQ(text.find('\x1B'), std::string::npos);
  EXPECT_EQ(text.find('\x07'), std::string::npos);
  EXPECT_EQ(text.find('\x9B'), std::string::npos);
  EXPECT_THAT(text, HasSubstr("\\x1B]0;gone\\x07\\n"));
}

}  // namespace
}  // namespace Vrel::tool
