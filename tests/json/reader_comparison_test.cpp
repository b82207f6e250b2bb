// The reader beside its plainest form, over texts that are nearly JSON.
#include <gtest/gtest.h>

#include <cstddef>
#include <random>
#include <string>
#include <vector>

#include "json/json_outcome.h"
#include "json/plain_json_reader.h"

namespace {

using Vrel::testing::JsonOutcome;
using Vrel::testing::PlainJsonReader;
using Vrel::testing::read_json_in_slices;
using Vrel::testing::read_json_whole;

constexpr unsigned rounds = 20000;

// Reads in slices of 0 to 7 characters.
void expect_read_as_by_the_plain_reader(const std::string& text, std::mt19937& random) {
  const JsonOutcome expected = read_json_whole<PlainJsonReader>(text);
  const auto next_size = [&random](std::size_t) { return std::size_t{random() % 8}; };
  EXPECT_EQ(read_json_whole(text), expected) << text;
  EXPECT_EQ(read_json_in_slices(text, next_size), expected) << text;
}

std::string random_text(std::mt19937& random) {
  static const std::vector<std::string> parts = {
      "{",     "}",           "[",  "]",   ",",   ":",    "\"",   "\"a\":", "\"b\":",
      "\"c\"", "a",           "1",  "-",   "+",   "-2.5", "1e5",  "1.e",    ".",
      "e",     "99999999999", "\\", "\\n", "\\u", "{}",   "true", "false",  "null",
      "t",     "nul",         " ",  "\n",  "[]",  "\xff", "/"};
  std::string text = "{\"a\":";
  for (std::size_t count = random() % 12; count > 0; --count) {
    text += parts[random() % parts.size()];
  }
  return text;
}

TEST(ReaderComparisonTest, AnyPartsInAnyOrderAreReadAsByThePlainReader) {
  for (unsigned seed = 0; seed < rounds && !HasFailure(); ++seed) {
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    expect_read_as_by_the_plain_reader(random_text(random), random);
  }
}

std::string damaged_document(std::mt19937& random) {
  static const std::vector<std::string> documents = {
      R"( { "a" : [ ] , "b" : { } } )",
      R"({"name":"cell \"7\"\n","sizes":[512,-3,1e5],"gain":-1.25e-3,"live":true,"x":null})",
      R"({"":{"":[[],[{}],[[1.5],[2]]]},"a\\b":"\/\b\f\r\t","dead":false})",
      R"({"a":1,"a":[2,"a"],"a":{"a":3}})"};
  static const std::string characters = "{}[]:,\"\\ 0-.etfn\xff";
  std::string text = documents[random() % documents.size()];
  for (std::size_t count = random() % 4; count > 0; --count) {
    text[random() % text.size()] = characters[random() % characters.size()];
  }
  return text;
}

TEST(ReaderComparisonTest, DamagedDocumentsAreReadAsByThePlainReader) {
  for (unsigned seed = 0; seed < rounds && !HasFailure(); ++seed) {
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    expect_read_as_by_the_plain_reader(damaged_document(random), random);
  }
}

}  // namespace
