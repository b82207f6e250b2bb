// Feeds the reader. What a character means in a tag is in xml_reader_tags.cpp, in a text in
// xml_reader_texts.cpp.
#include <vrelio/json/xml_reader.h>

#include <algorithm>
#include <istream>

#include "json/ascii_internal.h"

namespace Json {

namespace {

bool is_name_character(char c) {
  return detail::is_letter(c) || detail::is_digit(c) || c == '_' || c == ':';
}

template <class Predicate>
const char* append_while(Predicate is_wanted, const char* begin, const char* end,
                         std::string& text) {
  const char* const run_end = std::find_if_not(begin, end, is_wanted);
  text.append(begin, run_end);
  return run_end;
}

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

bool XmlReader::read(const char*& begin, const char* const& end) {
  while (begin != end) {
    begin = take_run(begin, end);
    if (begin == end) return false;
    if (read(*begin++)) return true;
  }
  return false;
}

bool XmlReader::read(std::istream& in) {
  for (char c = 0; in.get(c);) {
    if (read(c)) return true;
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

// The first rule that applies.
bool XmlReader::read(char c) {
  if (in_name_ && is_name_character(c)) {
    token_.push_back(c);
  } else if (delimiter_ != 0) {
    read_text(c);
  } else if (!in_tag_) {
    read_between_tags(c);
  } else if (!in_attributes_) {
    return read_tag_name(c);
  } else if (!in_attribute_) {
    return read_in_tag(c);
  } else {
    read_attribute(c);
  }
  return false;
}

// Nothing that is taken here can be refused or ends anything, so the result is that of single steps.
const char* XmlReader::take_run(const char* begin, const char* end) {
  if (in_name_) return append_while(is_name_character, begin, end, token_);
  if (in_reference_) {
    return append_while([](char c) { return c != ';'; }, begin, end, reference_);
  }
  if (is_string_) {
    const auto is_plain = [delimiter = delimiter_](char c) { return c != delimiter && c != '&'; };
    return append_while(is_plain, begin, end, token_);
  }
  if (is_number_) return append_while(detail::is_number_character, begin, end, token_);
  const bool skips_whitespace = !in_tag_ && true_state_ == 0 && false_state_ == 0;
  return skips_whitespace ? std::find_if_not(begin, end, detail::is_whitespace) : begin;
}

}  // namespace Json
