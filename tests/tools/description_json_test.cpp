#include "lib/description_json.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>

namespace Vrel::tool {
namespace {

using nlohmann::json;

StackRecord plain_stack(unsigned rank) {
  StackRecord stack;
  stack.header.rank = rank;
  stack.header.data_type = 4;
  stack.labels.resize(rank);
  stack.column_positions.resize(rank);
  stack.column_labels.resize(rank);
  return stack;
}

Description described(const StackRecord& stack) {
  Description description;
  description.file.stacks.push_back(stack);
  return description;
}

json stack_json(const StackRecord& stack) {
  return json::parse(to_json(described(stack)))["stacks"][0];
}

TEST(DescriptionJsonTest, AFileWithoutStacksHasAllItsKeys) {
  Description description;
  description.file.header.format_version = 1;
  description.file.description = "about";
  EXPECT_EQ(to_json(description),
            "{\"description\":\"about\",\"dictionary\":{},\"format_version\":1,\"stacks\":[]}\n");
}

TEST(DescriptionJsonTest, AStackHasAllItsFields) {
  StackRecord stack = plain_stack(2);
  stack.name = "first";
  stack.description = "a stack";
  stack.header.format_version = 5;
  stack.header.sizes = {6, 4, 99};
  stack.header.lengths = {6e-06, 2.5, 99};
  stack.header.offsets = {0, -1.25, 99};
  stack.header.compression_type = 1;
  stack.header.compression_level = -3;
  stack.header.data_length = 74;
  stack.header.next_stack = 9999999999;
  stack.labels = {"x", "yy"};
  stack.footer.units[0].factor = 1e-6;
  stack.footer.units[0].exponents[0] = {1, 2};
  stack.footer.data_unit.exponents[8] = {-2147483647 - 1, 2147483647};
  stack.flush_positions = {24, 46};
  stack.flush_block_size = 16;
  stack.stack_position = 37;
  stack.data_position = 417;
  stack.stack_end = 2577;
  stack.metadata = "<root/>";
  stack.tags = {{"alpha", "1"}, {"empty", ""}};
  EXPECT_EQ(stack_json(stack), json::parse(R"json({
    "name": "first", "description": "a stack", "format_version": 5, "data_type": "uint16",
    "sizes": [6, 4], "lengths": [6e-06, 2.5], "offsets": [0.0, -1.25], "labels": ["x", "yy"],
    "units": [
      {"factor": 1e-06,
       "exponents": [[1,2],[0,1],[0,1],[0,1],[0,1],[0,1],[0,1],[0,1],[0,1]],
       "text": "1e-6 m^(1/2)"},
      {"factor": 1.0, "exponents": [[0,1],[0,1],[0,1],[0,1],[0,1],[0,1],[0,1],[0,1],[0,1]],
       "text": "1"}],
    "data_unit": {"factor": 1.0, "exponents":
      [[0,1],[0,1],[0,1],[0,1],[0,1],[0,1],[0,1],[0,1],[-2147483648,2147483647]],
      "text": "1/sr^(2147483648/2147483647)"},
    "column_positions": {}, "column_labels": {},
    "compression": {"type": 1, "level": -3},
    "flush": {"block_size": 16, "positions": [24, 46]},
    "positions": {"stack": 37, "data": 417, "data_length": 74, "end": 2577, "next": 9999999999},
    "metadata": "<root/>", "tags": {"alpha": "1", "empty": ""}})json"));
}

TEST(DescriptionJsonTest, AUnitIsToldByItsName) {
  StackRecord stack = plain_stack(1);
  stack.footer.units[0].factor = 1e-6;
  stack.footer.units[0].exponents[0] = {1, 1};
  EXPECT_EQ(stack_json(stack)["units"][0]["text"], "\xC2\xB5m");
}

TEST(DescriptionJsonTest, ColumnsAreToldForTheDimensionsWhoseFlagIsNotZero) {
  StackRecord stack = plain_stack(3);
  stack.footer.has_column_positions = {1, 0, 77};
  stack.column_positions = {{0.5, -1}, {}, {}};
  stack.footer.has_column_labels = {0, 2, 0, 1};
  stack.column_labels = {{}, {"a", ""}, {}};
  EXPECT_EQ(stack_json(stack)["column_positions"], json::parse(R"({"0": [0.5, -1.0], "2": []})"));
  EXPECT_EQ(stack_json(stack)["column_labels"], json::parse(R"({"1": ["a", ""]})"));
}

TEST(DescriptionJsonTest, AStackOfRankZeroHasEmptyArrays) {
  const json stack = stack_json(plain_stack(0));
  for (const char* key : {"sizes", "lengths", "offsets", "labels", "units"}) {
    EXPECT_EQ(stack[key], json::array()) << key;
  }
}

TEST(DescriptionJsonTest, NumbersThatJsonCannotHoldAreNull) {
  StackRecord stack = plain_stack(3);
  stack.header.offsets = {std::nan(""), std::numeric_limits<double>::infinity(), -0.0};
  stack.footer.data_unit.factor = -std::numeric_limits<double>::infinity();
  EXPECT_EQ(stack_json(stack)["offsets"].dump(), "[null,null,-0.0]");
  EXPECT_TRUE(stack_json(stack)["data_unit"]["factor"].is_null());
}

TEST(DescriptionJsonTest, NumbersReadBackExactly) {
  StackRecord stack = plain_stack(3);
  stack.header.lengths = {0.1, 5e-324, 1.7976931348623157e308};
  const json lengths = stack_json(stack)["lengths"];
  for (unsigned i = 0; i < 3; ++i) EXPECT_EQ(lengths[i].get<double>(), stack.header.lengths[i]);
}

TEST(DescriptionJsonTest, TextThatIsNoUtf8IsRepairedEverywhere) {
  const std::string broken = "a\xFF\xFE";
  const std::string repaired = "a\xEF\xBF\xBD";
  StackRecord stack = plain_stack(1);
  stack.name = stack.description = stack.metadata = broken;
  stack.labels = {broken};
  stack.footer.has_column_labels[0] = 1;
  stack.column_labels = {{broken}};
  stack.tags = {{broken, broken}};
  Description description = described(stack);
  description.file.description = broken;
  description.file.dictionary = {{broken, broken}};
  const json file = json::parse(to_json(description));
  const json& seen = file["stacks"][0];
  EXPECT_EQ(file["description"], repaired);
  EXPECT_EQ(file["dictionary"], json({{repaired, repaired}}));
  EXPECT_EQ(seen["name"], repaired);
  EXPECT_EQ(seen["description"], repaired);
  EXPECT_EQ(seen["metadata"], repaired);
  EXPECT_EQ(seen["labels"], json({repaired}));
  EXPECT_EQ(seen["column_labels"]["0"], json({repaired}));
  EXPECT_EQ(seen["tags"], json({{repaired, repaired}}));
}

TEST(DescriptionJsonTest, ATypeWithoutNameIsNone) {
  StackRecord stack = plain_stack(0);
  stack.header.data_type = 1024;
  EXPECT_EQ(stack_json(stack)["data_type"], "none");
}

TEST(DescriptionJsonTest, ADamagedFileTellsItsError) {
  Description description = described(plain_stack(0));
  description.error = VrelError()("Stack header not in vbf format!")(-4);
  const json file = json::parse(to_json(description));
  EXPECT_EQ(file["error"], "Stack header not in vbf format!");
  EXPECT_EQ(file["stacks"].size(), 1u);
}

TEST(DescriptionJsonTest, OneFileIsOneLine) {
  StackRecord stack = plain_stack(0);
  stack.name = "two\nlines";
  const std::string text = to_json(described(stack));
  EXPECT_EQ(text.find('\n'), text.size() - 1);
}

}  // namespace
}  // namespace Vrel::tool
