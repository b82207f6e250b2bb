// The reader from outside. What a character means in a tag is in xml_reader_tags.cpp, in a text in
// xml_reader_texts.cpp.
#include <vrelio/json/xml_reader.h>

#include <istream>

#include "json/xml_run_internal.h"

namespace Json {

namespace {

std::string message(const std::string& string, const std::string& word) {
  return "Unexpected " + string + ' ' + word;
}

}  // namespace

XmlReader::Unexpected::Unexpected(char c, const std::string& word)
    : std::runtime_error(message(std::string(1, c), word)) {}

XmlReader::Unexpected::Unexpected(const std::string& string, const std::string& word)
    : std::runtime_error(message(string, word)) {}

XmlReader::Unexpected::~Unexpected() = default;

XmlReader::XmlReader(Value& root) : root_(&root) { root = Value(); }

XmlReader::~XmlReader() = default;

// The first rule that applies.
inline bool XmlReader::read(char c, const char*& rest, const char* end) {
  if (delimiter_ != 0) {
    read_text(c, rest, end);
  } else if (in_name_ && detail::is_xml_name_character(c)) {
    read_name(rest, end);
  } else if (in_tag_) {
    return read_in_tag(c, rest, end);
  } else {
    read_between_tags(c, rest, end);
  }
  return false;
}

bool XmlReader::read(const char*& begin, const char* const& end) {
  while (begin != end) {
    const char c = *begin++;
    if (read(c, begin, end)) return true;
  }
  return false;
}

bool XmlReader::read(std::istream& in) {
  for (char c = 0; in.get(c);) {
    const char* const end = &c + 1;
    const char* rest = end;
    if (read(c, rest, end)) return true;
  }
  return false;
}

bool XmlReader::may_end() const {
  return stack_.empty() && !in_tag_ && (delimiter_ == 0 || token_.empty());
}

void XmlReader::clear() {
  processing_attributes_.clear();
  // The value of such an attribute that is being read has no place any more.
  if (is_processing_ && in_attribute_) slot_ = nullptr;
}

}  // namespace Json
