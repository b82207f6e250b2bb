// The text of a position, and what a file with many stacks makes of it. Whole files: tags_test.cpp.
#include "container/stack_metadata_internal.h"

#include <gtest/gtest.h>
#include <vrelio/container/bf_file.h>
#include <vrelio/container/stack_metadata.h>

#include <cerrno>
#include <string>
#include <vector>

#include "support/attached_file.h"
#include "support/expect_error.h"
#include "support/system_fault.h"
#include "support/vbf_writer.h"

namespace {

using namespace Vrel::testing;
using Vrel::detail::export_metadata;
using Vrel::detail::import_metadata;

constexpr int uint8 = 1;
constexpr const char* misfit = "Invalid metadata found!\nInvalid global stack position!";

std::string metadata_of_rank(unsigned rank) {
  VStackPosition position;
  position.create(std::vector<unsigned>(rank, 1), 3);
  position.offset[2] = 4.5;
  return export_metadata(position);
}

TEST(StackMetadataTest, NoTextHoldsNoPosition) { EXPECT_FALSE(import_metadata("", 5, 2)); }

TEST(StackMetadataTest, BelowVersionThreeATextOnlyHasToBeReadable) {
  EXPECT_FALSE(import_metadata(metadata_of_rank(2), 2, 2));
  EXPECT_FALSE(import_metadata(metadata_of_rank(2), 2, 1));
  EXPECT_THROW(import_metadata("<", 2, 2), VrelError);
}

TEST(StackMetadataTest, FromVersionThreeOnAPositionHasToFitTheStack) {
  const auto position = import_metadata(metadata_of_rank(2), 3, 2);
  ASSERT_TRUE(position);
  EXPECT_EQ(position->offset[2], 4.5);
  EXPECT_VREL_ERROR(import_metadata(metadata_of_rank(2), 3, 1), misfit, -1);
}

TEST(StackMetadataTest, OutsideAFileTheErrorIsThatOfTheText) {
  EXPECT_EQ(Vrel::read_stack_metadata(metadata_of_rank(2), 5, 2)->offset[2], 4.5);
  EXPECT_FALSE(Vrel::read_stack_metadata("", 5, 2));
  EXPECT_VREL_ERROR(Vrel::read_stack_metadata(metadata_of_rank(2), 5, 3),
                    "Invalid global stack position!", -1);
}

// What is raised while each allocation in turn fails, until none is left to fail.
template <class Work>
void expect_words_without_memory(const std::string& words, Work work) {
  int occurrence = 0;
  for (bool happened = true; happened;) {
    SCOPED_TRACE("allocation " + std::to_string(++occurrence));
    std::string message;
    {
      const ScopedSystemFault fault({SystemCall::allocate_object, occurrence, ENOMEM, 0});
      try {
        work();
      } catch (const VrelError& error) {
        message = error.get_msg();
      }
      happened = fault.happened();
    }
    EXPECT_EQ(message.substr(0, words.size()), happened ? words : "");
  }
  EXPECT_GT(occurrence, 1);
}

TEST(StackMetadataTest, StandardExceptionsBecomeErrorsOfTheMetadata) {
  const std::string text = metadata_of_rank(2);
  expect_words_without_memory("Invalid metadata found!\n", [&] { import_metadata(text, 5, 2); });
  VStackPosition position;
  position.create({1, 1}, 0);
  expect_words_without_memory("Invalid meta information! Could not export to xml.\n",
                              [&] { export_metadata(position); });
}

StackToWrite stack_of_rank(unsigned rank, const std::string& metadata) {
  StackToWrite stack;
  stack.record = make_stack_record(uint8, std::vector<std::uint32_t>(rank, 1));
  stack.record.metadata = metadata;
  stack.samples = "x";
  return stack;
}

// Opens a file of these stacks and gives how many can be used.
unsigned open_stacks(AttachedFile& bytes, const std::vector<StackToWrite>& stacks) {
  write_vbf(bytes.file(), "", stacks, {});
  bytes.file().seek(0);
  void* handle = bytes.file().detach();
  VBFFile file;
  std::string message;
  try {
    file->attach(handle, VFile::mode_read);
  } catch (const VrelError& error) {
    message = error.get_msg();
  }
  EXPECT_EQ(message, file->get_number_of_stacks() == stacks.size() ? "" : misfit);
  for (unsigned i = 0; i < file->get_number_of_stacks(); ++i) {
    EXPECT_EQ(file->get_stack(i)->get_stack_position().offset[2], 4.5);
  }
  const unsigned count = file->get_number_of_stacks();
  file->detach();
  bytes.file().attach(handle, VFile::mode_modify);
  return count;
}

TEST(StackMetadataTest, EachStackOfASeriesHasThePositionThatAllHave) {
  AttachedFile bytes;
  const StackToWrite stack = stack_of_rank(2, metadata_of_rank(2));
  EXPECT_EQ(open_stacks(bytes, {stack, stack, stack}), 3U);
}

TEST(StackMetadataTest, TheSameTextInAStackOfAnotherVersionIsRefused) {
  AttachedFile bytes;
  StackToWrite old = stack_of_rank(2, R"(<root type="struct" vprop_version="1"/>)");
  StackToWrite recent = old;
  old.record.header.format_version = 2;
  recent.record.header.format_version = 3;
  write_vbf(bytes.file(), "", {old, recent}, {});
  bytes.file().seek(0);
  void* handle = bytes.file().detach();
  VBFFile file;
  EXPECT_VREL_ERROR(file->attach(handle, VFile::mode_read),
                    "Invalid metadata found!\nType mismatch: found none, expected char[]", -1);
  EXPECT_EQ(file->get_number_of_stacks(), 1U);
  file->detach();
}

TEST(StackMetadataTest, TheSameTextInAStackOfAnotherRankIsRefused) {
  AttachedFile bytes;
  const std::string metadata = metadata_of_rank(2);
  EXPECT_EQ(open_stacks(bytes, {stack_of_rank(2, metadata), stack_of_rank(3, metadata)}), 1U);
}

}  // namespace
