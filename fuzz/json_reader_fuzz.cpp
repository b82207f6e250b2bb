// Reads any text, whole and in slices. Both have to give what the plainest reader gives: the same map,
// the same error, the same position. What was read is copied, compared, written and read once more.
//
// Input: a byte for the count of slice sizes (modulo 8), the sizes less 1 (a byte each, modulo 16, used
// in turn), the text.
#include <vrelio/json/reader.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <sstream>
#include <string>

#include "json/json_outcome.h"
#include "json/plain_json_reader.h"

namespace {

using Vrel::testing::JsonOutcome;
using Vrel::testing::PlainJsonReader;
using Vrel::testing::read_json_in_slices;
using Vrel::testing::read_json_whole;

constexpr std::size_t greatest_slice = 16;

void require_equal(const JsonOutcome& outcome, const JsonOutcome& expected) {
  if (outcome == expected) return;
  std::cout << "is:       " << outcome << "\nought be: " << expected << std::endl;
  std::abort();
}

JsonOutcome read_cut(const std::string& text, const std::string& sizes) {
  std::size_t slice = 0;
  return read_json_in_slices(text, [&](std::size_t) {
    if (sizes.empty()) return greatest_slice;
    const auto size = static_cast<unsigned char>(sizes[slice++ % sizes.size()]);
    return std::size_t{1} + size % greatest_slice;
  });
}

// What was written may differ from what was read: a decimal that is rounded to its last digit loses
// its point, and then is an integer, perhaps one that is too great.
void check_text(const Json::Object& map) {
  std::ostringstream text;
  text << map;
  const JsonOutcome outcome = read_json_whole(text.str());
  const bool is_number_refused = outcome.error.find(" in number value") != std::string::npos;
  if (!outcome.is_closed && !is_number_refused) std::abort();
}

void run(const std::string& sizes, const std::string& text) {
  const JsonOutcome outcome = read_json_whole(text);
  require_equal(outcome, read_json_whole<PlainJsonReader>(text));
  require_equal(read_cut(text, sizes), outcome);
  const Json::Object copy = outcome.object;
  if (copy != outcome.object) std::abort();
  check_text(copy);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::string input(data + 1, data + size);
  const std::size_t count = std::min<std::size_t>(data[0] % 8, input.size());
  run(input.substr(0, count), input.substr(count));
  return 0;
}
