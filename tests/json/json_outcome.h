// What becomes of JSON text, whole or in slices; shared by the tests and the fuzz target.
#pragma once

#include <vrelio/json/reader.h>

#include <cstddef>
#include <ostream>
#include <string>

namespace Vrel::testing {

struct JsonOutcome {
  Json::Object object;
  std::string error;
  bool is_closed = false;
  /// How many characters were taken; with an error, where the character at fault stands.
  std::size_t taken = 0;
};

inline bool operator==(const JsonOutcome& left, const JsonOutcome& right) {
  return left.object == right.object && left.error == right.error &&
         left.is_closed == right.is_closed && left.taken == right.taken;
}

inline std::ostream& operator<<(std::ostream& out, const JsonOutcome& outcome) {
  return out << Json::Value(outcome.object) << ", error '" << outcome.error << "', closed "
             << outcome.is_closed << ", taken " << outcome.taken;
}

/// Reads a text slice by slice, to the end of the object, to an error, or to the last slice.
/// `next_size(taken)` is the size of the slice that begins there.
template <class NextSize>
JsonOutcome read_json_in_slices(const std::string& text, NextSize next_size) {
  JsonOutcome outcome;
  Json::Reader reader;
  const char* begin = text.data();
  const char* const text_end = begin + text.size();
  try {
    while (!outcome.is_closed && begin != text_end) {
      const auto left = static_cast<std::size_t>(text_end - begin);
      const std::size_t size = next_size(text.size() - left);
      const char* const end = begin + (size < left ? size : left);
      outcome.is_closed = reader.read(begin, end);
    }
  } catch (const Json::Reader::Unexpected& error) {
    outcome.error = error.what();
  }
  outcome.taken = static_cast<std::size_t>(begin - text.data());
  outcome.object = reader.object();
  return outcome;
}

inline JsonOutcome read_json_whole(const std::string& text) {
  return read_json_in_slices(text, [&text](std::size_t) { return text.size(); });
}

}  // namespace Vrel::testing
