// Tags, and the metadata that carries a stack's position.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vrelio/container/bf_file.h>
#include <vrelio/foundation/data_type.h>
#include <vrelio/prop/prop.h>
#include <vrelio/prop/prop_array.h>
#include <vrelio/prop/prop_struct.h>

#include <complex>
#include <string>
#include <vector>

#include "container/stack_writing.h"
#include "support/expect_error.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;
using Vrel::testing::read_record;
using Vrel::testing::stack_ptr;
using Vrel::testing::TemporaryFile;
using Vrel::testing::WrittenFile;

constexpr int uint8 = 1;
constexpr int real = 0x80;
constexpr int value_of_any_kind = 0x4000;

class TagTest : public testing::Test {
 protected:
  TagTest() : stack(file->add_stack(true)) { stack->create({2, 3}, uint8); }

  // The stack as it stands in the file.
  stack_ptr reopened() {
    file.reopen();
    return file->get_stack(0);
  }

  template <class T>
  void expect_round_trip(int type, const T& value) {
    SCOPED_TRACE(type);
    stack->set_tag("tag", type, &value);
    T read{};
    stack->get_tag("tag", type, &read);
    EXPECT_EQ(read, value);
  }

  WrittenFile file;
  stack_ptr stack;
};

TEST_F(TagTest, TextsGoRound) {
  stack->set_tag("beta", "two");
  stack->set_tag("alpha", "one");
  stack->set_tag("beta", std::string("\0\xFF", 2));
  stack->set_tag("empty", "");
  const stack_ptr read = reopened();
  EXPECT_THAT(read->get_tag_keys(), ElementsAre("alpha", "beta", "empty"));
  EXPECT_EQ(read->get_tag("alpha"), "one");
  EXPECT_EQ(read->get_tag("beta"), std::string("\0\xFF", 2));
  EXPECT_EQ(read->get_tag("empty"), "");
}

TEST_F(TagTest, AMissingKeyIsNamed) {
  EXPECT_VREL_ERROR(stack->get_tag("no %s"), "Tag with key 'no %s' not found!", -1);
  double value = 0;
  EXPECT_VREL_ERROR(stack->get_tag("none", real, &value), "Tag with key 'none' not found!", -1);
  EXPECT_VREL_ERROR(stack->get_tag("none", 3, &value), "Tag with key 'none' not found!", -1);
  EXPECT_THAT(stack->get_tag_keys(), IsEmpty());
}

TEST_F(TagTest, AKeyIsNotEmpty) {
  EXPECT_VREL_ERROR(stack->set_tag("", "text"), "Tag keys cannot be empty!", -1);
  const double value = 1;
  EXPECT_VREL_ERROR(stack->set_tag("", real, &value), "Tag keys cannot be empty!", -1);
  EXPECT_THAT(stack->get_tag_keys(), IsEmpty());
}

TEST_F(TagTest, AValueIsItsXml) {
  const double value = 0.25;
  stack->set_tag("gain", real, &value);
  EXPECT_THAT(stack->get_tag("gain"), StartsWith("<root"));
  EXPECT_THAT(stack->get_tag("gain"), testing::HasSubstr("0.25"));
  const stack_ptr read = reopened();
  double back = 0;
  read->get_tag("gain", real, &back);
  EXPECT_EQ(back, 0.25);
}

TEST_F(TagTest, EveryNumberGoesRound) {
  expect_round_trip<unsigned char>(1, 200);
  expect_round_trip<char>(2, -100);
  expect_round_trip<unsigned short>(4, 60000);
  expect_round_trip<short>(8, -30000);
  expect_round_trip<unsigned>(0x10, 4000000000U);
  expect_round_trip<int>(0x20, -2000000000);
  expect_round_trip<float>(0x40, 0.5F);
  expect_round_trip<double>(0x80, -1e300);
  expect_round_trip<unsigned>(0x800, 4000000001U);
  expect_round_trip<unsigned long long>(0x1000, ~0ULL);
  expect_round_trip<long long>(0x2000, -9000000000000000000LL);
  expect_round_trip<bool>(0x10000, true);
  expect_round_trip<std::complex<unsigned char>>(0x40000001, {200, 1});
  expect_round_trip<std::complex<char>>(0x40000002, {-100, 1});
  expect_round_trip<std::complex<unsigned short>>(0x40000004, {60000, 1});
  expect_round_trip<std::complex<short>>(0x40000008, {-30000, 1});
  expect_round_trip<std::complex<unsigned>>(0x40000010, {4000000000U, 1});
  expect_round_trip<std::complex<int>>(0x40000020, {-2000000000, 1});
  expect_round_trip<std::complex<float>>(0x40000040, {0.5F, -0.25F});
  expect_round_trip<std::complex<double>>(0x40000080, {-1e300, 1e-300});
  expect_round_trip<std::complex<unsigned long long>>(0x40001000, {~0ULL, 1});
  expect_round_trip<std::complex<long long>>(0x40002000, {-9000000000000000000LL, 1});
}

TEST_F(TagTest, ANumberIsReadAsAnother) {
  const double value = 3.75;
  stack->set_tag("gain", real, &value);
  int whole = 0;
  stack->get_tag("gain", 0x20, &whole);
  EXPECT_EQ(whole, 3);
  bool is_set = false;
  stack->get_tag("gain", 0x10000, &is_set);
  EXPECT_TRUE(is_set);
}

TEST_F(TagTest, AValueIsReadInTheTypeThatItsTreeHas) {
  const VProp value(2.5);
  stack->set_tag("gain", value_of_any_kind, &value);
  double gain = 0;
  stack->get_tag("gain", real, &gain);
  EXPECT_EQ(gain, 2.5);
  VProp read;
  stack->get_tag("gain", value_of_any_kind, &read);
  EXPECT_TRUE(read == value);
}

TEST_F(TagTest, WhatCannotBecomeTheWantedTypeIsRefused) {
  VProp tree;
  tree["laser.power"] = 12.5;
  stack->set_tag("setup", value_of_any_kind, &tree);
  const std::string text = stack->get_tag("setup");
  double power = 7;
  EXPECT_VREL_ERROR(stack->get_tag("setup", real, &power), "Invalid cast!", -1);
  EXPECT_EQ(power, 7);
  stack->set_tag("gain", real, &power);
  _s_vrel_RGB colour = {1, 2, 3};
  EXPECT_VREL_ERROR(stack->get_tag("gain", 0x400, &colour), "Invalid cast!", -1);
  EXPECT_EQ(stack->get_tag("setup"), text);
}

TEST_F(TagTest, ATreeGoesRound) {
  VProp tree;
  tree["laser.power"] = 12.5;
  tree["laser.name"] = "red";
  stack->set_tag("setup", value_of_any_kind, &tree);
  VProp read;
  reopened()->get_tag("setup", value_of_any_kind, &read);
  EXPECT_TRUE(read == tree);
}

TEST_F(TagTest, OtherTypesAreRefusedAndChangeNothing) {
  stack->set_tag("tag", "before");
  const double value = 1;
  double read = 7;
  for (const int type : {0, 3, 0x8000, 0x20000, 0x40000400, 0x40000800, -0x7FFFFF80}) {
    EXPECT_VREL_ERROR(stack->set_tag("tag", type, &value), "Tag type not supported!", -1);
    EXPECT_VREL_ERROR(stack->get_tag("tag", type, &read), "Tag type not supported!", -1);
  }
  const _s_vrel_RGB colour = {1, 2, 3};
  EXPECT_VREL_ERROR(stack->set_tag("tag", 0x400, &colour),
                    "Type unknown or incompatible with xml export!", -1);
  EXPECT_EQ(stack->get_tag("tag"), "before");
  EXPECT_EQ(read, 7);
}

TEST_F(TagTest, ATextThatIsNoValueIsNotReadAsOne) {
  stack->set_tag("tag", "plain text");
  double value = 7;
  EXPECT_THROW(stack->get_tag("tag", real, &value), VrelError);
  EXPECT_EQ(value, 7);
  EXPECT_EQ(stack->get_tag("tag"), "plain text");
}

TEST_F(TagTest, OneSetBehindTheCommitIsLost) {
  stack->commit(0);
  stack->set_tag("late", "text");
  EXPECT_EQ(stack->get_tag("late"), "text");
  const stack_ptr read = reopened();
  EXPECT_THAT(read->get_tag_keys(), IsEmpty());
  read->set_tag("read", "text");
  EXPECT_EQ(read->get_tag("read"), "text");
}

class MetadataTest : public TagTest {
 protected:
  // The file with other metadata of the same length, or of another by replacing the text in front of the
  // tags, which are none.
  static std::string with_metadata(std::string bytes, const std::string& metadata) {
    const auto record = read_record(bytes).stacks[0];
    const std::size_t begin = bytes.find(record.metadata);
    bytes.replace(begin, record.metadata.size(), metadata);
    const std::size_t footer = record.data_position + record.header.data_length;
    for (std::size_t i = 0; i < 4; ++i) {
      bytes[footer + 124 + i] = static_cast<char>(metadata.size() >> (8 * i));
    }
    for (std::size_t i = 0; i < 8; ++i) bytes[footer + 1432 + i] = '\0';
    return bytes;
  }

  static std::string with_version(std::string bytes, int version) {
    bytes[read_record(bytes).stacks[0].stack_position + 16] = static_cast<char>(version);
    return bytes;
  }

  std::string written() {
    file->close();
    return file.target().content();
  }

  static void expect_refused(const std::string& bytes, const std::string& text) {
    const TemporaryFile target(bytes);
    EXPECT_VREL_ERROR(VBFFile(target.name(), VFile::mode_read), "Invalid metadata found!\n" + text,
                      -1);
  }
};

TEST_F(MetadataTest, APositionGoesRound) {
  VStackPosition position;
  position.create(stack.get(), 3);
  position.axes[0] = L"stage \u00B5";
  position.axes[2] = L"focus";
  position.offset[1] = 0.1;
  position.projection[5] = -1e-300;
  stack->set_stack_position(position);
  const stack_ptr read = reopened();
  const VStackPosition back = read->get_stack_position();
  EXPECT_THAT(back.axes.get_size(true), ElementsAre(3));
  EXPECT_EQ(std::wstring(back.axes[0]), L"stage \u00B5");
  EXPECT_EQ(std::wstring(back.axes[1]), L"");
  EXPECT_EQ(std::wstring(back.axes[2]), L"focus");
  EXPECT_THAT(back.offset, ElementsAre(0, 0.1, 0));
  EXPECT_THAT(back.projection.get_size(true), ElementsAre(3, 2));
  EXPECT_THAT(back.projection, ElementsAre(1, 0, 0, 0, 1, -1e-300));
  EXPECT_THAT(read->get_meta_data_string(), StartsWith("<root"));
}

TEST_F(MetadataTest, PositionsOfAnyRankGoRound) {
  stack->commit(0);
  for (unsigned rank = 0; rank <= 4; ++rank) {
    const stack_ptr other = file->add_stack(true);
    other->create(std::vector<unsigned>(rank, 1), uint8);
  }
  file.reopen();
  for (unsigned rank = 0; rank <= 4; ++rank) {
    const stack_ptr read = file->get_stack(rank + 1);
    const VStackPosition position = read->get_stack_position();
    EXPECT_TRUE(position.is_valid_for(read.get()));
    EXPECT_EQ(position.axes.size(), rank);
    EXPECT_EQ(position.projection.size(), rank * rank);
  }
}

TEST_F(MetadataTest, TheTextIsThatOfTheCommit) {
  EXPECT_EQ(stack->get_meta_data_string(), "");
  stack->commit(0);
  const std::string text = stack->get_meta_data_string();
  EXPECT_THAT(text, StartsWith("<root"));
  EXPECT_EQ(reopened()->get_meta_data_string(), text);
}

TEST_F(MetadataTest, WhatXmlCannotHoldIsNotCommitted) {
  VStackPosition position = stack->get_stack_position();
  position.axes[0] = L"\x01";
  stack->set_stack_position(position);
  EXPECT_VREL_ERROR(stack->commit(0),
                    "Invalid meta information! Could not export to xml.\n"
                    "Text cannot be written as XML!",
                    -1);
  EXPECT_NE(stack->get_state(), 0);
  position.axes[0] = L"x";
  stack->set_stack_position(position);
  stack->commit(0);
  EXPECT_EQ(std::wstring(reopened()->get_stack_position().axes[0]), L"x");
}

TEST_F(MetadataTest, OfOldVersionsOnlyHasToBeReadable) {
  const std::string bytes = with_metadata(written(), "<root type=\"struct\" vprop_version=\"1\"/>");
  for (const int version : {1, 2}) {
    const TemporaryFile target(with_version(bytes, version));
    VBFFile old(target.name(), VFile::mode_read);
    EXPECT_TRUE(old->get_stack(0)->get_stack_position().is_valid_for(old->get_stack(0).get()));
  }
  for (const int version : {3, 4, 5}) {
    expect_refused(with_version(bytes, version), "Type mismatch: found none, expected char[]");
  }
}

TEST_F(MetadataTest, ThatIsNoXmlIsRefusedInAnyVersion) {
  const std::string bytes = with_metadata(written(), "no xml");
  for (const int version : {1, 2, 3, 5}) {
    const TemporaryFile target(with_version(bytes, version));
    try {
      const VBFFile refused(target.name(), VFile::mode_read);
      ADD_FAILURE();
    } catch (const VrelError& error) {
      EXPECT_THAT(std::string(error.get_msg()), StartsWith("Invalid metadata found!\n"));
      EXPECT_EQ(error.get_id(), -1);
    }
  }
}

TEST_F(MetadataTest, AKeyOfAnotherTypeIsRefused) {
  std::string metadata = reopened()->get_meta_data_string();
  const std::string bytes = written();
  const std::size_t place = metadata.find("double");
  metadata.replace(place, 6, "single");
  expect_refused(with_metadata(bytes, metadata),
                 "Type mismatch: found single[], expected double[]");
}

// The metadata of a stack with one of its keys renamed or of another kind, and what is told of it.
struct OtherKey {
  const char* name;
  const char* from;
  const char* to;
  const char* message;
};

TEST_F(MetadataTest, EachKeyHasToBeThereAndToBeAnArrayOfItsKind) {
  const std::string bytes = written();
  const std::string metadata = read_record(bytes).stacks[0].metadata;
  for (const OtherKey& row :
       {OtherKey{"axes", "axes", "exes", "Type mismatch: found none, expected char[]"},
        OtherKey{"offset", "offset", "uffset", "Type mismatch: found none, expected double[]"},
        OtherKey{"projection", "projection", "prujection",
                 "Type mismatch: found none, expected double[]"},
        OtherKey{"the whole", "global_pos", "glibal_pos",
                 "Type mismatch: found none, expected char[]"}}) {
    SCOPED_TRACE(row.name);
    std::string changed = metadata;
    const std::string from = row.from;
    for (std::size_t at = 0; (at = changed.find(from, at)) != std::string::npos;) {
      changed.replace(at, from.size(), row.to);
    }
    ASSERT_NE(changed, metadata);
    expect_refused(with_metadata(bytes, changed), row.message);
  }
}

TEST_F(MetadataTest, ASingleNumberIsNoArray) {
  const std::string bytes = written();
  std::string metadata = read_record(bytes).stacks[0].metadata;
  const std::size_t begin = metadata.find("<offset");
  const std::string end = "</offset>";
  metadata.replace(begin, metadata.find(end) + end.size() - begin,
                   R"(<offset idx="1" type="double" size="1 1">0</offset>)");
  expect_refused(with_metadata(bytes, metadata), "Type mismatch: found double, expected double[]");
}

TEST_F(MetadataTest, ThatIsNestedTooDeepIsRefusedInAnyVersion) {
  const auto nested = [](int depth) {
    std::string text;
    for (int i = 0; i < depth; ++i) text += "<x>";
    for (int i = 0; i < depth; ++i) text += "</x>";
    return text;
  };
  const std::string bytes = written();
  for (const int version : {1, 5}) {
    for (const int depth : {257, 300000}) {
      const TemporaryFile target(with_version(with_metadata(bytes, nested(depth)), version));
      try {
        const VBFFile refused(target.name(), VFile::mode_read);
        ADD_FAILURE();
      } catch (const VrelError& error) {
        EXPECT_THAT(std::string(error.get_msg()),
                    testing::AllOf(StartsWith("Invalid metadata found!\n"),
                                   testing::HasSubstr("Elements are nested too deep")));
      }
    }
  }
}

TEST_F(MetadataTest, APositionThatDoesNotFitIsRefused) {
  const stack_ptr other = file->add_stack(true);
  other->create({1}, uint8);
  other->commit(0);
  expect_refused(with_metadata(written(), other->get_meta_data_string()),
                 "Invalid global stack position!");
}

TEST_F(MetadataTest, ThatIsMissingLeavesTheDefaultPosition) {
  const std::string bytes = with_metadata(written(), "");
  for (const int version : {1, 3, 5}) {
    const TemporaryFile target(with_version(bytes, version));
    VBFFile read(target.name(), VFile::mode_read);
    EXPECT_EQ(read->get_stack(0)->get_meta_data_string(), "");
    EXPECT_THAT(read->get_stack(0)->get_stack_position().projection, ElementsAre(1, 0, 0, 1));
  }
}

}  // namespace
