// The worked example of docs/format.md is a file that the library reads.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vrelio/container/chain.h>

#include <fstream>
#include <sstream>
#include <string>

#include "support/memory_file.h"
#include "support/source_tree.h"

namespace {

// The bytes of one line: "OFFSET  BYTES  NOTE", where BYTES are hexadecimal numbers or "00 x
// COUNT".
std::string bytes_of_line(const std::string& line) {
  std::istringstream fields(line.substr(6, 47));
  std::string bytes;
  for (std::string field; fields >> field;) {
    if (field == "x") {
      std::size_t count = 0;
      fields >> count;
      return std::string(count, '\0');
    }
    bytes += static_cast<char>(std::stoi(field, nullptr, 16));
  }
  return bytes;
}

std::string worked_example() {
  std::ifstream page(Vrel::testing::source_path("docs/format.md"));
  std::string bytes;
  bool inside = false;
  for (std::string line; std::getline(page, line);) {
    if (inside && line == "```") break;
    if (inside) {
      EXPECT_EQ(std::stoul(line.substr(0, 4), nullptr, 16), bytes.size()) << line;
      bytes += bytes_of_line(line);
    }
    if (line == "```hexdump") inside = true;
  }
  return bytes;
}

TEST(FormatPageTest, TheWorkedExampleIsAFile) {
  Vrel::testing::MemoryFile file(worked_example());
  Vrel::FileRecord record;
  read_chain(file, record);
  EXPECT_EQ(record.description, "golden");
  EXPECT_THAT(record.dictionary, testing::ElementsAre(testing::Pair("ome_xml", "<OME/>")));
  EXPECT_EQ(record.dictionary_end, file.bytes().size());
  ASSERT_THAT(record.stacks, testing::SizeIs(1));
  const Vrel::StackRecord& stack = record.stacks[0];
  EXPECT_EQ(stack.header.data_type, 1);
  EXPECT_EQ(stack.number_of_samples, 3u);
  EXPECT_EQ(file.bytes().substr(stack.data_position, 3), "\x07\x08\x09");
}

}  // namespace
