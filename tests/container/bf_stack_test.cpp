// The stack object: from its layout to its commit, and reading it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vrelio/container/bf_file.h>
#include <vrelio/foundation/data_type.h>
#include <vrelio/stack/region.h>
#include <vrelio/stack/stack_imp.h>

#include <random>
#include <string>
#include <vector>

#include "container/stack_writing.h"
#include "support/expect_error.h"

namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using Vrel::StackRecord;
using Vrel::testing::ramp;
using Vrel::testing::read_all;
using Vrel::testing::stack_ptr;
using Vrel::testing::WrittenFile;

constexpr int uint8 = 1;
constexpr int uint16 = 4;
constexpr int int32 = 0x20;
constexpr int single = 0x40;
constexpr int real = 0x80;
constexpr int cplx_single = 0x40000040;
constexpr unsigned all = VBFStackInterface::all_samples;
constexpr const char* not_enough = "Not enough samples written!";
constexpr const char* too_many = "Trying to write more samples than the stack is long!";
constexpr const char* exhausted =
    "Invalid position (-1) passed. Possible reason: Last read call exhausted data.";
constexpr const char* beyond = "Trying to read beyond segment boundary!";

const std::vector<int>& numeric_types() {
  static const std::vector<int> types = [] {
    std::vector<int> ids;
    for (const int id : {1, 2, 4, 8, 0x10, 0x20, 0x40, 0x80, 0x1000, 0x2000}) {
      ids.push_back(id);
      ids.push_back(id | 0x40000000);
    }
    return ids;
  }();
  return types;
}

std::string random_bytes(std::size_t size, unsigned seed) {
  std::mt19937 random(seed);
  std::string bytes(size, '\0');
  for (char& byte : bytes) byte = static_cast<char>(random() % 17);
  return bytes;
}

// A growing stack without a type takes what no setter would.
stack_ptr add_untyped(WrittenFile& file, std::vector<unsigned> sizes) {
  sizes.back() = 0;
  return file.add(sizes, 0);
}

TEST(BFStackTest, EveryTypeGoesRoundRawAndCompressed) {
  for (const int type : numeric_types()) {
    for (const int level : {0, 1, 6}) {
      SCOPED_TRACE(std::string(vrel_dt_get_name(type)) + " at level " + std::to_string(level));
      const auto size = static_cast<std::size_t>(vrel_dt_get_size(type));
      const std::string bytes = random_bytes(7 * 11 * size, static_cast<unsigned>(type));
      WrittenFile file;
      const stack_ptr stack = add_untyped(file, {7, 0});
      stack->set_compression(level == 0 ? 0 : 1, level);
      stack->write(type, bytes.data(), nullptr, 77);
      stack->commit(0);
      file.reopen();
      const stack_ptr read = file->get_stack(0);
      EXPECT_EQ(read->get_dt(), type);
      EXPECT_THAT(read->get_sizes(), ElementsAre(7, 11));
      std::string samples(bytes.size(), '?');
      read->read(type, samples.data(), nullptr);
      EXPECT_EQ(samples, bytes);
    }
  }
}

TEST(BFStackTest, FifteenDimensionsAreWritten) {
  WrittenFile file;
  const stack_ptr stack = add_untyped(file, {1, 2, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 3, 0});
  stack->write(uint8, "abcdef", nullptr, 6);
  stack->commit(0);
  file.reopen();
  const stack_ptr read = file->get_stack(0);
  EXPECT_THAT(read->get_sizes(), ElementsAre(1, 2, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 3, 1));
  EXPECT_TRUE(read->meta_data().SizeX.value().is_null());
  EXPECT_TRUE(read->meta_data().Name.value().is_null());
  EXPECT_TRUE(read->meta_data().Description.value().is_null());
  EXPECT_THAT(read_all<char>(read, uint8), ElementsAre('a', 'b', 'c', 'd', 'e', 'f'));
}

TEST(BFStackTest, SixteenDimensionsAreRefused) {
  WrittenFile file;
  const stack_ptr stack = file->add_stack(false);
  EXPECT_STANDARD_ERROR(stack->create(std::vector<unsigned>(16, 0), uint8), std::invalid_argument,
                        "Unsupported number of sizes");
  EXPECT_EQ(stack->get_state(), -1);
  stack->create(std::vector<unsigned>(15, 0), uint8);
  EXPECT_EQ(stack->get_state(), 1);
}

TEST(BFStackTest, AStackGrowsByWholeSteps) {
  WrittenFile file;
  const stack_ptr stack = file.add({100, 0}, uint16);
  const auto samples = ramp<unsigned short>(300);
  stack->write(uint16, samples.data(), nullptr, 250);
  EXPECT_THAT(stack->get_sizes(), ElementsAre(100, 2));
  EXPECT_VREL_ERROR(stack->commit(0), "Not on sample boundary!", -1);
  EXPECT_EQ(stack->get_state(), 2);
  stack->write(uint16, samples.data() + 250, nullptr, 50);
  EXPECT_EQ(stack->get_state(), 2);
  stack->commit(0);
  EXPECT_EQ(stack->get_state(), 0);
  EXPECT_THAT(read_all<unsigned short>(stack, uint16), samples);
  EXPECT_EQ(file.record().stacks[0].header.sizes[1], 3u);
  file.reopen();
  EXPECT_THAT(read_all<unsigned short>(file->get_stack(0), uint16), samples);
}

TEST(BFStackTest, AGrowingStackThatSawNothingHasTheSizeZero) {
  for (const unsigned count : {0U, all}) {
    WrittenFile file;
    const stack_ptr stack = file.add({100, 0}, uint16);
    stack->write(uint16, nullptr, nullptr, count);
    EXPECT_EQ(stack->get_state(), 0);
    file.reopen();
    EXPECT_THAT(file->get_stack(0)->get_sizes(), ElementsAre(100, 0));
    EXPECT_THAT(read_all<unsigned short>(file->get_stack(0), uint16), IsEmpty());
  }
}

TEST(BFStackTest, AGrowingStackCannotPassTheLargestNumberOfSamples) {
  WrittenFile file;
  const stack_ptr stack = file.add({1, 0}, uint8);
  stack->write(uint8, "ab", nullptr, 2);
  EXPECT_VREL_ERROR(stack->write(uint8, "c", nullptr, all), "The product exceeds the maximum size.",
                    -1);
  stack->commit(0);
  EXPECT_THAT(stack->get_sizes(), ElementsAre(1, 2));
}

TEST(BFStackTest, StepsOfSizeZeroTakeNoSamples) {
  constexpr unsigned large = 0x80000001;
  for (const std::vector<unsigned>& sizes :
       {std::vector<unsigned>{0, 0}, {0, large, 0}, {large, 0, large, 0}}) {
    WrittenFile file;
    const stack_ptr stack = file.add(sizes, uint8);
    EXPECT_VREL_ERROR(stack->write(uint8, "a", nullptr, 1), too_many, -1);
    stack->commit(0);
    file.reopen();
    EXPECT_EQ(file->get_stack(0)->get_sizes(), sizes);
  }
}

TEST(BFStackTest, AStackOfNoSizesHasOneSample) {
  WrittenFile file;
  const stack_ptr stack = file.add({}, real);
  const double sample = 0.1;
  stack->write(real, &sample, nullptr, 1);
  file.reopen();
  EXPECT_EQ(file->get_stack(0)->get_rank(), 0u);
  EXPECT_THAT(read_all<double>(file->get_stack(0), real), ElementsAre(0.1));
}

TEST(BFStackTest, AllSamplesInOneCallCommit) {
  WrittenFile file;
  const stack_ptr stack = file.add({4}, uint8);
  stack->write(uint8, "abcd", nullptr, all);
  EXPECT_EQ(stack->get_state(), 0);
  EXPECT_THAT(read_all<char>(stack, uint8), ElementsAre('a', 'b', 'c', 'd'));
}

TEST(BFStackTest, AllSamplesMeansThatInTheFirstCallOnly) {
  WrittenFile file;
  const stack_ptr stack = file.add({4}, uint8);
  stack->write(uint8, "a", nullptr, 1);
  EXPECT_VREL_ERROR(stack->write(uint8, "bcd", nullptr, all), too_many, -1);
  stack->write(uint8, "bcd", nullptr, 3);
  EXPECT_EQ(stack->get_state(), 0);
}

TEST(BFStackTest, AStackThatIsNotFullIsNotCommitted) {
  WrittenFile file;
  const stack_ptr stack = file.add({4}, uint8);
  EXPECT_VREL_ERROR(stack->commit(0), not_enough, -1);
  EXPECT_EQ(stack->get_state(), 1);
  stack->write(uint8, "abc", nullptr, 3);
  EXPECT_EQ(stack->get_state(), 2);
  EXPECT_VREL_ERROR(stack->commit(0), not_enough, -1);
  EXPECT_THAT(file.record().stacks, IsEmpty());
  EXPECT_VREL_ERROR(stack->write(uint8, "de", nullptr, 2), too_many, -1);
  stack->write(uint8, "d", nullptr, 1);
  EXPECT_EQ(stack->get_state(), 0);
  EXPECT_VREL_ERROR(stack->write(uint8, "e", nullptr, 1),
                    "Stack is already complete. Invalid call to write()!", -1);
  EXPECT_VREL_ERROR(stack->commit(0), "Stack is already complete. Invalid call to write()!", -1);
}

TEST(BFStackTest, TooManySamplesAtFirstLeaveTheStackReady) {
  WrittenFile file;
  const stack_ptr stack = file.add({4}, uint8);
  const std::string before = file.target().content();
  EXPECT_VREL_ERROR(stack->write(uint8, "abcde", nullptr, 5), too_many, -1);
  EXPECT_EQ(file.target().content(), before);
  stack->write(uint8, "abcd", nullptr, all);
  EXPECT_EQ(stack->get_state(), 0);
}

TEST(BFStackTest, AStackOfNoSamplesIsCommittedByNone) {
  WrittenFile file;
  const stack_ptr stack = file.add({3, 0, 2}, uint8);
  stack->write(uint8, nullptr, nullptr, all);
  EXPECT_EQ(stack->get_state(), 0);
  EXPECT_EQ(file.record().stacks[0].header.data_length, 0u);
  EXPECT_EQ(file.record().stacks[0].header.has_data, 1u);
  int position = 0;
  stack->read(uint8, nullptr, nullptr, all, position);
}

class EmptyStackTest : public testing::Test {
 protected:
  EmptyStackTest() : stack(file->add_stack(true)) { stack->create({3, 2}, uint16); }

  static void expect_zeros(VBFStackInterface& empty) {
    std::vector<double> samples(7, 5.0);
    int position = 2;
    empty.read(real, samples.data(), nullptr, 3, position);
    EXPECT_EQ(position, 2);
    EXPECT_THAT(samples, ElementsAre(0, 0, 0, 5, 5, 5, 5));
    empty.read(real, samples.data(), nullptr, 100, position);
    EXPECT_THAT(samples, ElementsAre(0, 0, 0, 0, 5, 5, 5));
    EXPECT_EQ(position, 2);
    position = VBFStackInterface::position_continue;
    empty.read(real, samples.data(), nullptr, all, position);
    EXPECT_THAT(samples, ElementsAre(0, 0, 0, 0, 0, 0, 5));
    EXPECT_EQ(position, 0);
  }

  WrittenFile file;
  stack_ptr stack;
};

TEST_F(EmptyStackTest, ReadsAsZerosOfTheCallersType) {
  stack->set_compression(1, 6);
  stack->write(uint16, nullptr, nullptr, 0);
  EXPECT_EQ(stack->get_state(), 0);
  const StackRecord record = file.record().stacks[0];
  EXPECT_EQ(record.header.data_length, 0u);
  EXPECT_EQ(record.header.has_data, 0u);
  expect_zeros(*stack);
  expect_zeros(*file->get_stack(0));
  file.reopen();
  expect_zeros(*file->get_stack(0));
}

TEST_F(EmptyStackTest, TakesNoSamples) {
  for (const unsigned count : {1U, all}) {
    EXPECT_VREL_ERROR(stack->write(uint16, "abcdef", nullptr, count),
                      "Trying to write to empty stack!", -1);
  }
  EXPECT_EQ(stack->get_state(), 1);
  stack->commit(0);
  EXPECT_EQ(stack->get_state(), 0);
}

TEST_F(EmptyStackTest, OfComplexSamplesHasZerosInBothPlanes) {
  stack->commit(0);
  const stack_ptr complex = file->add_stack(true);
  complex->create({2}, cplx_single);
  complex->commit(0);
  std::vector<float> data(2, 1.0F);
  std::vector<float> imaginary(2, 1.0F);
  complex->read(single, data.data(), imaginary.data());
  EXPECT_THAT(data, Each(0.0F));
  EXPECT_THAT(imaginary, Each(0.0F));
}

TEST(BFStackTest, AStackNeedsALayoutBeforeItIsWritten) {
  WrittenFile file;
  const stack_ptr stack = file->add_stack(false);
  EXPECT_EQ(stack->get_state(), -1);
  constexpr const char* not_ready = "Stack not ready to be commited. Meta-information missing!";
  EXPECT_VREL_ERROR(stack->commit(uint8), not_ready, -1);
  EXPECT_VREL_ERROR(stack->write(uint8, "a", nullptr, 1), not_ready, -1);
  EXPECT_VREL_ERROR(stack->set_flush_block_size(1),
                    "Flush block size can only be set before starting to write!", -1);
  stack->create({1}, uint8);
  EXPECT_EQ(stack->get_state(), 1);
}

TEST(BFStackTest, ALayoutIsSetOnce) {
  WrittenFile file;
  const stack_ptr stack = file.add({2}, uint8);
  const VStackImp memory(Ome::type_uint8, {1}, Ome::order_XYZTC);
  VStackRegion region;
  region.create(&memory, 0);
  constexpr const char* message = "Cannot set data layout!";
  EXPECT_VREL_ERROR(stack->create({1}, uint8), message, -1);
  EXPECT_VREL_ERROR(stack->create(&memory, 0), message, -1);
  EXPECT_VREL_ERROR(stack->create(&memory, region), message, -1);
  stack->write(uint8, "ab", nullptr, 2);
  EXPECT_VREL_ERROR(stack->create({1}, uint8), message, -1);
  EXPECT_THAT(stack->get_sizes(), ElementsAre(2));
}

TEST(BFStackTest, ALayoutThatFailsCanBeSetAgain) {
  WrittenFile file;
  const stack_ptr stack = file->add_stack(false);
  EXPECT_STANDARD_ERROR(stack->create({2}, 0x1000), std::invalid_argument, "Unsupported data type");
  EXPECT_EQ(stack->get_state(), -1);
  stack->create({2}, uint8);
  EXPECT_EQ(stack->get_state(), 1);
}

TEST(BFStackTest, ALayoutIsTakenFromAStackOrAPartOfOne) {
  VStackImp memory(Ome::type_uint8, {4, 3}, Ome::order_XYZTC);
  memory.set_name("memory");
  memory.set_len(0, 8.0);
  WrittenFile file;
  const stack_ptr whole = file->add_stack(false);
  whole->create(&memory, single);
  EXPECT_EQ(whole->get_name(), "memory");
  EXPECT_EQ(whole->get_dt(), single);
  EXPECT_THAT(whole->get_lengths(), ElementsAre(8.0, 1.0));
  const auto samples = ramp<float>(12);
  whole->write(single, samples.data(), nullptr, 12);
  const stack_ptr same = file->add_stack(false);
  same->create(&memory, 0);
  EXPECT_EQ(same->get_dt(), uint8);
  same->write(uint8, memory.get_data_ptr(), nullptr, all);
  const stack_ptr part = file->add_stack(false);
  VStackRegion region;
  region.create(&memory, 0);
  region.from[0] = 2;
  part->create(&memory, region);
  EXPECT_THAT(part->get_sizes(), ElementsAre(2, 3));
  EXPECT_EQ(part->get_length(0), 4.0);
}

TEST(BFStackTest, OnlyAListOfSizesMakesAStackGrow) {
  VStackImp memory(2U);
  WrittenFile file;
  const stack_ptr stack = file->add_stack(false);
  stack->create(&memory, uint8);
  EXPECT_VREL_ERROR(stack->write(uint8, "a", nullptr, 1), too_many, -1);
  stack->write(uint8, nullptr, nullptr, 0);
  EXPECT_EQ(stack->get_state(), 0);
}

TEST(BFStackTest, TheFirstWriteLocksTheDescriptionButForThePosition) {
  WrittenFile file;
  const stack_ptr stack = file.add({2}, uint8);
  stack->set_name("before");
  stack->write(uint8, "a", nullptr, 1);
  constexpr const char* locked = "Cannot set values. Object locked!";
  EXPECT_VREL_ERROR(stack->set_name("after"), locked, -1);
  EXPECT_VREL_ERROR(stack->set_units(0, si::value("m")), locked, -1);
  EXPECT_VREL_ERROR(stack->set_label(0, "X"), locked, -1);
  VStackPosition position = stack->get_stack_position();
  position.offset[0] = 12.5;
  stack->set_stack_position(position);
  stack->write(uint8, "b", nullptr, 1);
  file.reopen();
  const stack_ptr read = file->get_stack(0);
  EXPECT_EQ(read->get_stack_position().offset[0], 12.5);
  EXPECT_EQ(read->get_name(), "before");
  EXPECT_VREL_ERROR(read->set_name("after"), locked, -1);
}

TEST(BFStackTest, AStackWithoutATypeTakesThatOfTheFirstSamples) {
  WrittenFile file;
  const stack_ptr stack = file.add({2}, 0);
  EXPECT_VREL_ERROR(stack->write(0, "ab", nullptr, 2),
                    "Stack data type not set. Cannot commit stack to file!", -1);
  EXPECT_EQ(stack->get_state(), 1);
  const float samples[] = {0.5F, 1.5F};
  stack->write(single, samples, nullptr, 2);
  EXPECT_EQ(stack->get_dt(), single);
  EXPECT_EQ(file.record().stacks[0].header.data_type, single);
}

TEST(BFStackTest, AnEmptyStackTakesTheTypeOfItsCommit) {
  WrittenFile file;
  const stack_ptr stack = file->add_stack(true);
  stack->create({2}, 0);
  EXPECT_VREL_ERROR(file->finish(), "Stack data type not set. Cannot commit stack to file!", -1);
  stack->commit(real);
  EXPECT_EQ(file.record().stacks[0].header.data_type, real);
}

TEST(BFStackTest, ATypeWithoutASizeIsNotTakenOver) {
  WrittenFile file;
  const stack_ptr stack = file.add({2}, 0);
  constexpr int no_type = 0x300;
  EXPECT_VREL_ERROR(stack->write(no_type, "ab", nullptr, 2),
                    "Invalid on-the-fly conversion from 'none' to 'none'!", -1);
  EXPECT_EQ(stack->get_dt(), 0);
  stack->write(uint8, "ab", nullptr, 2);
  EXPECT_EQ(stack->get_state(), 0);
}

TEST(BFStackTest, SamplesAreConvertedInBothDirections) {
  WrittenFile file;
  const stack_ptr stack = file.add({3, 2}, int32);
  const std::vector<double> samples = {1.5, -2.5, 3e5, -4.0, 0.0, 7.9};
  stack->write(real, samples.data(), nullptr, 6);
  EXPECT_THAT(read_all<int>(stack, int32), ElementsAre(1, -2, 300000, -4, 0, 7));
  EXPECT_THAT(read_all<float>(stack, single), ElementsAre(1, -2, 300000, -4, 0, 7));
}

TEST(BFStackTest, ConvertingInPiecesGivesWhatConvertingAtOnceGives) {
  constexpr unsigned count = 300000;
  const auto samples = ramp<int>(count);
  const std::vector<double> whole(samples.begin(), samples.end());
  for (const unsigned chunk : {1U, 1000U, 1U << 20}) {
    WrittenFile file;
    file->set_chunk_size(chunk);
    const unsigned length = chunk < 1000 ? 500 : count;
    const stack_ptr stack = file.add({length}, int32);
    stack->set_compression(1, 1);
    stack->write(real, whole.data(), nullptr, length);
    EXPECT_TRUE(
        std::equal(samples.begin(), samples.begin() + length, read_all<int>(stack, int32).begin()));
    EXPECT_TRUE(
        std::equal(whole.begin(), whole.begin() + length, read_all<double>(stack, real).begin()));
  }
}

TEST(BFStackTest, WhatCannotBeConvertedIsRefusedBeforeAnythingIsWritten) {
  WrittenFile file;
  const stack_ptr stack = file.add({2}, uint8);
  EXPECT_VREL_ERROR(stack->write(cplx_single, "abcdefghabcdefgh", nullptr, 2),
                    "Invalid on-the-fly conversion from 'cplx_single' to 'uint8'!", -1);
  EXPECT_VREL_ERROR(stack->write(0x400, "abcdef", nullptr, 2),
                    "Invalid on-the-fly conversion from 'none' to 'uint8'!", -1);
  EXPECT_EQ(stack->get_state(), 1);
  stack->write(uint8, "ab", nullptr, 2);
  std::vector<unsigned char> samples(6, 9);
  EXPECT_VREL_ERROR(stack->read(0x400, samples.data(), nullptr),
                    "Invalid on-the-fly conversion from 'uint8' to 'none'!", -1);
  EXPECT_THAT(samples, Each(9));
}

class ImaginaryTest : public testing::Test {
 protected:
  WrittenFile file;
  std::vector<float> data = {1, 2, 3};
  std::vector<float> imaginary = {-1, -2, -3};
};

TEST_F(ImaginaryTest, TwoPlanesMakeComplexSamplesAndAreMadeOfThem) {
  const stack_ptr stack = file.add({3}, cplx_single);
  stack->write(single, data.data(), imaginary.data(), 3);
  std::vector<float> interleaved(6);
  stack->read(cplx_single, interleaved.data(), nullptr);
  EXPECT_THAT(interleaved, ElementsAre(1, -1, 2, -2, 3, -3));
  std::vector<double> real_part(3);
  std::vector<double> imaginary_part(3);
  stack->read(real, real_part.data(), imaginary_part.data());
  EXPECT_THAT(real_part, ElementsAre(1, 2, 3));
  EXPECT_THAT(imaginary_part, ElementsAre(-1, -2, -3));
}

TEST_F(ImaginaryTest, PiecesOfTwoPlanesStayTogether) {
  file->set_chunk_size(8);
  const stack_ptr stack = file.add({3}, cplx_single);
  stack->write(single, data.data(), imaginary.data(), 2);
  stack->write(single, data.data() + 2, imaginary.data() + 2, 1);
  std::vector<float> real_part(3);
  std::vector<float> imaginary_part(3);
  stack->read(single, real_part.data(), imaginary_part.data());
  EXPECT_EQ(real_part, data);
  EXPECT_EQ(imaginary_part, imaginary);
}

TEST_F(ImaginaryTest, AStackWithoutATypeBecomesComplex) {
  const stack_ptr stack = file.add({3}, 0);
  stack->write(single, data.data(), imaginary.data(), 3);
  EXPECT_EQ(stack->get_dt(), cplx_single);
}

TEST_F(ImaginaryTest, OnlyRealSamplesJoinAndOnlyComplexOnesAreSplit) {
  const stack_ptr complex = file.add({3}, cplx_single);
  EXPECT_VREL_ERROR(complex->write(cplx_single, data.data(), imaginary.data(), 1),
                    "Imaginary block given but buffer is already complex!", -1);
  complex->write(single, data.data(), imaginary.data(), 3);
  EXPECT_VREL_ERROR(complex->read(cplx_single, data.data(), imaginary.data()),
                    "Imaginary buffer passed but buffer type is already complex!", -1);
  const stack_ptr plain = file.add({3}, single);
  EXPECT_VREL_ERROR(plain->write(single, data.data(), imaginary.data(), 3),
                    "Imaginary block given but stack is not complex!", -1);
  plain->write(single, data.data(), nullptr, 3);
  EXPECT_VREL_ERROR(plain->read(single, data.data(), imaginary.data()),
                    "Imaginary buffer passed but stack is not complex!", -1);
}

TEST(BFStackTest, CompressionIsChosenBeforeTheFirstWrite) {
  WrittenFile file;
  const stack_ptr stack = file->add_stack(false);
  int type = -1;
  int level = -1;
  stack->get_compression(type, level);
  EXPECT_EQ(type, 0);
  EXPECT_EQ(level, 1);
  stack->set_compression(1, 3);
  stack->create({2}, uint8);
  stack->set_compression(1, 9);
  stack->write(uint8, "a", nullptr, 1);
  EXPECT_VREL_ERROR(stack->set_compression(0, 0), "Cannot change compression mode!", -1);
  stack->get_compression(type, level);
  EXPECT_EQ(type, 1);
  EXPECT_EQ(level, 9);
  stack->write(uint8, "b", nullptr, 1);
  EXPECT_VREL_ERROR(stack->set_compression(0, 0), "Cannot change compression mode!", -1);
  EXPECT_VREL_ERROR(stack->set_flush_block_size(1),
                    "Flush block size can only be set before starting to write!", -1);
  EXPECT_EQ(file.record().stacks[0].header.compression_level, 9);
}

TEST(BFStackTest, CompressionThatDoesNotExistIsRefusedByTheFirstWrite) {
  WrittenFile file;
  const stack_ptr stack = file.add({2}, uint8);
  for (const int type : {2, -1, 100}) {
    stack->set_compression(type, 1);
    EXPECT_VREL_ERROR(stack->write(uint8, "ab", nullptr, 2), "Invalid compression type specified!",
                      -1);
  }
  for (const int level : {-1, 10}) {
    stack->set_compression(1, level);
    EXPECT_VREL_ERROR(stack->write(uint8, "ab", nullptr, 2), "Zip error (id: -2)!", -10);
  }
  EXPECT_EQ(stack->get_state(), 1);
  stack->set_compression(1, 0);
  stack->write(uint8, "ab", nullptr, 2);
  EXPECT_EQ(file.record().stacks[0].header.data_length, 2u);
  EXPECT_THAT(read_all<char>(stack, uint8), ElementsAre('a', 'b'));
}

// The sizes of stacks of one byte per sample, and their flush block sizes.
TEST(BFStackTest, FlushPointsBeginWith64KiB) {
  for (const unsigned size : {65535U, 65536U}) {
    WrittenFile file;
    const stack_ptr stack = file.add({size}, uint8);
    stack->set_compression(1, 1);
    const auto samples = ramp<unsigned char>(size);
    stack->write(uint8, samples.data(), nullptr, size);
    const StackRecord record = file.record().stacks[0];
    EXPECT_EQ(record.flush_positions.size(), size == 65536 ? 1u : 0u);
    EXPECT_EQ(record.flush_block_size, size == 65536 ? 65536u : 0u);
  }
}

TEST(BFStackTest, AFlushBlockSizeThatWasSetStaysUnlessTheStackIsSmall) {
  for (const unsigned size : {1000U, 70000U}) {
    WrittenFile file;
    const stack_ptr stack = file.add({size}, uint8);
    stack->set_compression(1, 1);
    stack->set_flush_block_size(10000);
    const auto samples = ramp<unsigned char>(size);
    stack->write(uint8, samples.data(), nullptr, size);
    const StackRecord record = file.record().stacks[0];
    EXPECT_EQ(record.flush_positions.size(), size == 1000 ? 0u : 7u);
    EXPECT_EQ(record.footer.flush_block_size, size == 1000 ? 0u : 10000u);
    EXPECT_THAT(read_all<unsigned char>(stack, uint8), samples);
  }
}

TEST(BFStackTest, ARawStackHasABlockSizeAndNoFlushPoints) {
  WrittenFile file;
  const stack_ptr stack = file.add({70000}, uint8);
  const auto samples = ramp<unsigned char>(70000);
  stack->write(uint8, samples.data(), nullptr, 70000);
  const StackRecord record = file.record().stacks[0];
  EXPECT_EQ(record.footer.flush_point_count, 0u);
  EXPECT_EQ(record.footer.flush_block_size, 70000u);
  EXPECT_EQ(record.flush_block_size, 0u);
  EXPECT_THAT(read_all<unsigned char>(stack, uint8), samples);
}

TEST(BFStackTest, AFlushBlockSizeOfZeroMeansNoFlushPoints) {
  WrittenFile file;
  const stack_ptr stack = file.add({70000}, uint8);
  stack->set_compression(1, 1);
  stack->set_flush_block_size(0);
  const auto samples = ramp<unsigned char>(70000);
  stack->write(uint8, samples.data(), nullptr, 70000);
  const StackRecord record = file.record().stacks[0];
  EXPECT_THAT(record.flush_positions, IsEmpty());
  EXPECT_EQ(record.footer.flush_block_size, 0u);
  EXPECT_THAT(read_all<unsigned char>(stack, uint8), samples);
}

TEST(BFStackTest, ABlockThatIsNeverFullHasNoFlushPoint) {
  WrittenFile file;
  const stack_ptr stack = file.add({70000}, uint8);
  stack->set_compression(1, 1);
  stack->set_flush_block_size(100000);
  const auto samples = ramp<unsigned char>(70000);
  stack->write(uint8, samples.data(), nullptr, 70000);
  EXPECT_THAT(file.record().stacks[0].flush_positions, IsEmpty());
  for (int position : {69000, 10, 40000}) {
    const unsigned char expected = samples[static_cast<std::size_t>(position)];
    unsigned char sample = 0;
    stack->read(uint8, &sample, nullptr, 1, position);
    EXPECT_EQ(sample, expected);
  }
}

// When its first sample comes, nobody knows how many there will be.
TEST(BFStackTest, AGrowingStackHasNoFlushPointsNotEvenThoseThatWereAskedFor) {
  WrittenFile file;
  const stack_ptr stack = file.add({70000, 0}, uint8);
  stack->set_compression(1, 1);
  stack->set_flush_block_size(10000);
  const auto samples = ramp<unsigned char>(140000);
  stack->write(uint8, samples.data(), nullptr, 140000);
  stack->commit(0);
  const StackRecord record = file.record().stacks[0];
  EXPECT_THAT(record.flush_positions, IsEmpty());
  EXPECT_EQ(record.footer.flush_block_size, 0u);
  EXPECT_THAT(read_all<unsigned char>(stack, uint8), samples);
}

TEST(BFStackTest, AGrowingStackThatWasMadeEmptyTakesSamples) {
  WrittenFile file;
  const stack_ptr stack = file->add_stack(true);
  stack->create({2, 0}, uint8);
  stack->write(uint8, "abcd", nullptr, 4);
  stack->commit(0);
  EXPECT_EQ(file.record().stacks[0].header.has_data, 0u);
  file.reopen();
  EXPECT_THAT(read_all<char>(file->get_stack(0), uint8), ElementsAre('a', 'b', 'c', 'd'));
}

// A layout that was refused may leave columns behind that do not fit the next one.
TEST(BFStackTest, ColumnLabelsThatDoNotFitAreNotWritten) {
  WrittenFile file;
  const stack_ptr stack = file->add_stack(false);
  EXPECT_STANDARD_ERROR(stack->create({3}, 0x1000), std::invalid_argument, "Unsupported data type");
  stack->set_col_labels(0, {"a", "b", "c"});
  stack->create({2}, uint8);
  stack->write(uint8, "ab", nullptr, 2);
  EXPECT_THAT(file.record().stacks[0].column_labels, ElementsAre(IsEmpty()));
  file.reopen();
  EXPECT_THAT(file->get_stack(0)->get_col_labels(0), IsEmpty());
}

class ReadingTest : public testing::TestWithParam<int> {
 protected:
  ReadingTest() : stack(file.add({10, 10}, uint8)) {
    if (GetParam() != 0) stack->set_compression(1, GetParam());
    stack->write(uint8, ramp<unsigned char>(100).data(), nullptr, all);
    file.reopen();
    stack = file->get_stack(0);
  }

  std::vector<int> read(unsigned count, int& place) const {
    std::vector<int> samples(count == all ? 100 : count, -1);
    stack->read(int32, samples.data(), nullptr, count, place);
    return samples;
  }

  WrittenFile file;
  stack_ptr stack;
  int position = 0;
};

TEST_P(ReadingTest, GoesOnWhereItEnded) {
  position = VBFStackInterface::position_continue;
  EXPECT_THAT(read(3, position), ElementsAre(0, 1, 2));
  EXPECT_EQ(position, 3);
  EXPECT_THAT(read(2, position), ElementsAre(3, 4));
  position = VBFStackInterface::position_continue;
  EXPECT_THAT(read(2, position), ElementsAre(5, 6));
  EXPECT_EQ(position, 7);
  position = 50;
  EXPECT_THAT(read(2, position), ElementsAre(50, 51));
  position = VBFStackInterface::position_continue;
  EXPECT_THAT(read(1, position), ElementsAre(52));
}

TEST_P(ReadingTest, ToTheEndExhausts) {
  position = 97;
  EXPECT_THAT(read(4, position), ElementsAre(97, 98, 99, -1));
  EXPECT_EQ(position, VBFStackInterface::position_exhausted);
  EXPECT_VREL_ERROR(read(1, position), exhausted, -1);
  position = VBFStackInterface::position_continue;
  EXPECT_VREL_ERROR(read(1, position), exhausted, -1);
  position = 98;
  EXPECT_THAT(read(2, position), ElementsAre(98, 99));
  EXPECT_EQ(position, VBFStackInterface::position_exhausted);
  position = 0;
  EXPECT_THAT(read(all, position), SizeIs(100));
  EXPECT_EQ(position, VBFStackInterface::position_exhausted);
}

TEST_P(ReadingTest, BehindTheEndIsRefused) {
  for (const int behind : {100, 101, 2147483647, -3, -2147483647}) {
    position = behind;
    EXPECT_VREL_ERROR(read(1, position), beyond, -1);
    EXPECT_EQ(position, behind);
  }
}

TEST_P(ReadingTest, AnExhaustedPositionIsToldBeforeAClosedFileAndThatBeforeAllElse) {
  file->close();
  position = VBFStackInterface::position_exhausted;
  EXPECT_VREL_ERROR(read(1, position), exhausted, -1);
  position = 1000;
  char sample = 0;
  constexpr int cplx_uint8 = 0x40000001;
  EXPECT_VREL_ERROR(stack->read(cplx_uint8, &sample, &sample, 1, position),
                    "Cannot access VBFStack, file has been closed!", -1);
}

TEST_P(ReadingTest, OfNothingDoesNothing) {
  for (const int anywhere : {0, 42, 100, 1000}) {
    position = anywhere;
    EXPECT_THAT(read(0, position), IsEmpty());
    EXPECT_EQ(position, anywhere);
  }
}

TEST_P(ReadingTest, HandlesReadAtTheirOwnPositions) {
  const stack_ptr other = file->get_stack(0);
  EXPECT_THAT(read(5, position), SizeIs(5));
  int other_position = VBFStackInterface::position_continue;
  unsigned char sample = 99;
  other->read(uint8, &sample, nullptr, 1, other_position);
  EXPECT_EQ(sample, 0);
  EXPECT_EQ(other_position, 1);
  EXPECT_THAT(read(2, position), ElementsAre(5, 6));
}

TEST_P(ReadingTest, InSmallPiecesGivesTheSame) {
  for (const unsigned chunk : {0U, 1U, 7U}) {
    if (chunk == 0 && GetParam() != 0) continue;  // zlib needs room
    file->set_chunk_size(chunk);
    position = 11;
    EXPECT_THAT(read(3, position), ElementsAre(11, 12, 13));
  }
}

INSTANTIATE_TEST_SUITE_P(RawAndCompressed, ReadingTest, testing::Values(0, 1, 9));

TEST(BFStackTest, ReadingBetweenWritesLeavesTheFileWhereItIs) {
  WrittenFile file;
  const stack_ptr first = file.add({3}, uint8);
  first->write(uint8, "abc", nullptr, 3);
  const stack_ptr second = file.add({4}, uint8);
  EXPECT_THAT(read_all<char>(first, uint8), ElementsAre('a', 'b', 'c'));
  second->write(uint8, "de", nullptr, 2);
  EXPECT_THAT(read_all<char>(first, uint8), ElementsAre('a', 'b', 'c'));
  second->write(uint8, "fg", nullptr, 2);
  file.reopen();
  EXPECT_THAT(read_all<char>(file->get_stack(1), uint8), ElementsAre('d', 'e', 'f', 'g'));
}

int cancel(unsigned /*bytes*/, void* /*argument*/) { return 0; }

TEST(BFStackTest, AReadThatFailsLeavesTheFileWhereItIs) {
  WrittenFile file;
  const stack_ptr first = file.add({3}, uint8);
  first->write(uint8, "abc", nullptr, 3);
  const stack_ptr second = file.add({4}, uint8);
  second->write(uint8, "de", nullptr, 2);
  file->set_progress_callback(cancel, nullptr);
  EXPECT_VREL_ERROR(read_all<char>(first, uint8), "Cancelled by user!", -11);
  file->set_progress_callback(nullptr, nullptr);
  second->write(uint8, "fg", nullptr, 2);
  EXPECT_THAT(read_all<char>(second, uint8), ElementsAre('d', 'e', 'f', 'g'));
}

// What a callback was told, and what it answers.
struct Progress {
  std::vector<unsigned> pieces;
  std::size_t cancel_at = ~std::size_t{0};
};

int note_progress(unsigned bytes, void* argument) {
  auto* const progress = static_cast<Progress*>(argument);
  progress->pieces.push_back(bytes);
  return progress->pieces.size() == progress->cancel_at ? 0 : 1;
}

class ProgressTest : public testing::TestWithParam<int> {
 protected:
  ProgressTest() {
    file->set_chunk_size(8);
    file->set_progress_callback(note_progress, &progress);
  }

  stack_ptr add(const std::vector<unsigned>& sizes) {
    const stack_ptr stack = file.add(sizes, uint16);
    stack->set_compression(GetParam() == 0 ? 0 : 1, GetParam());
    return stack;
  }

  WrittenFile file;
  Progress progress;
  std::vector<unsigned short> samples = ramp<unsigned short>(10);
};

TEST_P(ProgressTest, EveryPieceIsToldInBytesAsStored) {
  const stack_ptr stack = add({10});
  stack->write(uint16, samples.data(), nullptr, 10);
  EXPECT_THAT(progress.pieces, ElementsAre(8, 8, 4));
  progress.pieces.clear();
  read_all<double>(stack, real);
  EXPECT_THAT(progress.pieces, ElementsAre(8, 8, 4));
  file->set_progress_callback(nullptr, nullptr);
  read_all<double>(stack, real);
  EXPECT_THAT(progress.pieces, SizeIs(3));
}

TEST_P(ProgressTest, ACancelledStackIsUnfinished) {
  const stack_ptr stack = add({10});
  progress.cancel_at = 3;
  EXPECT_VREL_ERROR(stack->write(uint16, samples.data(), nullptr, 10), "Cancelled by user!", -11);
  EXPECT_EQ(stack->get_state(), 2);
  EXPECT_VREL_ERROR(file->finish(), not_enough, -1);
  EXPECT_THAT(file.record().stacks, IsEmpty());
}

TEST_P(ProgressTest, WhoGoesOnPassesTheCancelledPieceAgain) {
  const stack_ptr stack = add({10});
  progress.cancel_at = 2;
  EXPECT_VREL_ERROR(stack->write(uint16, samples.data(), nullptr, 10), "Cancelled by user!", -11);
  file->set_chunk_size(6);
  stack->write(uint16, samples.data() + 4, nullptr, 6);
  EXPECT_EQ(stack->get_state(), 0);
  EXPECT_THAT(read_all<unsigned short>(stack, uint16), samples);
}

TEST_P(ProgressTest, WhatAGrowingStackHasOfACancelledPieceCounts) {
  const stack_ptr stack = add({2, 0});
  progress.cancel_at = 2;
  EXPECT_VREL_ERROR(stack->write(uint16, samples.data(), nullptr, 10), "Cancelled by user!", -11);
  stack->commit(0);
  EXPECT_THAT(stack->get_sizes(), ElementsAre(2, 4));
  file.reopen();
  samples.resize(8);
  EXPECT_THAT(read_all<unsigned short>(file->get_stack(0), uint16), samples);
}

TEST_P(ProgressTest, AGrowingStackIsMeasuredWithWhatItHasOfACancelledPiece) {
  file->set_chunk_size(6);
  const stack_ptr stack = add({2, 0});
  progress.cancel_at = 2;
  EXPECT_VREL_ERROR(stack->write(uint16, samples.data(), nullptr, 10), "Cancelled by user!", -11);
  EXPECT_THAT(stack->get_sizes(), ElementsAre(2, 0));
  stack->commit(0);
  EXPECT_THAT(stack->get_sizes(), ElementsAre(2, 3));
  samples.resize(6);
  EXPECT_THAT(read_all<unsigned short>(stack, uint16), samples);
}

TEST_P(ProgressTest, ACancelledReadCanBeDoneAgain) {
  const stack_ptr stack = add({10});
  stack->write(uint16, samples.data(), nullptr, 10);
  progress.pieces.clear();
  progress.cancel_at = 2;
  std::vector<unsigned short> read(10, 77);
  int position = 1;
  EXPECT_VREL_ERROR(stack->read(uint16, read.data(), nullptr, 9, position), "Cancelled by user!",
                    -11);
  EXPECT_THAT(read, ElementsAre(1, 2, 3, 4, 77, 77, 77, 77, 77, 77));
  EXPECT_EQ(position, 1);
  EXPECT_THAT(read_all<unsigned short>(stack, uint16), samples);
}

int close_file(unsigned /*bytes*/, void* argument) {
  static_cast<VBFFileInterface*>(argument)->close();
  return 1;
}

TEST_P(ProgressTest, AFileThatItsCallbackClosesIsClosed) {
  const stack_ptr stack = add({10});
  stack->write(uint16, samples.data(), nullptr, 10);
  file->set_progress_callback(close_file, file.operator->());
  EXPECT_VREL_ERROR(read_all<unsigned short>(stack, uint16),
                    "Cannot access VBFStack, file has been closed!", -1);
}

TEST_P(ProgressTest, AFileThatItsCallbackClosesWhileItIsWrittenHasWhatWasThere) {
  const stack_ptr stack = add({2, 0});
  file->set_progress_callback(close_file, file.operator->());
  EXPECT_VREL_ERROR(stack->write(uint16, samples.data(), nullptr, 10),
                    "Cannot access VBFStack, file has been closed!", -1);
  EXPECT_EQ(stack->get_state(), 0);
  file.reopen();
  EXPECT_THAT(file->get_stack(0)->get_sizes(), ElementsAre(2, 2));
  samples.resize(4);
  EXPECT_THAT(read_all<unsigned short>(file->get_stack(0), uint16), samples);
}

int add_next(unsigned /*bytes*/, void* argument) {
  static_cast<VBFFileInterface*>(argument)->add_stack(true);
  return 1;
}

TEST_P(ProgressTest, AStackThatItsCallbackMakesCompleteTakesNoMore) {
  const stack_ptr stack = add({2, 0});
  file->set_progress_callback(add_next, file.operator->());
  EXPECT_VREL_ERROR(stack->write(uint16, samples.data(), nullptr, 10),
                    "Stack is already complete. Invalid call to write()!", -1);
  file->set_progress_callback(nullptr, nullptr);
  EXPECT_EQ(stack->get_state(), 0);
  EXPECT_THAT(stack->get_sizes(), ElementsAre(2, 2));
  samples.resize(4);
  EXPECT_THAT(read_all<unsigned short>(file->get_stack(0), uint16), samples);
}

INSTANTIATE_TEST_SUITE_P(RawAndCompressed, ProgressTest, testing::Values(0, 1));

TEST(BFStackTest, AWriteBehindItsFileIsRefused) {
  WrittenFile file;
  const stack_ptr stack = file.add({2, 0}, uint8);
  stack->write(uint8, "ab", nullptr, 2);
  file->close();
  EXPECT_VREL_ERROR(stack->write(uint8, "cd", nullptr, 2),
                    "Cannot access VBFStack, file has been closed!", -1);
  EXPECT_EQ(stack->get_state(), 0);
}

}  // namespace
