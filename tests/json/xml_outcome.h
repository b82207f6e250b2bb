// What becomes of XML text, whole or in slices; shared by the tests and the fuzz target.
#pragma once

#include <vrelio/json/xml_reader.h>

#include <cstddef>
#include <ostream>
#include <sstream>
#include <string>

namespace Vrel::testing {

struct XmlOutcome {
  Json::Value root;
  std::string error;
  bool is_closed = false;
  /// How many characters were taken.
  std::size_t taken = 0;
  bool may_end = false;
};

inline bool operator==(const XmlOutcome& left, const XmlOutcome& right) {
  return left.root == right.root && left.error == right.error &&
         left.is_closed == right.is_closed && left.taken == right.taken &&
         left.may_end == right.may_end;
}

inline std::ostream& operator<<(std::ostream& out, const XmlOutcome& outcome) {
  return out << outcome.root << ", error '" << outcome.error << "', closed " << outcome.is_closed
             << ", taken " << outcome.taken << ", may end " << outcome.may_end;
}

/// Reads a text slice by slice, to the end of the root element, to an error, or to the last slice.
/// `next_size(taken)` is the size of the slice that begins there.
template <class NextSize>
XmlOutcome read_in_slices(const std::string& text, NextSize next_size) {
  XmlOutcome outcome;
  Json::XmlReader reader(outcome.root);
  const char* begin = text.data();
  const char* const text_end = begin + text.size();
  try {
    while (!outcome.is_closed && begin != text_end) {
      const auto left = static_cast<std::size_t>(text_end - begin);
      const std::size_t size = next_size(text.size() - left);
      const char* const end = begin + (size < left ? size : left);
      outcome.is_closed = reader.read(begin, end);
    }
  } catch (const Json::XmlReader::Unexpected& error) {
    outcome.error = error.what();
  }
  outcome.taken = static_cast<std::size_t>(begin - text.data());
  outcome.may_end = reader.may_end();
  return outcome;
}

inline XmlOutcome read_whole(const std::string& text) {
  return read_in_slices(text, [&text](std::size_t) { return text.size(); });
}

inline XmlOutcome read_from_stream(const std::string& text) {
  XmlOutcome outcome;
  Json::XmlReader reader(outcome.root);
  std::istringstream in(text);
  try {
    outcome.is_closed = reader.read(in);
  } catch (const Json::XmlReader::Unexpected& error) {
    outcome.error = error.what();
  }
  outcome.taken = in.good() ? static_cast<std::size_t>(in.tellg()) : text.size();
  outcome.may_end = reader.may_end();
  return outcome;
}

}  // namespace Vrel::testing
