// The texts of elements and attributes, and what values their spelling makes them.
#include <vrelio/json/xml_reader.h>

#include <cstring>
#include <utility>

#include "json/ascii_internal.h"
#include "json/number_text_internal.h"
#include "json/xml_reference_internal.h"
#include "json/xml_run_internal.h"

namespace Json {

namespace {

constexpr const char* true_word = "true";
constexpr const char* false_word = "false";

int length_of(const char* word) { return static_cast<int>(std::strlen(word)); }

// Intended: a number beyond the limits counts as the limit; XmlReaderTest.ANumberBeyondTheLimitsIsTheLimit.
template <class T>
bool is_all_of(const detail::Extraction<T>& number, const std::string& text) {
  return number.length == text.size() && (number.is_converted || number.value != T{});
}

// Intended: what only looks like a number so far, such as `-` or `1.5e`, is a string;
// XmlReaderTest.WhatCannotBeConvertedStaysAString.
Value number_or_string(std::string& text) {
  const auto integer = detail::extract_integer(text);
  if (is_all_of(integer, text)) return integer.value;
  const auto decimal = detail::extract_decimal(text);
  if (is_all_of(decimal, text)) return decimal.value;
  return std::move(text);
}

}  // namespace

void XmlReader::read_text(char c, const char*& rest, const char* end) {
  if (in_reference_) {
    read_reference(c, rest, end);
  } else if (c == delimiter_) {
    end_text(c);
  } else if (is_string_) {
    read_string(c, rest, end);
  } else if (is_number_) {
    read_number(c, rest, end);
  } else if (true_state_ != 0) {
    read_literal(c, true_state_, true_word);
  } else if (false_state_ != 0) {
    read_literal(c, false_state_, false_word);
  } else {
    begin_text(c, rest, end);
  }
}

void XmlReader::read_reference(char c, const char*& rest, const char* end) {
  if (c != ';') {
    return detail::append_run([](char next) { return next != ';'; }, rest, end, reference_);
  }
  const detail::XmlReference* const found = detail::find_xml_reference(reference_);
  if (found == nullptr) throw Unexpected('&' + reference_ + ';', "reference");
  token_.push_back(found->character);
  reference_.clear();
  in_reference_ = false;
}

// Empty content leaves the element as it is; an empty attribute is an empty string.
void XmlReader::end_text(char c) {
  delimiter_ = 0;
  const bool is_content = c == '<';
  if (slot_ != nullptr && !(is_content && token_.empty())) *slot_ = take_value();
  slot_ = nullptr;
  token_.clear();
  is_string_ = false;
  is_number_ = false;
  true_state_ = 0;
  false_state_ = 0;
  if (is_content) {
    in_tag_ = true;
  } else {
    expect_quote_ = false;
    in_attribute_ = false;
  }
}

Value XmlReader::take_value() {
  if (is_number_) return number_or_string(token_);
  if (true_state_ == length_of(true_word)) return true;
  if (false_state_ == length_of(false_word)) return false;
  return std::move(token_);
}

void XmlReader::read_string(char c, const char*& rest, const char* end) {
  if (c == '&') {
    in_reference_ = true;
    return;
  }
  const auto is_plain = [delimiter = delimiter_](char next) {
    return next != delimiter && next != '&';
  };
  detail::append_run(is_plain, rest, end, token_);
}

void XmlReader::read_number(char c, const char*& rest, const char* end) {
  if (detail::is_number_character(c)) {
    const auto is_wanted = [](char next) { return detail::is_number_character(next); };
    detail::append_run(is_wanted, rest, end, token_);
  } else {
    is_number_ = false;
    become_string(c);
  }
}

// A character behind the whole word breaks it like any other.
void XmlReader::read_literal(char c, int& state, const char* word) {
  if (state < length_of(word) && c == word[state]) {
    ++state;
    token_.push_back(c);
  } else {
    state = 0;
    become_string(c);
  }
}

// Content begins with its first character that is not whitespace.
void XmlReader::begin_text(char c, const char*& rest, const char* end) {
  if (delimiter_ == '<' && detail::is_whitespace(c)) {
    rest = detail::skip_while([](char next) { return detail::is_whitespace(next); }, rest, end);
  } else if (c == '-' || detail::is_digit(c)) {
    is_number_ = true;
    read_number(c, rest, end);
  } else if (c == 't') {
    true_state_ = 1;
    token_.push_back(c);
  } else if (c == 'f') {
    false_state_ = 1;
    token_.push_back(c);
  } else {
    become_string(c);
  }
}

// Intended: an ampersand that makes the text a string begins no reference;
// XmlReaderTest.AnAmpersandThatBeginsATextIsLiteral.
void XmlReader::become_string(char c) {
  is_string_ = true;
  token_.push_back(c);
}

}  // namespace Json
