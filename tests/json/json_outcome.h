// What becomes of JSON text, whole or in slices; shared by the tests and the fuzz target.
#pragma once

#include <vrelio/json/reader.h>

#include <algorithm>
#include <cstddef>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

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
/// `next_size(taken)` is the size of the slice that begins there. Each slice has a memory of its own, so
/// that no step beyond it goes unseen.
template <class AnyReader = Json::Reader, class NextSize>
JsonOutcome read_json_in_slices(const std::string& text, NextSize next_size) {
  JsonOutcome outcome;
  AnyReader reader;
  while (!outcome.is_closed && outcome.error.empty() && outcome.taken < text.size()) {
    const std::size_t size = std::min(next_size(outcome.taken), text.size() - outcome.taken);
    const char* const first = text.data() + outcome.taken;
    const std::vector<char> slice(first, first + size);
    const char* begin = slice.data();
    try {
      outcome.is_closed = reader.read(begin, slice.data() + size);
    } catch (const std::runtime_error& error) {
      outcome.error = error.what();
    }
    outcome.taken += static_cast<std::size_t>(begin - slice.data());
  }
  outcome.object = reader.object();
  return outcome;
}

template <class AnyReader = Json::Reader>
JsonOutcome read_json_whole(const std::string& text) {
  return read_json_in_slices<AnyReader>(text, [&text](std::size_t) { return text.size(); });
}

}  // namespace Vrel::testing
