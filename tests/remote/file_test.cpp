#include <vrelio/remote/file.h>

#include <gtest/gtest.h>
#include <vrelio/remote/stack_object.h>
#include <vrelio/stack/shared_memory.h>
#include <vrelio/stack/stack_imp.h>

#include <boost/make_shared.hpp>
#include <filesystem>
#include <memory>
#include <numeric>
#include <optional>
#include <string>
#include <vector>

#include "foundation/scoped_codeset.h"
#include "support/expect_error.h"
#include "support/temporary_file.h"

namespace {

using Remote::File;
using Vrel::testing::ScopedCodeset;
using Vrel::testing::TemporaryFile;
using stack_ptr = boost::shared_ptr<Remote::Stack>;

static_assert(File::mode_read == 0 && File::mode_create == 1 && File::mode_modify == 2);

stack_ptr make_stack(Remote::Type type, const std::vector<unsigned int>& sizes) {
  return stack_ptr(Remote::get_stack(type, sizes));
}

std::vector<unsigned char> bytes_of(Remote::Stack& stack) {
  Vrel::SharedMemory block(stack.share());
  const auto* const bytes = static_cast<const unsigned char*>(block.data());
  return {bytes, bytes + block.size()};
}

// Byte i at position i.
stack_ptr make_ramp(const std::vector<unsigned int>& sizes) {
  stack_ptr stack = make_stack(Remote::type_uint8, sizes);
  Vrel::SharedMemory block(stack->share());
  auto* const bytes = static_cast<unsigned char*>(block.data());
  std::iota(bytes, bytes + block.size(), static_cast<unsigned char>(0));
  return stack;
}

void write_file(const std::string& path, const stack_ptr& stack, bool compress) {
  File file(path, File::mode_create);
  file.write(stack, compress);
}

TEST(RemoteFileTest, WhatWasWrittenIsReadAgain) {
  for (const bool compress : {false, true}) {
    const TemporaryFile target;
    const stack_ptr stack = make_ramp({20, 10, 4});
    stack->set_name("ramp");
    stack->set_description("of bytes");
    stack->set_labels({"X", "Y", "Z"});
    stack->set_lengths({2, 1, 8});
    stack->set_offsets({5, 6, 7});
    write_file(target.path(), stack, compress);

    File file(target.path(), File::mode_read);
    ASSERT_EQ(file.number_of_stacks(), 1U);
    const stack_ptr read = file.read(0);
    EXPECT_EQ(bytes_of(*read), bytes_of(*stack));
    EXPECT_EQ(read->name(), "ramp");
    EXPECT_EQ(read->description(), "of bytes");
    EXPECT_EQ(read->type(), Remote::type_uint8);
    EXPECT_EQ(read->sizes(), stack->sizes());
    EXPECT_EQ(read->labels(), stack->labels());
    EXPECT_EQ(read->lengths(), stack->lengths());
    EXPECT_EQ(read->offsets(), stack->offsets());
  }
}

TEST(RemoteFileTest, CompressionIsAZlibStreamOfLevelOneOrNone) {
  for (const bool compress : {false, true}) {
    const TemporaryFile target;
    write_file(target.path(), make_ramp({100, 100}), compress);
    VBFFile file(target.name(), VFile::mode_read);
    int type = -1;
    int level = -1;
    file->get_stack(0)->get_compression(type, level);
    EXPECT_EQ(type, compress ? 1 : 0);
    EXPECT_EQ(level, 1);
    EXPECT_EQ(target.content().size() < 10000, compress);
  }
}

TEST(RemoteFileTest, WritingSharesTheStackAndChangesNothingElse) {
  const TemporaryFile target;
  const auto held = boost::make_shared<VStackImp>(Ome::type_uint8, std::vector<unsigned int>{2, 2},
                                                  Ome::order_XYZTC);
  held->set_name("held");
  const Json::Value image = held->meta_data().Element.value();
  EXPECT_FALSE(held->is_shared());
  write_file(target.path(), boost::make_shared<Remote::StackObject>(held), false);
  EXPECT_TRUE(held->is_shared());
  EXPECT_EQ(held->meta_data().Element.value(), image);
  EXPECT_EQ(held->get_sizes(), (std::vector<unsigned int>{2, 2}));
}

TEST(RemoteFileTest, AStackThatWasReadCanBeWrittenAgain) {
  const TemporaryFile first;
  const TemporaryFile second;
  const stack_ptr stack = make_ramp({16, 16});
  stack->set_name("copied");
  write_file(first.path(), stack, true);
  stack_ptr read;
  {
    File file(first.path(), File::mode_read);
    read = file.read(0);
  }
  write_file(second.path(), read, false);
  File file(second.path(), File::mode_read);
  EXPECT_EQ(bytes_of(*file.read(0)), bytes_of(*stack));
  EXPECT_EQ(file.read(0)->name(), "copied");
}

TEST(RemoteFileTest, TheDescriptionIsThatOfTheFile) {
  const TemporaryFile target;
  {
    File file(target.path(), File::mode_create);
    file.set_description("of the day");
    EXPECT_EQ(file.description(), "of the day");
    file.write(make_ramp({2}), false);
    EXPECT_VREL_ERROR(file.set_description("late"),
                      "Header already written. Cannot set file description!", -1);
  }
  File file(target.path(), File::mode_read);
  EXPECT_EQ(file.description(), "of the day");
  EXPECT_VREL_ERROR(file.set_description("no"), "Read-only handle specified in write function!",
                    -9);
}

TEST(RemoteFileTest, ModifyingAppends) {
  const TemporaryFile target;
  write_file(target.path(), make_ramp({3}), false);
  {
    File file(target.path(), File::mode_modify);
    file.write(make_ramp({4}), true);
    EXPECT_EQ(file.number_of_stacks(), 2U);
  }
  File file(target.path(), File::mode_read);
  ASSERT_EQ(file.number_of_stacks(), 2U);
  EXPECT_EQ(file.read(0)->size(0), 3U);
  EXPECT_EQ(file.read(1)->size(0), 4U);
}

TEST(RemoteFileTest, WritingToAFileForReadingFails) {
  const TemporaryFile target;
  write_file(target.path(), make_ramp({3}), false);
  const std::string before = target.content();
  {
    File file(target.path(), File::mode_read);
    EXPECT_VREL_ERROR(file.write(make_ramp({4}), false), "File not open for writing!", -1);
    EXPECT_EQ(file.number_of_stacks(), 1U);
  }
  EXPECT_EQ(target.content(), before);
}

TEST(RemoteFileTest, AnIndexBehindTheLastStackFails) {
  const TemporaryFile target;
  write_file(target.path(), make_ramp({3}), false);
  File file(target.path(), File::mode_read);
  EXPECT_VREL_ERROR(file.read(1), "Invalid stack index 1!", -4);
}

TEST(RemoteFileTest, OpeningFailsAsTheFileDoes) {
  const TemporaryFile target;
  EXPECT_VREL_ERROR(File(target.path(), File::mode_read), "Could not open file!", -1);
  EXPECT_VREL_ERROR(File(target.path(), static_cast<File::Mode>(3)), "Invalid opening mode!", -15);
  EXPECT_FALSE(target.exists());
}

TEST(RemoteFileTest, ANameIsInTheEncodingOfTheLocale) {
  const TemporaryFile target;
  const ScopedCodeset local("ISO-8859-1");
  const std::string name = target.path() + " 10 \xb5m";
  write_file(name, make_ramp({3}), false);
  EXPECT_TRUE(std::filesystem::exists(name));
  EXPECT_EQ(File(name, File::mode_read).number_of_stacks(), 1U);
}

TEST(RemoteFileTest, DestroyingOneCopyClosesTheFileForAll) {
  const TemporaryFile target;
  File file(target.path(), File::mode_create);
  file.write(make_ramp({3}), false);
  { const File copy(file); }
  EXPECT_VREL_ERROR(file.write(make_ramp({3}), false), "File not open for writing!", -1);
  File again(target.path(), File::mode_read);
  EXPECT_EQ(again.number_of_stacks(), 1U);
}

TEST(RemoteFileTest, AnAssignedFileIsShared) {
  const TemporaryFile one;
  const TemporaryFile other;
  File first(one.path(), File::mode_create);
  File second(other.path(), File::mode_create);
  second.write(make_ramp({3}), false);
  second = first;
  second.write(make_ramp({5}), false);
  EXPECT_EQ(first.number_of_stacks(), 1U);
  File released(other.path(), File::mode_read);
  EXPECT_EQ(released.read(0)->size(0), 3U);
}

TEST(RemoteFileTest, AStackOutlivesItsFile) {
  const TemporaryFile target;
  write_file(target.path(), make_ramp({6}), true);
  stack_ptr stack;
  {
    File file(target.path(), File::mode_read);
    stack = file.read(0);
  }
  EXPECT_EQ(bytes_of(*stack), (std::vector<unsigned char>{0, 1, 2, 3, 4, 5}));
}

TEST(RemoteFileTest, AStackWithoutElementsIsWritten) {
  const TemporaryFile target;
  write_file(target.path(), make_stack(Remote::type_uint16, {0, 3}), true);
  File file(target.path(), File::mode_read);
  EXPECT_EQ(file.read(0)->number_of_elements(), 0U);
}

}  // namespace
