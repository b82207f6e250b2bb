#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "lib/shared_blocks.h"

namespace Vrel::tool {
namespace {

using nlohmann::json;

constexpr const char* id = "0123abcd-4567-89ef-0123-456789abcdef";

SharedBlock block(std::uint64_t age, std::vector<int> processes = {}) {
  return {id, 1000, 5, true, age, std::move(processes)};
}

std::string text_of(const SharedBlock& shown) { return to_text(std::vector{shown}); }

TEST(SharedBlockTextTest, AnIdIsAUuidInLowerCase) {
  EXPECT_TRUE(is_block_id(id));
  EXPECT_TRUE(is_block_id("00000000-0000-0000-0000-000000000000"));
}

TEST(SharedBlockTextTest, AnyChangeOfACharacterIsNoId) {
  for (std::size_t i = 0; i < 36; ++i) {
    for (const char other : {'/', '.', 'g', 'A', ' ', '\0', '`', ':', '\n', '\xFF'}) {
      std::string text = id;
      text[i] = other;
      EXPECT_FALSE(is_block_id(text)) << text;
    }
    std::string text = id;
    text[i] = text[i] == '-' ? '0' : '-';
    EXPECT_FALSE(is_block_id(text)) << text;
  }
}

TEST(SharedBlockTextTest, ATextOfAnotherLengthIsNoId) {
  const std::string whole = id;
  for (const std::string& text :
       {std::string(), std::string("-"), whole.substr(1), whole.substr(0, 35), whole + '0',
        '{' + whole + '}', '/' + whole, whole + '/', whole + '\0', whole + '\n', whole + whole}) {
    EXPECT_FALSE(is_block_id(text)) << text;
  }
}

TEST(SharedBlockTextTest, ALineTellsSizeAgeAndProcesses) {
  EXPECT_EQ(text_of(block(7, {12, 345})),
            std::string(id) + "  1000 bytes, 7 s old, used by process 12 345\n");
  EXPECT_EQ(text_of(block(7)),
            std::string(id) + "  1000 bytes, 7 s old, no process seen that uses it\n");
}

TEST(SharedBlockTextTest, ALineTellsAnotherUser) {
  SharedBlock other = block(7, {12});
  other.is_own = false;
  EXPECT_EQ(text_of(other),
            std::string(id) + "  1000 bytes, of user 5, 7 s old, used by process 12\n");
}

TEST(SharedBlockTextTest, AnAgeIsToldInTheUnitThatFits) {
  const auto tells = [](std::uint64_t age, const std::string& shown) {
    return text_of(block(age)).find(", " + shown + " old,") != std::string::npos;
  };
  EXPECT_TRUE(tells(0, "0 s"));
  EXPECT_TRUE(tells(119, "119 s"));
  EXPECT_TRUE(tells(120, "2 min"));
  EXPECT_TRUE(tells(7199, "119 min"));
  EXPECT_TRUE(tells(7200, "2 h"));
  EXPECT_TRUE(tells(172799, "47 h"));
  EXPECT_TRUE(tells(172800, "2 d"));
  EXPECT_TRUE(tells(86400000, "1000 d"));
}

TEST(SharedBlockTextTest, NoBlocksAreALineForPeopleAndAnEmptyArrayForPrograms) {
  EXPECT_EQ(to_text(std::vector<SharedBlock>()), "no blocks\n");
  EXPECT_EQ(to_json(std::vector<SharedBlock>()), "[]\n");
}

TEST(SharedBlockTextTest, JsonIsOneLineWithAnObjectForEachBlock) {
  const std::string text = to_json({block(7, {12, 345}), block(8)});
  EXPECT_EQ(text.find('\n'), text.size() - 1);
  const json blocks = json::parse(text);
  ASSERT_EQ(blocks.size(), 2u);
  EXPECT_EQ(blocks[0], json({{"id", id},
                             {"bytes", 1000},
                             {"user", 5},
                             {"own", true},
                             {"age", 7},
                             {"processes", {12, 345}}}));
  EXPECT_EQ(blocks[1]["processes"], json::array());
}

}  // namespace
}  // namespace Vrel::tool
