// Every byte of a small file, put together by the tables of docs/format.md.
#include <gtest/gtest.h>
#include <vrelio/container/bf_file.h>

#include <cstdint>
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include "container/stack_writing.h"

namespace {

using Vrel::testing::stack_ptr;
using Vrel::testing::WrittenFile;

// Bytes in the order in which they stand in the file.
class Bytes {
 public:
  Bytes& text(const std::string& value) {
    bytes_ += value;
    return *this;
  }
  Bytes& u32(std::uint32_t value, int count = 1) {
    for (int i = 0; i < 4 * count; ++i) bytes_ += static_cast<char>(value >> (8 * (i % 4)));
    return *this;
  }
  Bytes& u64(std::uint64_t value) {
    return u32(static_cast<std::uint32_t>(value)).u32(static_cast<std::uint32_t>(value >> 32));
  }
  Bytes& f64(double value, int count = 1) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    for (int i = 0; i < count; ++i) u64(bits);
    return *this;
  }
  Bytes& prefixed(const std::string& value) {
    return u32(static_cast<std::uint32_t>(value.size())).text(value);
  }
  Bytes& unit(const std::map<int, std::uint32_t>& exponents, double factor) {
    for (int i = 0; i < 9; ++i) u32(exponents.count(i) == 0 ? 0 : exponents.at(i)).u32(1);
    return f64(factor);
  }
  Bytes& neutral_units(int count) {
    for (int i = 0; i < count; ++i) unit({}, 1.0);
    return *this;
  }

  const std::string& bytes() const { return bytes_; }
  std::uint64_t size() const { return bytes_.size(); }

 private:
  std::string bytes_;
};

const std::string metadata_of_one_axis =
    R"(<root idx="1" type="struct" size="1 1" vprop_version="1">)"
    R"(<global_pos idx="1" type="struct" size="1 1">)"
    R"(<axes idx="1" isarr="1" userbits="1" type="cell" size="1">)"
    R"(<item idx="0" type="char" size="1 0"></item></axes>)"
    R"(<offset idx="1" isarr="1" userbits="0" type="double" size="1">0</offset>)"
    R"(<projection idx="1" isarr="1" userbits="0" type="double" size="1 1">1</projection>)"
    R"(</global_pos></root>)";

const std::string document =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?><ome:OME Creator=\"bytes\" "
    "xmlns:ome=\"http://www.openmicroscopy.org/Schemas/OME/2015-01\" "
    "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
    "xsi:schemaLocation=\"http://www.openmicroscopy.org/Schemas/OME/2015-01 "
    "http://www.openmicroscopy.org/Schemas/OME/2015-01/ome.xsd\"></ome:OME>";

void put_stack_header(Bytes& file, std::uint32_t size, double length, double offset, int type,
                      std::uint32_t has_data, std::uint64_t data_length, std::uint64_t next,
                      const std::string& name, const std::string& description) {
  file.text("VREL_BF_STACK\n\xFF\xFF").u32(5).u32(1);
  file.u32(size).u32(0, 14).f64(length).f64(0.0, 14).f64(offset).f64(0.0, 14);
  file.u32(static_cast<std::uint32_t>(type)).u32(0).u32(1);
  file.u32(static_cast<std::uint32_t>(name.size()));
  file.u32(static_cast<std::uint32_t>(description.size()));
  file.u32(has_data).u32(0).u64(data_length).u64(next).text(name).text(description);
}

// The first stack, "one", has all sections; the second has grown to two samples.
std::string expected_file() {
  constexpr std::uint64_t first = 26 + 3 + 8;
  constexpr std::uint64_t data = first + 368 + 3 + 4;
  const std::uint64_t sections = (4 + 1) + 3 * 8 + (5 + 4 + 7) + metadata_of_one_axis.size();
  const std::uint64_t tags = 4 + 8 + 1 + 5;
  const std::uint64_t second = data + 3 + 1444 + sections + tags;
  const std::uint64_t second_data = second + 368;
  const std::uint64_t end = second_data + 4 + 1444 + 4 + metadata_of_one_axis.size() + 4;

  Bytes file;
  file.text("VREL_BF\n\xFF\xFF").u32(2).u64(first).u32(3).text("two").u64(end);
  put_stack_header(file, 3, 2.5, -1.0, 1, 1, 3, second, "one", "text");
  file.text("\1\2\3");
  file.u32(1444).u32(1).u32(0, 14).u32(1).u32(0, 14);
  file.u32(static_cast<std::uint32_t>(metadata_of_one_axis.size()));
  file.unit({{0, 2}, {2, 0xFFFFFFFF}}, 1.0).unit({{0, 1}}, 1e-9).neutral_units(14);
  file.u64(0).u64(0).u64(tags).u64(second).u32(0);
  file.prefixed("X").f64(0.5).f64(1.0).f64(8.0).prefixed("a").prefixed("").prefixed("ccc");
  file.text(metadata_of_one_axis).prefixed("k").prefixed("value").u32(0);

  put_stack_header(file, 2, 1.0, 0.0, 4, 1, 4, 0, "", "");
  file.text(std::string("\1\0\2\1", 4));
  file.u32(1444).u32(0, 30).u32(static_cast<std::uint32_t>(metadata_of_one_axis.size()));
  file.neutral_units(16).u64(0).u64(0).u64(4).u64(end).u32(0);
  file.prefixed("").text(metadata_of_one_axis).u32(0);

  EXPECT_EQ(file.size(), end);
  return file.prefixed("ome_xml").prefixed(document).u32(0).bytes();
}

TEST(BFFileBytesTest, AFileIsWrittenAsThePageTells) {
  WrittenFile file;
  file->set_description("two");
  file->set_creator("bytes");
  const stack_ptr one = file.add({3}, 1);
  one->set_name("one");
  one->set_description("text");
  one->set_len(0, 2.5);
  one->set_off(0, -1.0);
  one->set_label(0, "X");
  one->set_units(0, si::value(1e-9, {si::fraction(1)}));
  one->set_data_units(si::value(std::string("m^2/s")));
  one->set_col_positions(0, {0.5, 1.0, 8.0});
  one->set_col_labels(0, {"a", "", "ccc"});
  one->set_tag("k", "value");
  one->write(1, "\1\2\3", nullptr, 3);
  const stack_ptr two = file.add({0}, 4);
  const unsigned short samples[] = {1, 0x102};
  two->write(4, samples, nullptr, 2);
  file->close();
  const std::string content = file.target().content();
  const std::string expected = expected_file();
  for (std::size_t i = 0; i < std::min(content.size(), expected.size()); ++i) {
    ASSERT_EQ(static_cast<int>(content[i]), static_cast<int>(expected[i])) << "at byte " << i;
  }
  EXPECT_EQ(content.size(), expected.size());
}

}  // namespace
