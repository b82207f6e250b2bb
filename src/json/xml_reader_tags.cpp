// Tags, and what stands between them. An exception leaves no pointer to what is gone: elements and
// attributes are entered before anything points to them, and nothing that was entered goes away.
#include <vrelio/json/xml_reader.h>

#include <tuple>
#include <utility>

#include "json/ascii_internal.h"
#include "json/xml_run_internal.h"

namespace Json {

using detail::is_letter;
using detail::is_whitespace;

namespace {

bool can_be_map(const Value& value) { return value.is_null() || value.kind() == kind_map; }

}  // namespace

bool XmlReader::read_in_tag(char c, const char*& rest, const char* end) {
  if (!in_attributes_) return read_tag_name(c, rest, end);
  if (!in_attribute_) return read_attributes(c, rest, end);
  read_attribute(c);
  while (delimiter_ == 0 && rest != end) read_attribute(*rest++);
  return false;
}

// The character in front of `rest` and what follows of the name.
void XmlReader::read_name(const char*& rest, const char* end) {
  in_name_ = true;
  detail::append_run(detail::is_xml_name_character, rest, end, token_);
}

// Also between the tags of an element with children, so that text beside them is refused.
void XmlReader::read_between_tags(char c, const char*& rest, const char* end) {
  if (c == '<') {
    in_tag_ = true;
  } else if (is_whitespace(c)) {
    rest = detail::skip_while([](char next) { return is_whitespace(next); }, rest, end);
  } else {
    throw Unexpected(c, "at the beginning");
  }
}

bool XmlReader::read_tag_name(char c, const char*& rest, const char* end) {
  if (is_letter(c)) {
    read_name(rest, end);
    return false;
  }
  if (!in_name_) {
    read_tag_mark(c);
    return false;
  }
  in_name_ = false;
  finish_tag_name();
  return read_behind_tag_name(c);
}

void XmlReader::read_tag_mark(char c) {
  const bool is_marked = is_processing_ || is_end_tag_;
  if (c == '?' && !is_marked) {
    is_processing_ = true;
  } else if (c == '/' && !is_marked) {
    is_end_tag_ = true;
  } else {
    throw Unexpected(c, "in tag name");
  }
}

void XmlReader::finish_tag_name() {
  if (is_processing_) {
    if (token_ != "xml") throw Unexpected(token_, "processing tag");
  } else if (is_end_tag_) {
    close_element();
  } else {
    open_element();
  }
}

void XmlReader::close_element() {
  if (stack_.empty()) throw Unexpected(token_, "end tag at the beginning");
  if (token_ != stack_.back()->first) throw Unexpected(token_, "end tag");
  stack_.pop_back();
}

// Intended: a null value that the name has already stays one element;
// XmlReaderTest.ARepeatedElementWithoutAValueStaysOne.
void XmlReader::open_element() {
  const auto [entry, is_new] = parent_of_new_element().map().try_emplace(token_);
  if (!is_new && !entry->second.is_null()) entry->second.array().emplace_back();
  stack_.push_back(&*entry);
  slot_ = &current_element();
}

Value& XmlReader::parent_of_new_element() {
  Value* parent = root_;
  if (!stack_.empty()) {
    Value& element = current_element();
    if (!can_be_map(element)) throw Unexpected(token_, "after value");
    parent = &element[""];
  }
  if (!can_be_map(*parent)) throw Unexpected(token_, "after content");
  return *parent;
}

Value& XmlReader::current_element() {
  Value& value = stack_.back()->second;
  return value.kind() == kind_array ? value.array().back() : value;
}

// The character that ended the name of a tag.
bool XmlReader::read_behind_tag_name(char c) {
  const bool is_start_tag = !is_processing_ && !is_end_tag_;
  if (c == '>' && is_end_tag_) return finish_end_tag();
  if (c == '?' && is_processing_) {
    is_closing_ = true;
    in_attributes_ = true;
  } else if (c == '>' && is_start_tag) {
    in_tag_ = false;
    delimiter_ = '<';
  } else if (c == '/' && is_start_tag) {
    leave_by_empty_tag();
  } else if (is_whitespace(c)) {
    in_attributes_ = true;
  } else {
    throw Unexpected(c, "in tag " + token_);
  }
  token_.clear();
  return false;
}

// Intended: the name of the root element stays in the token, in front of the name of a further root
// that is read; XmlReaderTest.TheEndTagOfTheRootStaysInFrontOfTheNextName.
bool XmlReader::finish_end_tag() {
  in_tag_ = false;
  is_end_tag_ = false;
  if (stack_.empty()) return true;
  token_.clear();
  return false;
}

// Intended: the slot stays, so a text behind `<a/>` becomes the value of the element, and as a root it
// does not end the reading; XmlReaderTest.ATextBehindAnEmptyTagIsItsValue.
void XmlReader::leave_by_empty_tag() {
  stack_.pop_back();
  is_closing_ = true;
  in_attributes_ = true;
}

bool XmlReader::read_attributes(char c, const char*& rest, const char* end) {
  const bool is_open = !is_end_tag_ && !is_closing_;
  if (is_letter(c) && is_open) {
    in_attribute_ = true;
    read_name(rest, end);
  } else if (c == '/' && is_open && !is_processing_) {
    stack_.pop_back();
    is_end_tag_ = true;
    is_closing_ = true;
  } else if (c == '?' && is_processing_ && !is_closing_) {
    is_closing_ = true;
  } else if (c == '>') {
    return finish_tag();
  } else if (!is_whitespace(c) || is_closing_) {
    throw Unexpected(c, "in tag");
  }
  return false;
}

// Intended: `<?xml >` needs no second question mark; XmlReaderTest.AProcessingTagMayEndWithoutAMark.
bool XmlReader::finish_tag() {
  in_tag_ = false;
  in_attributes_ = false;
  is_closing_ = false;
  if (is_processing_) {
    is_processing_ = false;
    return false;
  }
  if (is_end_tag_) {
    is_end_tag_ = false;
    return stack_.empty();
  }
  // Only attributes leave no slot, and they keep their element open.
  if (slot_ == nullptr) slot_ = &current_element()[""];
  delimiter_ = '<';
  return false;
}

void XmlReader::read_attribute(char c) {
  if (in_name_) finish_attribute_name();
  if (c == '=' && expect_equals_) {
    expect_equals_ = false;
    expect_quote_ = true;
  } else if ((c == '"' || c == '\'') && expect_quote_) {
    delimiter_ = c;
  } else if (!is_whitespace(c)) {
    throw Unexpected(c, "in attribute");
  }
}

void XmlReader::finish_attribute_name() {
  in_name_ = false;
  Object& attributes = is_processing_ ? processing_attributes_ : current_element().map();
  const auto [entry, is_new] = attributes.emplace(
      std::piecewise_construct, std::forward_as_tuple(std::move(token_)), std::forward_as_tuple());
  if (!is_new) throw Unexpected(entry->first, "duplicate attribute");
  slot_ = &entry->second;
  token_.clear();
  expect_equals_ = true;
}

}  // namespace Json
