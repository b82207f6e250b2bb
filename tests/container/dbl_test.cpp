#include <gtest/gtest.h>
#include <malloc.h>
#include <unistd.h>
#include <vrelio/container/bf_file.h>
#include <vrelio/container/chain.h>

#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "container/dbl_samples.h"
#include "support/expect_error.h"
#include "support/temporary_file.h"

namespace {

using namespace Vrel::testing;

constexpr Dims dims_24 = {3, 2, 4, 1};
constexpr int type_single = 64;
constexpr int type_double = 128;

std::string double_file(const Dims& dims, const std::vector<double>& samples) {
  return dbl_header(dims, some_lengths, 0) + bytes_of(samples);
}

std::string single_file(const Dims& dims, const std::vector<double>& samples) {
  return dbl_header(dims, some_lengths, 1) + bytes_of(narrowed(samples));
}

int write(const TemporaryFile& file, const Dims& dims, const double* samples, int single) {
  return vrel_dbl_write(file.path().c_str(), dims.data(), some_lengths.data(), samples, single);
}

TEST(DblTest, DoublesAreWrittenByteForByte) {
  const TemporaryFile file;
  EXPECT_EQ(write(file, {258, 2, 1, 1}, some_samples(516).data(), 0), 1);
  EXPECT_EQ(file.content(), double_file({258, 2, 1, 1}, some_samples(516)));
}

TEST(DblTest, FloatsAreNarrowedAndWrittenByteForByte) {
  const TemporaryFile file;
  EXPECT_EQ(write(file, dims_24, some_samples(24).data(), 1), 1);
  EXPECT_EQ(file.content(), single_file(dims_24, some_samples(24)));
}

// Intended: only 1 converts; other numbers are for callers whose samples are floats already.
TEST(DblTest, AnotherPrecisionTakesFloatsAsTheyAre) {
  const TemporaryFile file;
  const std::vector<double> samples = some_samples(12);
  EXPECT_EQ(write(file, dims_24, samples.data(), 2), 1);
  EXPECT_EQ(file.content(), dbl_header(dims_24, some_lengths, 1) + bytes_of(samples));
}

TEST(DblTest, AFileOfThatNameIsReplaced) {
  const TemporaryFile file(std::string(1000, 'x'));
  EXPECT_EQ(write(file, {1, 1, 1, 1}, some_samples(1).data(), 0), 1);
  EXPECT_EQ(file.content(), double_file({1, 1, 1, 1}, some_samples(1)));
}

TEST(DblTest, SizesThatTheFieldsCannotHoldTouchNoFile) {
  const double sample = 0;
  for (const Dims& dims : {Dims{65536, 1, 1, 1}, Dims{1, -1, 1, 1}, Dims{1, 1, 65536, 0},
                           Dims{65535, 65535, 2, 1}, Dims{65535, 65535, 65535, 65535}}) {
    const TemporaryFile file("kept");
    EXPECT_EQ(write(file, dims, &sample, 0), 0);
    EXPECT_EQ(file.content(), "kept");
  }
}

TEST(DblTest, AFileThatSomebodyHoldsOpenIsNotReplaced) {
  const TemporaryFile file("kept");
  const VFile holder(file.name(), VFile::mode_read);
  EXPECT_EQ(write(file, {1, 1, 1, 1}, some_samples(1).data(), 0), 0);
  EXPECT_EQ(file.content(), "kept");
}

TEST(DblTest, AFileThatCannotBeMadeGivesZero) {
  const TemporaryFile file;
  const std::string path = file.directory() + "/none/file.dbl";
  const double sample = 0;
  const Dims dims = {1, 1, 1, 1};
  EXPECT_EQ(vrel_dbl_write(path.c_str(), dims.data(), some_lengths.data(), &sample, 0), 0);
}

TEST(DblTest, NoSamplesMakeAFileOfAHeader) {
  const TemporaryFile file;
  EXPECT_EQ(write(file, {0, 5, 1, 1}, nullptr, 1), 1);
  EXPECT_EQ(file.content(), dbl_header({0, 5, 1, 1}, some_lengths, 1));
  DblReading reading(file.path(), 0xAF);
  EXPECT_EQ(reading.result, 2);
  EXPECT_NE(reading.place, nullptr);
}

TEST(DblTest, AFileThatDoesNotExistGivesZeroAndChangesNothing) {
  const TemporaryFile file;
  const DblReading reading(file.path(), 0xA0);
  EXPECT_EQ(reading.result, 0);
  EXPECT_EQ(reading.dims, (Dims{-1, -1, -1, -1}));
  EXPECT_EQ(reading.lengths, (Lengths{-1, -1, -1, -1}));
}

TEST(DblTest, AHeaderOfFewerThan128BytesGivesZeroAndTouchesNoData) {
  const std::string whole = double_file({1, 1, 1, 1}, some_samples(1));
  for (const std::size_t size : {0U, 1U, 127U}) {
    const TemporaryFile file(whole.substr(0, size));
    for (const int code : {0xA0, 0xAA, 0xAB, 0xAC, 0xAE, 0xAF, 0}) {
      std::vector<double> room(1, 77);
      const bool has_room = code >= 0xAA && code <= 0xAC;
      const DblReading reading(file.path(), code, has_room ? room.data() : nullptr);
      EXPECT_EQ(reading.result, 0);
      EXPECT_EQ(reading.lengths, (Lengths{-1, -1, -1, -1}));
      EXPECT_EQ(room[0], 77);
    }
  }
}

TEST(DblTest, AFolderGivesZero) {
  const TemporaryFile file;
  EXPECT_EQ(DblReading(file.directory(), 0xA0).result, 0);
}

TEST(DblTest, TheHeaderAloneTellsSizesLengthsAndPrecision) {
  const TemporaryFile doubles(double_file({3, 2, 40000, 65535}, {}));
  const TemporaryFile singles(single_file({3, 2, 40000, 65535}, {}));
  for (const int code : {0xA0, 0xAD}) {
    const DblReading reading(doubles.path(), code);
    EXPECT_EQ(reading.result, 1);
    EXPECT_EQ(reading.dims, (Dims{3, 2, 40000, 65535}));
    EXPECT_EQ(reading.lengths, some_lengths);
    EXPECT_EQ(DblReading(singles.path(), code).result, 2);
  }
}

TEST(DblTest, AnyPrecisionByteButOneIsDouble) {
  const TemporaryFile file(dbl_header({1, 1, 1, 1}, some_lengths, 2) + bytes_of(some_samples(1)));
  const DblReading reading(file.path(), 0xAF);
  EXPECT_EQ(reading.result, 1);
  EXPECT_EQ(reading.samples<double>(1), some_samples(1));
}

TEST(DblTest, WhatStandsInTheUndefinedBytesIsIgnored) {
  std::string bytes = double_file({1, 1, 1, 1}, some_samples(1));
  for (std::size_t i = 25; i < 128; ++i) bytes[i] = 'x';
  const TemporaryFile file(bytes);
  EXPECT_EQ(DblReading(file.path(), 0xAF).samples<double>(1), some_samples(1));
}

struct ReadingCase {
  int code;
  bool is_file_single;
  int result;
};

// Which samples come out for each code and each precision of the file.
const ReadingCase reading_cases[] = {
    {0xAA, false, 2}, {0xAA, true, 2},  {0xAB, false, 1}, {0xAB, true, 2},  {0xAC, false, 1},
    {0xAC, true, 1},  {0xAE, false, 2}, {0xAE, true, 2},  {0xAF, false, 1}, {0xAF, true, 2},
    {0, false, 1},    {0, true, 1},     {0xB0, false, 1}, {-1, true, 1}};

TEST(DblTest, EachCodeGivesItsPrecision) {
  constexpr std::size_t count = 100000;
  const Dims dims = {100, 10, 10, 10};
  const std::vector<double> samples = some_samples(count);
  const TemporaryFile doubles(double_file(dims, samples));
  const TemporaryFile singles(single_file(dims, samples));
  for (const ReadingCase& row : reading_cases) {
    SCOPED_TRACE(testing::Message() << "code " << row.code << " single " << row.is_file_single);
    const bool has_room = row.code >= 0xAA && row.code <= 0xAC;
    // No byte behind the samples is touched.
    const std::size_t sample_size = row.result == 1 ? sizeof(double) : sizeof(float);
    std::string room(count * sample_size + 8, '~');
    const DblReading reading(row.is_file_single ? singles.path() : doubles.path(), row.code,
                             has_room ? room.data() : nullptr);
    ASSERT_EQ(reading.result, row.result);
    EXPECT_EQ(reading.lengths, some_lengths);
    EXPECT_EQ(reading.dims, has_room ? (Dims{-1, -1, -1, -1}) : dims);
    if (has_room) {
      EXPECT_EQ(reading.place, room.data());
    }
    EXPECT_EQ(room.substr(count * sample_size), "~~~~~~~~");
    const bool is_narrow = row.is_file_single || row.result == 2;
    const std::vector<double> expected = is_narrow ? widened(narrowed(samples)) : samples;
    if (row.result == 1) {
      EXPECT_TRUE(reading.samples<double>(count) == expected);
    } else {
      EXPECT_TRUE(widened(reading.samples<float>(count)) == expected);
    }
  }
}

TEST(DblTest, ANarrowedBlockIsHalfAsLarge) {
  const TemporaryFile file(double_file({1000, 100, 1, 1}, some_samples(100000)));
  const DblReading reading(file.path(), 0xAE);
  ASSERT_EQ(reading.result, 2);
  EXPECT_LT(malloc_usable_size(reading.place), 100000 * sizeof(double) * 3 / 4);
}

// Intended: the sizes alone count; a file that ends before them is none the worse for it.
TEST(DblTest, SamplesThatTheFileDoesNotHaveAreZerosInANewBlock) {
  const std::string whole = double_file({10, 1, 1, 1}, some_samples(10));
  const TemporaryFile file(whole.substr(0, 128 + 4 * 8 + 3));
  std::vector<double> expected = some_samples(4);
  expected.resize(10);
  const DblReading as_double(file.path(), 0);
  EXPECT_EQ(as_double.result, 1);
  EXPECT_EQ(std::vector<double>(as_double.samples<double>(4)), some_samples(4));
  EXPECT_EQ(as_double.samples<double>(10)[5], 0);
  EXPECT_EQ(widened(DblReading(file.path(), 0xAE).samples<float>(10)), widened(narrowed(expected)));
}

TEST(DblTest, SamplesThatTheFileDoesNotHaveLeaveTheRoomOfTheCallerAlone) {
  const TemporaryFile file(double_file({10, 1, 1, 1}, some_samples(4)));
  std::vector<double> room(10, 77);
  EXPECT_EQ(DblReading(file.path(), 0xAC, room.data()).result, 1);
  std::vector<double> expected = some_samples(4);
  expected.resize(10, 77);
  EXPECT_EQ(room, expected);
}

TEST(DblTest, RoomForSamplesIsNotTakenForSizes) {
  const TemporaryFile file(single_file({1, 1, 1, 1}, some_samples(1)));
  for (const int code : {0xAA, 0xAB}) {
    std::vector<float> room(4, 77);
    EXPECT_EQ(DblReading(file.path(), code, room.data()).result, 2);
    EXPECT_EQ(room, (std::vector<float>{0.1F, 77, 77, 77}));
  }
}

TEST(DblTest, HugeSizesOfATinyFileTakeNoMemory) {
  const TemporaryFile too_many(double_file({65535, 65535, 65535, 65535}, {}));
  const DblReading refused(too_many.path(), 0xAF);
  EXPECT_EQ(refused.result, 0);
  EXPECT_EQ(refused.dims, (Dims{65535, 65535, 65535, 65535}));
  const TemporaryFile many(single_file({65535, 10000, 1, 1}, some_samples(3)));
  const DblReading reading(many.path(), 0xAF);
  ASSERT_EQ(reading.result, 2);
  EXPECT_EQ(widened(reading.samples<float>(4)), (std::vector<double>{0.1F, 1.1F, 2.1F, 0}));
}

TEST(DblTest, AFileThatSomebodyHoldsOpenCanBeRead) {
  const TemporaryFile file(double_file({1, 1, 1, 1}, some_samples(1)));
  const VFile holder(file.name(), VFile::mode_read);
  EXPECT_EQ(DblReading(file.path(), 0xAF).result, 1);
}

// The same file under a name that a container is opened by.
class DblFile {
 public:
  explicit DblFile(const std::string& content, const std::string& ending = ".dbl")
      : file_(), path_(file_.path() + ending) {
    std::FILE* const stream = std::fopen(path_.c_str(), "wb");
    std::fwrite(content.data(), 1, content.size(), stream);
    std::fclose(stream);
  }
  std::wstring name() const { return {path_.begin(), path_.end()}; }
  const std::string& path() const { return path_; }

 private:
  TemporaryFile file_;
  std::string path_;
};

TEST(DblFileTest, OpensAsAFileWithOneRawStack) {
  const DblFile file(double_file(dims_24, some_samples(24)));
  VBFFile opened(file.name(), VFile::mode_read);
  EXPECT_TRUE(opened->is_open());
  EXPECT_FALSE(opened->is_attached());
  EXPECT_EQ(opened->get_mode(), VFile::mode_read);
  ASSERT_EQ(opened->get_number_of_stacks(), 1U);
  std::string text = "x";
  opened->get_description(text);
  EXPECT_EQ(text, "");
  const auto stack = opened->get_stack(0);
  EXPECT_EQ(stack->get_state(), 0);
  EXPECT_EQ(stack->get_sizes(), (std::vector<unsigned>{3, 2, 4}));
  EXPECT_EQ(stack->get_dt(), type_double);
  EXPECT_EQ(stack->get_length(0), 1.5);
  EXPECT_EQ(stack->get_length(1), -2.0);
  EXPECT_EQ(stack->get_length(2), 0.0);
  EXPECT_TRUE(stack->get_tag_keys().empty());
  int type = -1;
  int level = -1;
  stack->get_compression(type, level);
  EXPECT_EQ(type, 0);
  EXPECT_VREL_ERROR(stack->set_name("n"), "Cannot set values. Object locked!", -1);
  std::vector<double> samples(24);
  stack->read(type_double, samples.data(), nullptr);
  EXPECT_EQ(samples, some_samples(24));
  opened->seek_to_stack_end(0);
  opened->close();
  EXPECT_VREL_ERROR(stack->read(type_double, samples.data(), nullptr),
                    "Cannot access VBFStack, file has been closed!", -1);
}

TEST(DblFileTest, SamplesAreReadFromByte128OnAndConverted) {
  const DblFile file(single_file({5, 1, 1, 1}, some_samples(5)));
  const auto stack = VBFFile(file.name(), VFile::mode_read)->read_stack(0, 4);
  EXPECT_EQ(stack->get_sizes(), (std::vector<unsigned>{5}));
  const auto* const samples = reinterpret_cast<const unsigned short*>(stack->get_data_ptr());
  EXPECT_EQ(std::vector<unsigned short>(samples, samples + 5),
            (std::vector<unsigned short>{0, 1, 2, 3, 4}));
}

TEST(DblFileTest, AnySampleIsReadByItsPosition) {
  const DblFile file(single_file(dims_24, some_samples(24)));
  VBFFile opened(file.name(), VFile::mode_read);
  const auto stack = opened->get_stack(0);
  EXPECT_EQ(stack->get_dt(), type_single);
  float sample = 0;
  int position = 17;
  stack->read(type_single, &sample, nullptr, 1, position);
  EXPECT_EQ(sample, 17.1F);
  EXPECT_EQ(position, 18);
  stack->read(type_single, &sample, nullptr, 1, position);
  EXPECT_EQ(sample, 18.1F);
}

TEST(DblFileTest, ItsStackEndsBehindTheSamplesThatCount) {
  const DblFile file(double_file({3, 1, 4, 1}, some_samples(12)));
  VBFFile opened(file.name(), VFile::mode_read);
  opened->seek_to_stack_end(0);
  const int descriptor = VFile::to_descriptor(opened->detach());
  EXPECT_EQ(::lseek(descriptor, 0, SEEK_CUR), 128 + 3 * 8);
  ::close(descriptor);
}

TEST(DblFileTest, TheFirstSizeBelowTwoEndsTheDimensions) {
  const DblFile file(double_file({3, 1, 4, 1}, some_samples(12)));
  VBFFile opened(file.name(), VFile::mode_read);
  const auto stack = opened->get_stack(0);
  EXPECT_EQ(stack->get_sizes(), (std::vector<unsigned>{3}));
  std::vector<double> samples(3);
  stack->read(type_double, samples.data(), nullptr);
  EXPECT_EQ(samples, some_samples(3));
  EXPECT_EQ(DblReading(file.path(), 0xAF).samples<double>(12), some_samples(12));
}

TEST(DblFileTest, ASingleSampleHasNoDimension) {
  const DblFile file(double_file({1, 7, 1, 1}, some_samples(7)));
  VBFFile opened(file.name(), VFile::mode_read);
  const auto stack = opened->get_stack(0);
  EXPECT_EQ(stack->get_rank(), 0U);
  double sample = 0;
  stack->read(type_double, &sample, nullptr);
  EXPECT_EQ(sample, 0.1);
}

TEST(DblFileTest, AFirstSizeOfZeroLeavesNoDimensionAndASampleThatTheFileDoesNotHave) {
  const DblFile file(double_file({0, 5, 1, 1}, {}));
  VBFFile opened(file.name(), VFile::mode_read);
  const auto stack = opened->get_stack(0);
  EXPECT_EQ(stack->get_rank(), 0U);
  double sample = 0;
  EXPECT_VREL_ERROR(stack->read(type_double, &sample, nullptr), "Failed reading 8 bytes from file!",
                    -3);
}

TEST(DblFileTest, NothingCanBeWrittenToIt) {
  const std::string bytes = double_file({2, 1, 1, 1}, some_samples(2));
  const DblFile file(bytes);
  VBFFile opened(file.name(), VFile::mode_read);
  EXPECT_VREL_ERROR(opened->add_stack(false), "File not open for writing!", -1);
  EXPECT_VREL_ERROR(opened->set_description("text"),
                    "Read-only handle specified in write function!", -9);
  EXPECT_VREL_ERROR(opened->get_stack(0)->commit(0),
                    "Stack is already complete. Invalid call to write()!", -1);
  opened->close();
  std::ifstream stream(file.path(), std::ios::binary);
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(stream), {}), bytes);
}

TEST(DblFileTest, AllFourSizesCount) {
  const DblFile file(double_file({2, 3, 2, 2}, some_samples(24)));
  VBFFile opened(file.name(), VFile::mode_read);
  EXPECT_EQ(opened->get_stack(0)->get_sizes(), (std::vector<unsigned>{2, 3, 2, 2}));
}

TEST(DblFileTest, WhatCannotBeReadIsTold) {
  const DblFile file(std::string(127, 'x'));
  EXPECT_VREL_ERROR(VBFFile(file.name(), VFile::mode_read), "Error reading .dbl file!", -4);
  const TemporaryFile none;
  EXPECT_VREL_ERROR(VBFFile(none.name() + L".dbl", VFile::mode_read), "Error reading .dbl file!",
                    -4);
  const std::wstring lone_surrogate = {wchar_t{0xD800}};
  EXPECT_VREL_ERROR(VBFFile(lone_surrogate + L".dbl", VFile::mode_read), "Error reading .dbl file!",
                    -4);
}

TEST(DblFileTest, SizesWhoseProductIsTooLargeAreRefused) {
  const DblFile file(double_file({65535, 65535, 65535, 1}, {}));
  VBFFile opened;
  EXPECT_VREL_ERROR(opened->open(file.name(), VFile::mode_read),
                    "The product exceeds the maximum size.", -1);
  EXPECT_FALSE(opened->is_open());
}

TEST(DblFileTest, SamplesThatTheFileDoesNotHaveAreAnErrorOfReading) {
  const DblFile file(double_file({10, 1, 1, 1}, some_samples(4)));
  VBFFile opened(file.name(), VFile::mode_read);
  std::vector<double> samples(10);
  EXPECT_VREL_ERROR(opened->get_stack(0)->read(type_double, samples.data(), nullptr),
                    "Failed reading 80 bytes from file!", -3);
}

TEST(DblFileTest, OtherEndingsAreVbfFiles) {
  for (const char* const ending : {".DBL", ".dbl2", "dbl", ".db"}) {
    const DblFile file(double_file({1, 1, 1, 1}, some_samples(1)), ending);
    EXPECT_VREL_ERROR(VBFFile(file.name(), VFile::mode_read), "No VBF file header found!", -4);
  }
}

TEST(DblFileTest, TheEndingCountsForReadingAlone) {
  const DblFile file(double_file({1, 1, 1, 1}, some_samples(1)));
  EXPECT_VREL_ERROR(VBFFile(file.name(), VFile::mode_modify), "No VBF file header found!", -4);
  VBFFile(file.name(), VFile::mode_create)->close();
  VFile made(file.name(), VFile::mode_read);
  Vrel::FileRecord record;
  Vrel::read_chain(made, record);
  EXPECT_TRUE(record.has_dictionary);
}

TEST(DblFileTest, AnOpenObjectKeepsItsFile) {
  const DblFile file(double_file({2, 1, 1, 1}, some_samples(2)));
  VBFFile opened(file.name(), VFile::mode_read);
  EXPECT_VREL_ERROR(opened->open(file.name(), VFile::mode_read), "File already open or attached!",
                    -1);
  EXPECT_EQ(opened->get_number_of_stacks(), 1U);
}

TEST(DblFileTest, AFileThatSomebodyHoldsOpenIsRefused) {
  const DblFile file(double_file({2, 1, 1, 1}, some_samples(2)));
  const VFile holder(file.name(), VFile::mode_read);
  VBFFile opened;
  EXPECT_VREL_ERROR(opened->open(file.name(), VFile::mode_read), "Could not open file!", -1);
  EXPECT_EQ(opened->get_number_of_stacks(), 0U);
}

}  // namespace
