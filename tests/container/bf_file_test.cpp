// The file object: opening, adding and handing out stacks, finishing and closing.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>
#include <vrelio/container/bf_file.h>
#include <vrelio/container/chain.h>
#include <vrelio/json/xml_reader.h>
#include <vrelio/stack/stack_imp.h>

#include <fcntl.h>
#include <boost/make_shared.hpp>
#include <numeric>
#include <string>
#include <vector>

#include "support/expect_error.h"
#include "support/golden.h"
#include "support/read_record.h"
#include "support/temporary_file.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;
using Vrel::FileRecord;
using Vrel::testing::golden;
using Vrel::testing::read_record;
using Vrel::testing::TemporaryFile;

constexpr int uint8 = 1;
constexpr int uint16 = 4;
constexpr const char* file_closed = "Cannot access VBFStack, file has been closed!";
constexpr const char* not_enough = "Not enough samples written!";

using stack_ptr = boost::shared_ptr<VBFStackInterface>;

// A complete stack of the samples 1, 2, 3.
stack_ptr add_probe(VBFFileInterface* file, const std::string& name) {
  const stack_ptr stack = file->add_stack(false);
  stack->create({3}, uint8);
  stack->set_name(name);
  const unsigned char samples[] = {1, 2, 3};
  stack->write(uint8, samples, nullptr, 3);
  return stack;
}

std::string read_probe(const stack_ptr& stack) {
  std::string samples(3, '?');
  stack->read(uint8, samples.data(), nullptr);
  return samples;
}

void write_probes(const TemporaryFile& target, const std::vector<std::string>& names) {
  VBFFile file(target.name(), VFile::mode_create);
  for (const std::string& name : names) add_probe(file, name);
  file->close();
}

std::vector<std::string> names_of(VBFFileInterface* file) {
  std::vector<std::string> names;
  for (unsigned i = 0; i < file->get_number_of_stacks(); ++i) {
    names.push_back(file->get_stack(i)->get_name());
  }
  return names;
}

std::string description_of(const VBFFile& file) {
  std::string text = "before";
  file->get_description(text);
  return text;
}

TEST(BFFileTest, WhatIsWrittenAndClosedIsReadBack) {
  const TemporaryFile target;
  {
    VBFFile file(target.name(), VFile::mode_create);
    file->set_description("two stacks");
    const stack_ptr plane = file->add_stack(false);
    plane->create({3, 2}, uint16);
    plane->set_name("plane");
    plane->set_description("of six samples");
    plane->set_len(0, 2.5);
    plane->set_off(1, -1.25);
    plane->set_labels({"X", "Y"});
    plane->set_units(0, si::value("nm"));
    plane->set_data_units(si::value("V"));
    plane->set_col_labels(1, {"upper", "lower"});
    plane->set_col_positions(0, {1.0, 2.0, 4.0});
    plane->set_tag("operator", "somebody");
    const unsigned short samples[] = {1, 2, 3, 4, 5, 60000};
    plane->write(uint16, samples, nullptr, 6);
    add_probe(file, "probe");
    file->close();
  }
  VBFFile file(target.name(), VFile::mode_read);
  EXPECT_EQ(description_of(file), "two stacks");
  ASSERT_THAT(names_of(file), ElementsAre("plane", "probe"));
  const stack_ptr plane = file->get_stack(0);
  EXPECT_EQ(plane->get_state(), 0);
  EXPECT_EQ(plane->get_description(), "of six samples");
  EXPECT_THAT(plane->get_sizes(), ElementsAre(3, 2));
  EXPECT_EQ(plane->get_dt(), uint16);
  EXPECT_THAT(plane->get_lengths(), ElementsAre(2.5, 1.0));
  EXPECT_THAT(plane->get_offsets(), ElementsAre(0.0, -1.25));
  EXPECT_THAT(plane->get_labels(), ElementsAre("X", "Y"));
  EXPECT_EQ(plane->get_units(0), si::value("nm"));
  EXPECT_EQ(plane->get_data_units(), si::value("V"));
  EXPECT_THAT(plane->get_col_labels(1), ElementsAre("upper", "lower"));
  EXPECT_THAT(plane->get_col_labels(0), IsEmpty());
  EXPECT_FALSE(plane->is_equidistant(0));
  EXPECT_TRUE(plane->is_equidistant(1));
  EXPECT_THAT(plane->get_col_positions(0), ElementsAre(1.0, 2.0, 4.0));
  EXPECT_EQ(plane->get_tag("operator"), "somebody");
  std::vector<unsigned short> samples(6);
  plane->read(uint16, samples.data(), nullptr);
  EXPECT_THAT(samples, ElementsAre(1, 2, 3, 4, 5, 60000));
  EXPECT_EQ(read_probe(file->get_stack(1)), "\1\2\3");
}

TEST(BFFileTest, AFileClosedAtOnceHasNoStackAndItsMetadata) {
  const TemporaryFile target;
  VBFFile file(target.name(), VFile::mode_create);
  file->set_description("empty");
  file->close();
  const FileRecord record = read_record(target.content());
  EXPECT_EQ(record.description, "empty");
  EXPECT_THAT(record.stacks, IsEmpty());
  EXPECT_EQ(record.dictionary_position, 26u + 5 + 8);
  EXPECT_EQ(record.dictionary_end, target.content().size());
  ASSERT_THAT(record.dictionary, SizeIs(1));
  EXPECT_THAT(record.dictionary.at("ome_xml"),
              StartsWith("<?xml version=\"1.0\" encoding=\"UTF-8\"?><ome:OME xmlns:ome="));
}

TEST(BFFileTest, AFileThatIsOnlyDestroyedIsWrittenAllTheSame) {
  const TemporaryFile target;
  { add_probe(VBFFile(target.name(), VFile::mode_create), "probe"); }
  const FileRecord record = read_record(target.content());
  EXPECT_TRUE(record.has_dictionary);
  EXPECT_THAT(record.stacks, SizeIs(1));
}

TEST(BFFileTest, TheHeaderIsWrittenWithTheFirstStack) {
  const TemporaryFile target;
  VBFFile file(target.name(), VFile::mode_create);
  EXPECT_EQ(target.content(), "");
  file->add_stack(false);
  EXPECT_EQ(target.content(), std::string("VREL_BF\n\xFF\xFF\2\0\0\0", 14) + std::string(20, '\0'));
}

TEST(BFFileTest, CreatorAndUuidStandInTheMetadata) {
  const TemporaryFile target;
  VBFFile file(target.name(), VFile::mode_create);
  file->set_creator("a <program>");
  file->close();
  EXPECT_THAT(read_record(target.content()).dictionary.at("ome_xml"),
              HasSubstr("<ome:OME Creator=\"a &lt;program&gt;\" xmlns:ome="));
}

TEST(BFFileTest, ImagesOfTheDocumentStandInTheMetadata) {
  const TemporaryFile target;
  VBFFile file(target.name(), VFile::mode_create);
  const auto image = file->meta_data().Image.append();
  image->Name = Json::Value("<&>");
  image->Description = Json::Value("");
  file->close();
  const std::string text = read_record(target.content()).dictionary.at("ome_xml");
  EXPECT_THAT(text, HasSubstr("<ome:Image ID=\"Image:1\" Name=\"&lt;&amp;&gt;\">"));
  EXPECT_THAT(text, testing::Not(HasSubstr("ome:Description")));
}

TEST(BFFileTest, ADocumentThatIsNoXmlIsRefusedAtClosingUntilItIsOne) {
  const TemporaryFile target;
  VBFFile file(target.name(), VFile::mode_create);
  add_probe(file, "probe");
  file->meta_data().OME = Json::Object{{"Creator", Json::Array()}};
  EXPECT_STANDARD_ERROR(file->close(), std::invalid_argument, "No xml attribute");
  EXPECT_TRUE(file->is_open());
  const FileRecord before = read_record(target.content());
  EXPECT_THAT(before.stacks, SizeIs(1));
  EXPECT_FALSE(before.has_dictionary);
  file->set_creator("tests");
  file->close();
  EXPECT_THAT(read_record(target.content()).dictionary.at("ome_xml"),
              HasSubstr("<ome:OME Creator=\"tests\""));
}

int count_piece(unsigned /*bytes*/, void* argument) {
  ++*static_cast<int*>(argument);
  return 1;
}

TEST(BFFileTest, AClosedFileIsLikeANewOne) {
  const TemporaryFile target;
  VBFFile file(target.name(), VFile::mode_create);
  file->set_description("old");
  file->set_creator("old");
  file->set_default_compression(1, 6);
  file->set_chunk_size(1);
  add_probe(file, "old");
  file->close();
  EXPECT_FALSE(file->is_open());
  EXPECT_EQ(file->get_mode(), VFile::mode_none);
  EXPECT_EQ(file->get_number_of_stacks(), 0u);
  EXPECT_EQ(description_of(file), "");
  EXPECT_TRUE(file->meta_data().Creator.value().is_null());
  file->close();
  file->open(target.name(), VFile::mode_create);
  const stack_ptr stack = add_probe(file, "new");
  int type = -1;
  int level = -1;
  stack->get_compression(type, level);
  EXPECT_EQ(type, 0);
  int pieces = 0;
  file->set_progress_callback(count_piece, &pieces);
  read_probe(stack);
  EXPECT_EQ(pieces, 1);
  file->close();
  EXPECT_THAT(read_record(target.content()).description, "");
  file->open(target.name(), VFile::mode_read);
  read_probe(file->get_stack(0));
  EXPECT_EQ(pieces, 1);
}

TEST(BFFileTest, TheSameHandleOpensOneFileAfterTheOther) {
  const TemporaryFile first;
  const TemporaryFile second;
  VBFFile file(first.name(), VFile::mode_create);
  add_probe(file, "first");
  file.open(second.name(), VFile::mode_create);
  EXPECT_EQ(file->get_number_of_stacks(), 0u);
  file.open(first.name(), VFile::mode_read);
  EXPECT_THAT(names_of(file), ElementsAre("first"));
  file.open(first.name(), VFile::mode_read);
  EXPECT_THAT(names_of(file), ElementsAre("first"));
}

TEST(BFFileTest, ACopyOfTheHandleKeepsTheFileOpen) {
  const TemporaryFile target;
  write_probes(target, {"probe"});
  VBFFile copy;
  {
    const VBFFile file(target.name(), VFile::mode_read);
    copy = file;
  }
  EXPECT_TRUE(copy->is_open());
  EXPECT_THAT(names_of(copy), ElementsAre("probe"));
  const VBFFile other(copy);
  copy.reset();
  EXPECT_EQ(static_cast<VBFFileInterface*>(copy), nullptr);
  EXPECT_TRUE(other->is_open());
}

TEST(BFFileTest, OpeningAHandleAnewLeavesItsCopiesTheirFile) {
  const TemporaryFile first;
  const TemporaryFile second;
  write_probes(first, {"first"});
  write_probes(second, {"second"});
  VBFFile file(first.name(), VFile::mode_read);
  VBFFile copy(file);
  file.open(second.name(), VFile::mode_read);
  EXPECT_THAT(names_of(file), ElementsAre("second"));
  EXPECT_THAT(names_of(copy), ElementsAre("first"));
  EXPECT_EQ(read_probe(copy->get_stack(0)), "\1\2\3");
}

TEST(BFFileTest, WithoutAFileThereIsNothingToFinishOrToClose) {
  VBFFile file;
  file->finish();
  file->close();
  EXPECT_EQ(file->detach(), nullptr);
  EXPECT_EQ(file->get_mode(), VFile::mode_none);
  EXPECT_EQ(file->get_number_of_stacks(), 0u);
}

TEST(BFFileTest, AHandleGivesItsObject) {
  VBFFile file;
  const VBFFile& constant = file;
  EXPECT_EQ(file.shared().get(), static_cast<VBFFileInterface*>(file));
  EXPECT_EQ(file.shared().get(), static_cast<const VBFFileInterface*>(constant));
  EXPECT_FALSE(constant->is_open());
}

TEST(BFFileTest, AModeOutOfRangeIsRefusedBeforeTheFileIsTouched) {
  const TemporaryFile target;
  VBFFile file;
  for (const int mode : {-1, 3, 100}) {
    EXPECT_VREL_ERROR(file->open(target.name(), static_cast<VFile::mode>(mode)),
                      "Invalid opening mode!", -15);
  }
  void* handle = nullptr;
  EXPECT_VREL_ERROR(file->attach(handle, static_cast<VFile::mode>(7)), "Invalid opening mode!",
                    -15);
  EXPECT_FALSE(target.exists());
  EXPECT_FALSE(file->is_open());
}

TEST(BFFileTest, AFileThatDoesNotExistIsRefused) {
  const TemporaryFile target;
  EXPECT_VREL_ERROR(VBFFile(target.name(), VFile::mode_read), "Could not open file!", -1);
  EXPECT_VREL_ERROR(VBFFile(target.name(), VFile::mode_modify), "Could not open file!", -1);
  for (const wchar_t* const name : {L"", L"l", L"bl"}) {
    EXPECT_VREL_ERROR(VBFFile(name, VFile::mode_read), "Could not open file!", -1);
  }
}

TEST(BFFileTest, AnOpenFileIsNotOpenedAgain) {
  const TemporaryFile target;
  VBFFile file(target.name(), VFile::mode_create);
  const stack_ptr stack = add_probe(file, "probe");
  EXPECT_VREL_ERROR(file->open(target.name(), VFile::mode_read), "File already open or attached!",
                    -1);
  EXPECT_EQ(read_probe(stack), "\1\2\3");
}

TEST(BFFileTest, AFileWithoutTheMagicIsRefusedAndStaysOpen) {
  const TemporaryFile target("nothing of the kind, but long enough for a header");
  VBFFile file;
  EXPECT_VREL_ERROR(file->open(target.name(), VFile::mode_read), "No VBF file header found!", -4);
  EXPECT_TRUE(file->is_open());
  EXPECT_VREL_ERROR(file->add_stack(false), "File not open for writing!", -1);
  file->close();
  EXPECT_FALSE(file->is_open());
}

// The bytes of a file with the complete stacks "a" and "b".
std::string two_probes() {
  const TemporaryFile target;
  write_probes(target, {"a", "b"});
  return target.content();
}

TEST(BFFileTest, TheStacksInFrontOfADamageAreThere) {
  std::string bytes = two_probes();
  bytes[read_record(bytes).stacks[1].stack_position] = 'x';
  const TemporaryFile target(bytes);
  VBFFile file;
  EXPECT_VREL_ERROR(file->open(target.name(), VFile::mode_read), "Stack header not in vbf format!",
                    -4);
  EXPECT_THAT(names_of(file), ElementsAre("a"));
  EXPECT_VREL_ERROR(VBFFile().open(target.name(), VFile::mode_read), "Could not open file!", -1);
  file->close();
}

TEST(BFFileTest, WhatIsWrongWithAStackComesBeforeWhatIsWrongBehindIt) {
  std::string bytes = two_probes();
  const FileRecord record = read_record(bytes);
  bytes[bytes.find("<root")] = 'x';
  bytes[record.stacks[1].stack_position] = 'x';
  const TemporaryFile target(bytes);
  try {
    const VBFFile file(target.name(), VFile::mode_read);
    ADD_FAILURE();
  } catch (const VrelError& error) {
    EXPECT_THAT(error.get_msg(), StartsWith("Invalid metadata found!\n"));
  }
}

TEST(BFFileTest, WhetherAStackWasMadeWithDataIsNotReadFromTheFile) {
  std::string bytes = two_probes();
  const std::size_t field = read_record(bytes).stacks[0].stack_position + 344;
  bytes.replace(field, 8, std::string("\0\0\0\0\xFF\xFF\xFF\xFF", 8));
  const TemporaryFile target(bytes);
  VBFFile file(target.name(), VFile::mode_read);
  EXPECT_EQ(read_probe(file->get_stack(0)), "\1\2\3");
}

TEST(BFFileTest, AnUnknownCompressionTypeInAFileIsRaw) {
  std::string bytes = two_probes();
  bytes[read_record(bytes).stacks[0].stack_position + 328] = 2;
  const TemporaryFile target(bytes);
  VBFFile file(target.name(), VFile::mode_read);
  EXPECT_EQ(read_probe(file->get_stack(0)), "\1\2\3");
  int type = -1;
  int level = -1;
  file->get_stack(0)->get_compression(type, level);
  EXPECT_EQ(type, 2);
}

TEST(BFFileTest, AStackOfAnUnknownTypeIsDescribedAndItsSamplesAreNotRead) {
  std::string bytes = two_probes();
  bytes[read_record(bytes).stacks[0].stack_position + 325] = 3;
  const TemporaryFile target(bytes);
  VBFFile file(target.name(), VFile::mode_read);
  const stack_ptr stack = file->get_stack(0);
  EXPECT_EQ(stack->get_name(), "a");
  EXPECT_EQ(stack->get_dt(), 0x301);
  EXPECT_THAT(stack->get_sizes(), ElementsAre(3));
  EXPECT_EQ(stack->get_size(0), 0u);
  std::string samples(3, '?');
  EXPECT_VREL_ERROR(stack->read(uint8, samples.data(), nullptr),
                    "Invalid on-the-fly conversion from 'none' to 'uint8'!", -1);
  EXPECT_VREL_ERROR(stack->read(0x301, samples.data(), nullptr),
                    "Invalid on-the-fly conversion from 'none' to 'none'!", -1);
  EXPECT_EQ(samples, "???");
  EXPECT_EQ(read_probe(file->get_stack(1)), "\1\2\3");
}

TEST(BFFileTest, ABrokenPositionIsRefused) {
  std::string bytes = two_probes();
  bytes[21] = '\xFF';
  const TemporaryFile target(bytes);
  EXPECT_VREL_ERROR(VBFFile(target.name(), VFile::mode_read),
                    "Invalid stack position specified in header!", -4);
}

TEST(BFFileTest, ADescriptionIsSetBeforeTheHeaderOnly) {
  const TemporaryFile target;
  VBFFile unopened;
  EXPECT_VREL_ERROR(unopened->set_description("x"), "Read-only handle specified in write function!",
                    -9);
  VBFFile file(target.name(), VFile::mode_create);
  file->set_description("first");
  file->set_description("second");
  file->finish();
  EXPECT_VREL_ERROR(file->set_description("third"),
                    "Header already written. Cannot set file description!", -1);
  EXPECT_EQ(description_of(file), "second");
  file->close();
  file.open(target.name(), VFile::mode_read);
  EXPECT_VREL_ERROR(file->set_description("x"), "Read-only handle specified in write function!",
                    -9);
  file.open(target.name(), VFile::mode_modify);
  EXPECT_VREL_ERROR(file->set_description("x"),
                    "Header already written. Cannot set file description!", -1);
}

TEST(BFFileTest, OnlyAFileOpenForWritingTakesStacks) {
  const TemporaryFile target;
  write_probes(target, {"probe"});
  EXPECT_VREL_ERROR(VBFFile()->add_stack(false), "File not open for writing!", -1);
  VBFFile file(target.name(), VFile::mode_read);
  EXPECT_VREL_ERROR(file->add_stack(true), "File not open for writing!", -1);
  const VStackImp stack(Ome::type_uint8, {1}, Ome::order_XYZTC);
  EXPECT_VREL_ERROR(file->write_stack(&stack, 0), "File not open for writing!", -1);
}

TEST(BFFileTest, AddingAStackCommitsTheLastOne) {
  const TemporaryFile target;
  VBFFile file(target.name(), VFile::mode_create);
  const stack_ptr empty = file->add_stack(true);
  empty->create({2, 2}, uint8);
  const stack_ptr full = file->add_stack(false);
  EXPECT_EQ(empty->get_state(), 0);
  full->create({2}, uint8);
  EXPECT_VREL_ERROR(file->add_stack(false), not_enough, -1);
  EXPECT_VREL_ERROR(file->finish(), not_enough, -1);
  EXPECT_VREL_ERROR(file->close(), not_enough, -1);
  EXPECT_TRUE(file->is_open());
  full->write(uint8, "ab", nullptr, 2);
  file->close();
  EXPECT_THAT(read_record(target.content()).stacks, SizeIs(2));
}

TEST(BFFileTest, DefaultCompressionIsForStacksAddedLater) {
  const TemporaryFile target;
  VBFFile file(target.name(), VFile::mode_create);
  const stack_ptr before = file->add_stack(true);
  before->create({1}, uint8);
  file->set_default_compression(1, 6);
  const stack_ptr behind = file->add_stack(true);
  behind->create({1}, uint8);
  file->close();
  const FileRecord record = read_record(target.content());
  ASSERT_THAT(record.stacks, SizeIs(2));
  EXPECT_EQ(record.stacks[0].header.compression_type, 0u);
  EXPECT_EQ(record.stacks[0].header.compression_level, 1);
  EXPECT_EQ(record.stacks[1].header.compression_type, 1u);
  EXPECT_EQ(record.stacks[1].header.compression_level, 6);
}

TEST(BFFileTest, AStackWithoutALayoutKeepsTheFileFromClosing) {
  const TemporaryFile target;
  VBFFile file(target.name(), VFile::mode_create);
  const stack_ptr stack = file->add_stack(false);
  EXPECT_VREL_ERROR(file->close(), "Stack not ready to be commited. Meta-information missing!", -1);
  stack->create(std::vector<unsigned>{0}, uint8);
  file->close();
  EXPECT_THAT(read_record(target.content()).stacks, SizeIs(1));
}

TEST(BFFileTest, AnUnfinishedStackIsReportedByTheDestructorAndStaysOutOfTheFile) {
  const TemporaryFile target;
  stack_ptr unfinished;
  {
    VBFFile file(target.name(), VFile::mode_create);
    add_probe(file, "probe");
    unfinished = file->add_stack(false);
    unfinished->create({3}, uint8);
    unfinished->write(uint8, "a", nullptr, 1);
    VrelError()("something else")(-7).process();
  }
  EXPECT_EQ(vrel_get_last_error(), -1);
  EXPECT_STREQ(vrel_get_last_error_string(), not_enough);
  EXPECT_VREL_ERROR(unfinished->write(uint8, "bc", nullptr, 2), file_closed, -1);
  VBFFile file(target.name(), VFile::mode_read);
  EXPECT_THAT(names_of(file), ElementsAre("probe"));
}

TEST(BFFileTest, AHandleThatOutlivesItsFileKeepsItsDescriptionOnly) {
  const TemporaryFile target;
  stack_ptr written;
  stack_ptr copied;
  stack_ptr read;
  {
    VBFFile file(target.name(), VFile::mode_create);
    written = add_probe(file, "probe");
    written->set_tag("key", "value");
    copied = file->get_stack(0);
    EXPECT_EQ(read_probe(copied), "\1\2\3");
    file->close();
    file->open(target.name(), VFile::mode_read);
    read = file->get_stack(0);
    int position = 0;
    char sample = 0;
    read->read(uint8, &sample, nullptr, 1, position);
  }
  for (const stack_ptr& stack : {written, copied, read}) {
    EXPECT_EQ(stack->get_name(), "probe");
    EXPECT_THAT(stack->get_sizes(), ElementsAre(3));
    EXPECT_VREL_ERROR(read_probe(stack), file_closed, -1);
    EXPECT_VREL_ERROR(stack->commit(0), file_closed, -1);
  }
  EXPECT_EQ(copied->get_tag("key"), "value");
}

TEST(BFFileTest, AnIndexThatIsNoStackIsNamed) {
  const TemporaryFile target;
  write_probes(target, {"a", "b"});
  VBFFile file(target.name(), VFile::mode_read);
  EXPECT_VREL_ERROR(file->get_stack(2), "Invalid stack index 2!", -4);
  EXPECT_VREL_ERROR(file->read_stack(77, 0), "Invalid stack index 77!", -4);
  EXPECT_VREL_ERROR(VBFFile()->get_stack(0), "Invalid stack index 0!", -4);
}

TEST(BFFileTest, AHandleStartsAtTheFirstSampleWhereverItsStackWasReadTo) {
  const TemporaryFile target;
  VBFFile file(target.name(), VFile::mode_create);
  const stack_ptr written = add_probe(file, "probe");
  VStackPosition place = written->get_stack_position();
  place.offset[0] = 2.5;
  written->set_stack_position(place);
  char sample = 0;
  int position = 0;
  written->read(uint8, &sample, nullptr, 1, position);
  const stack_ptr copy = file->get_stack(0);
  position = VBFStackInterface::position_continue;
  copy->read(uint8, &sample, nullptr, 1, position);
  EXPECT_EQ(sample, 1);
  position = VBFStackInterface::position_continue;
  written->read(uint8, &sample, nullptr, 1, position);
  EXPECT_EQ(sample, 2);
  EXPECT_EQ(copy->get_stack_position().offset[0], 2.5);
}

TEST(BFFileTest, ManyHandlesComeAndGo) {
  const TemporaryFile target;
  write_probes(target, {"probe"});
  VBFFile file(target.name(), VFile::mode_read);
  std::vector<stack_ptr> kept;
  for (int i = 0; i < 1000; ++i) {
    const stack_ptr stack = file->get_stack(0);
    if (i % 100 == 0) kept.push_back(stack);
  }
  file->close();
  for (const stack_ptr& stack : kept) EXPECT_VREL_ERROR(read_probe(stack), file_closed, -1);
}

TEST(BFFileTest, ACopyOfAStackUnderConstructionIsNoWayToWriteIt) {
  const TemporaryFile target;
  VBFFile file(target.name(), VFile::mode_create);
  const stack_ptr stack = file->add_stack(false);
  stack->create({3}, uint8);
  const stack_ptr copy = file->get_stack(0);
  EXPECT_EQ(copy->get_state(), 1);
  EXPECT_VREL_ERROR(copy->write(uint8, "abc", nullptr, 3), "Invalid call to on_stack_finished()!",
                    -1);
  EXPECT_VREL_ERROR(read_probe(copy), "Stack not committed to disk. Cannot read!", -1);
  EXPECT_VREL_ERROR(file->read_stack(0, 0), "Stack not committed to disk. Cannot read!", -1);
  stack->write(uint8, "abc", nullptr, 3);
  EXPECT_EQ(copy->get_state(), 1);
  EXPECT_EQ(read_probe(file->get_stack(0)), "abc");
}

TEST(BFFileTest, ModifyingAppendsStacksBehindTheOldDictionary) {
  const TemporaryFile target;
  write_probes(target, {"a", "b"});
  const std::string before = target.content();
  {
    VBFFile file(target.name(), VFile::mode_modify);
    EXPECT_THAT(names_of(file), ElementsAre("a", "b"));
    add_probe(file, "c");
    file->set_creator("second program");
    file->close();
  }
  const std::string after = target.content();
  const FileRecord record = read_record(after);
  ASSERT_THAT(record.stacks, SizeIs(3));
  EXPECT_EQ(record.stacks[2].stack_position, before.size());
  EXPECT_EQ(record.stacks[2].name, "c");
  EXPECT_EQ(record.dictionary_position, record.stacks[2].stack_end);
  EXPECT_THAT(record.dictionary.at("ome_xml"), HasSubstr("second program"));
  const FileRecord old = read_record(before);
  EXPECT_EQ(after.substr(old.dictionary_position, before.size() - old.dictionary_position),
            before.substr(old.dictionary_position));
}

TEST(BFFileTest, ModifyingAFileWithoutStacksLinksTheFirst) {
  const TemporaryFile target;
  write_probes(target, {});
  {
    VBFFile file(target.name(), VFile::mode_modify);
    add_probe(file, "first");
  }
  VBFFile file(target.name(), VFile::mode_read);
  EXPECT_THAT(names_of(file), ElementsAre("first"));
}

TEST(BFFileTest, ModifyingKeepsOtherEntriesOfTheDictionary) {
  std::string bytes = golden("no_stack");
  bytes.replace(bytes.find("ome_xml"), 7, "ome_old");
  const TemporaryFile target(bytes);
  {
    VBFFile file(target.name(), VFile::mode_modify);
    file->close();
  }
  const FileRecord record = read_record(target.content());
  EXPECT_EQ(record.description, "golden");
  ASSERT_THAT(record.dictionary, SizeIs(2));
  EXPECT_EQ(record.dictionary.at("ome_old"), "<OME/>");
  EXPECT_THAT(record.dictionary.at("ome_xml"), HasSubstr("ome:OME"));
}

// Intended: the text is replaced, since nobody has read it into the document.
TEST(BFFileTest, TheDocumentOfAFileIsNotReadAndModifyingReplacesIt) {
  const TemporaryFile target;
  {
    VBFFile file(target.name(), VFile::mode_create);
    file->set_creator("first program");
    file->close();
  }
  VBFFile file;
  for (const VFile::mode mode : {VFile::mode_read, VFile::mode_modify}) {
    file.open(target.name(), mode);
    EXPECT_TRUE(file->meta_data().Creator.value().is_null());
  }
  file->close();
  const std::string text = read_record(target.content()).dictionary.at("ome_xml");
  EXPECT_THAT(text, HasSubstr("<ome:OME xmlns:ome="));
  EXPECT_THAT(text, testing::Not(HasSubstr("first program")));
}

TEST(BFFileTest, AFileOfVersionOneStaysOne) {
  const TemporaryFile target(golden("no_stack_version_1"));
  {
    VBFFile file(target.name(), VFile::mode_modify);
    add_probe(file, "first");
    add_probe(file, "second");
    file->close();
  }
  const FileRecord record = read_record(target.content());
  EXPECT_EQ(record.header.format_version, 1u);
  ASSERT_THAT(record.stacks, SizeIs(2));
  EXPECT_EQ(record.stacks[1].stack_end, target.content().size());
}

TEST(BFFileTest, ReadingLeavesTheFileAsItIs) {
  const TemporaryFile target;
  write_probes(target, {"probe"});
  const std::string before = target.content();
  {
    VBFFile file(target.name(), VFile::mode_read);
    file->set_creator("nobody");
    read_probe(file->get_stack(0));
    file->finish();
    file->close();
  }
  EXPECT_EQ(target.content(), before);
}

// An open descriptor, as a program holds it that embeds a VBF file in a stream of its own.
class Stream {
 public:
  explicit Stream(const std::string& path)
      : descriptor_(::open(path.c_str(), O_RDWR | O_CREAT, 0600)) {}
  Stream(const Stream&) = delete;
  Stream& operator=(const Stream&) = delete;
  ~Stream() { ::close(descriptor_); }

  void* handle() const { return VFile::to_handle(descriptor_); }
  off_t position() const { return ::lseek(descriptor_, 0, SEEK_CUR); }
  void move(off_t position) const { ::lseek(descriptor_, position, SEEK_SET); }
  void write(const std::string& text) const {
    ASSERT_EQ(::write(descriptor_, text.data(), text.size()), static_cast<ssize_t>(text.size()));
  }

 private:
  int descriptor_;
};

TEST(BFFileTest, AFileStandsAnywhereInAStream) {
  const TemporaryFile target;
  const Stream stream(target.path());
  stream.write("in front");
  VBFFile file;
  EXPECT_TRUE(file->is_attached());
  void* handle = stream.handle();
  file->attach(handle, VFile::mode_create);
  EXPECT_TRUE(file->is_attached());
  add_probe(file, "a");
  add_probe(file, "b");
  const std::string before = target.content();
  EXPECT_VREL_ERROR(file->close(), "File not opened with open(), cannot close.", -1);
  EXPECT_EQ(target.content(), before);
  EXPECT_EQ(file->get_number_of_stacks(), 2u);
  EXPECT_EQ(file->detach(), stream.handle());
  EXPECT_FALSE(file->is_open());
  const auto end = static_cast<off_t>(target.content().size());
  EXPECT_EQ(stream.position(), end);
  stream.write("behind");
  stream.move(8);
  file->attach(handle, VFile::mode_read);
  EXPECT_EQ(stream.position(), 8 + 34);
  EXPECT_THAT(names_of(file), ElementsAre("a", "b"));
  EXPECT_EQ(read_probe(file->get_stack(1)), "\1\2\3");
  EXPECT_EQ(stream.position(), 8 + 34);
  file->seek_to_stack_end(0);
  const off_t second = stream.position();
  EXPECT_EQ(target.content().substr(static_cast<std::size_t>(second), 13), "VREL_BF_STACK");
  file->detach();
  EXPECT_EQ(stream.position(), end);
}

TEST(BFFileTest, WithoutADictionaryAReaderLeavesTheStreamBehindTheHeader) {
  std::string killed = two_probes();
  killed.replace(26, 8, 8, '\0');
  for (const std::string& bytes : {golden("no_stack_version_1"), killed}) {
    const TemporaryFile target(bytes);
    const Stream stream(target.path());
    void* handle = stream.handle();
    VBFFile file;
    file->attach(handle, VFile::mode_read);
    const off_t behind_header = stream.position();
    EXPECT_EQ(static_cast<u64>(behind_header), read_record(bytes).header_end);
    file->detach();
    EXPECT_EQ(stream.position(), behind_header);
  }
}

TEST(BFFileTest, AnAttachedFileThatIsOnlyDestroyedIsWrittenAndItsHandleStaysOpen) {
  const TemporaryFile target;
  const Stream stream(target.path());
  stream.write("in front");
  {
    void* handle = stream.handle();
    VBFFile file;
    file->attach(handle, VFile::mode_create);
    add_probe(file, "probe");
  }
  stream.write("behind");
  const std::string content = target.content();
  EXPECT_EQ(content.substr(content.size() - 6), "behind");
  stream.move(8);
  void* handle = stream.handle();
  VBFFile file;
  file->attach(handle, VFile::mode_modify);
  add_probe(file, "second");
  file->detach();
  stream.move(8);
  file->attach(handle, VFile::mode_read);
  EXPECT_THAT(names_of(file), ElementsAre("probe", "second"));
  file->detach();
}

TEST(BFFileTest, TheFirstStackOfAFileInsideAStreamIsLinkedFromItsHeader) {
  const TemporaryFile target;
  const Stream stream(target.path());
  stream.write("in front");
  void* handle = stream.handle();
  VBFFile file;
  for (const VFile::mode mode : {VFile::mode_create, VFile::mode_modify}) {
    stream.move(8);
    file->attach(handle, mode);
    if (mode == VFile::mode_modify) add_probe(file, "probe");
    file->detach();
  }
  stream.move(8);
  file->attach(handle, VFile::mode_read);
  EXPECT_THAT(names_of(file), ElementsAre("probe"));
  EXPECT_EQ(target.content().substr(0, 15), "in frontVREL_BF");
}

TEST(BFFileTest, AnOpenedFileIsNotAttached) {
  const TemporaryFile target;
  VBFFile file(target.name(), VFile::mode_create);
  EXPECT_FALSE(file->is_attached());
  void* const handle = file->detach();
  EXPECT_TRUE(file->is_attached());
  EXPECT_THAT(read_record(target.content()).has_dictionary, true);
  ::close(VFile::to_descriptor(handle));
}

TEST(BFFileTest, OnlyAReaderSeeksToTheEndOfAStack) {
  const TemporaryFile target;
  constexpr const char* reading_only =
      "File must be open in read mode to allow seeking to end of file!";
  VBFFile file;
  EXPECT_VREL_ERROR(file->seek_to_stack_end(0), reading_only, -1);
  file.open(target.name(), VFile::mode_create);
  add_probe(file, "probe");
  EXPECT_VREL_ERROR(file->seek_to_stack_end(0), reading_only, -1);
  file.open(target.name(), VFile::mode_read);
  EXPECT_VREL_ERROR(file->seek_to_stack_end(1), "Invalid stack number!", -1);
}

TEST(BFFileTest, TheEndOfAStackIsWhereItsFooterSays) {
  std::string bytes = two_probes();
  const auto stack = read_record(bytes).stacks[0];
  const std::size_t field = stack.data_position + stack.header.data_length + 1432;
  bytes.replace(field, 8, std::string("\x05\0\0\0\0\0\0\0", 8));
  TemporaryFile target(bytes);
  const Stream stream(target.path());
  void* handle = stream.handle();
  VBFFile file;
  file->attach(handle, VFile::mode_read);
  file->seek_to_stack_end(0);
  EXPECT_EQ(stream.position(), 5);
  file->detach();
  bytes[field + 7] = '\x80';
  const TemporaryFile refused(bytes);
  file->open(refused.name(), VFile::mode_read);
  EXPECT_VREL_ERROR(file->seek_to_stack_end(0), "Invalid stack position specified in header!", -4);
}

TEST(BFFileTest, AStackOfMemoryIsWrittenAndReadInOneGo) {
  const TemporaryFile target;
  VStackImp memory(Ome::type_uint16, {4, 3}, Ome::order_XYZTC);
  memory.set_name("memory");
  memory.set_label(0, "X");
  memory.set_len(0, 8.0);
  memory.set_units(1, si::value("s"));
  memory.set_data_units(si::value("V"));
  auto* const samples = reinterpret_cast<unsigned short*>(memory.get_data_ptr());
  std::iota(samples, samples + 12, static_cast<unsigned short>(7));
  {
    VBFFile file(target.name(), VFile::mode_create);
    file->set_default_compression(1, 6);
    file->write_stack(&memory, 0);
    file->write_stack(&memory, 128);
    EXPECT_EQ(file->get_stack(0)->get_state(), 0);
  }
  const FileRecord record = read_record(target.content());
  ASSERT_THAT(record.stacks, SizeIs(2));
  EXPECT_EQ(record.stacks[0].header.compression_level, 6);
  EXPECT_EQ(record.stacks[1].header.data_type, 128);
  // A unit that nobody has set is not made up.
  EXPECT_EQ(record.stacks[0].footer.units[0].factor, 1.0);
  EXPECT_EQ(record.stacks[0].footer.units[0].exponents[0].numerator, 0);
  VBFFile file(target.name(), VFile::mode_read);
  const boost::shared_ptr<VStackInterface> same = file->read_stack(0, 0);
  EXPECT_EQ(same->get_name(), "memory");
  EXPECT_EQ(same->get_dt(), uint16);
  EXPECT_EQ(same->get_length(0), 8.0);
  EXPECT_EQ(same->get_units(1), si::value("s"));
  EXPECT_EQ(same->get_data_units(), si::value("V"));
  const auto* const read = reinterpret_cast<const unsigned short*>(same->get_data_ptr());
  EXPECT_TRUE(std::equal(samples, samples + 12, read));
  const boost::shared_ptr<VStackInterface> narrow = file->read_stack(1, uint8);
  EXPECT_EQ(narrow->get_dt(), uint8);
  EXPECT_EQ(narrow->get_data_ptr()[11], 18);
}

TEST(BFFileTest, AStackOfMemoryTakesAllOfItsDescriptionAlong) {
  const TemporaryFile target;
  VStackImp memory(Ome::type_uint8, {2, 1, 1, 3, 1}, Ome::order_XYZTC);
  memory.set_description("of memory");
  memory.set_off(0, -2.5);
  memory.set_col_labels(3, {"a", "", "c"});
  memory.set_col_positions(3, {1.0, 2.0, 4.0});
  VStackPosition position = memory.get_stack_position();
  position.offset[4] = 12.5;
  memory.set_stack_position(position);
  {
    VBFFile file(target.name(), VFile::mode_create);
    file->write_stack(&memory, 0);
    EXPECT_EQ(file->read_stack(0, 0)->get_description(), "of memory");
  }
  VBFFile file(target.name(), VFile::mode_read);
  const boost::shared_ptr<VStackInterface> read = file->read_stack(0, 0);
  EXPECT_THAT(read->get_sizes(), ElementsAre(2, 1, 1, 3, 1));
  EXPECT_EQ(read->get_description(), "of memory");
  EXPECT_EQ(read->get_offset(0), -2.5);
  EXPECT_THAT(read->get_col_labels(3), ElementsAre("a", "", "c"));
  EXPECT_THAT(read->get_col_positions(3), ElementsAre(1.0, 2.0, 4.0));
  EXPECT_TRUE(read->is_equidistant(0));
  EXPECT_EQ(read->get_stack_position().offset[4], 12.5);
}

// Samples in memory have the types and sizes that `create` takes; a handle reads all others.
TEST(BFFileTest, WhatMemoryCannotDescribeIsReadAsWhatItCan) {
  const TemporaryFile target;
  {
    VBFFile file(target.name(), VFile::mode_create);
    const stack_ptr wide = file->add_stack(false);
    wide->create({2}, 0);
    const long long samples[] = {-7, 1LL << 40};
    wide->write(0x2000, samples, nullptr, 2);
    const stack_ptr deep = file->add_stack(false);
    deep->create({1, 1, 1, 1, 1, 0}, uint8);
    deep->write(uint8, "a", nullptr, 1);
    deep->commit(0);
  }
  VBFFile file(target.name(), VFile::mode_read);
  EXPECT_STANDARD_ERROR(file->read_stack(0, 0), std::invalid_argument, "Unsupported data type");
  const boost::shared_ptr<VStackInterface> read = file->read_stack(0, 128);
  const auto* const samples = reinterpret_cast<const double*>(read->get_data_ptr());
  EXPECT_EQ(samples[0], -7.0);
  EXPECT_EQ(samples[1], 1099511627776.0);
  EXPECT_STANDARD_ERROR(file->read_stack(1, 0), std::invalid_argument,
                        "Unsupported number of sizes");
}

TEST(BFFileTest, AStackOfMemoryWhoseBufferIsTooSmallLeavesTheFileAsItWas) {
  const TemporaryFile target;
  VBFFile file(target.name(), VFile::mode_create);
  VStackImp memory(Ome::type_uint8, {2}, Ome::order_XYZTC);
  EXPECT_VREL_ERROR(memory.create({1U << 30}, 64), "The size increases the maximum size", -1);
  EXPECT_VREL_ERROR(file->write_stack(&memory, 0), "Internal error!", -1);
  EXPECT_EQ(file->get_number_of_stacks(), 0u);
  EXPECT_EQ(target.content(), "");
}

TEST(BFFileTest, AStackOfMemoryThatCannotBeDescribedLeavesTheFileAsItWas) {
  const TemporaryFile target;
  VBFFile file(target.name(), VFile::mode_create);
  const VStackImp memory(Ome::type_uint8, {1}, Ome::order_XYZTC);
  EXPECT_STANDARD_ERROR(file->write_stack(&memory, 0x1000), std::invalid_argument,
                        "Unsupported data type");
  EXPECT_EQ(file->get_number_of_stacks(), 0u);
  file->close();
}

}  // namespace
