// One step of reading looks at one character, or at a run of characters that are all treated alike.
// It moves `begin` only behind characters of which everything is done, so that after an exception
// `begin` stands on the character at fault.
#include <vrelio/json/reader.h>

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

#include "json/ascii_internal.h"
#include "json/number_text_internal.h"

namespace Json {

namespace {

using detail::is_digit;
using detail::is_number_character;
using detail::is_whitespace;

bool is_special_in_string(char c) { return c == '"' || c == '\\'; }

// Each letter behind a backslash, and the character that it stands for.
constexpr char escapes[][2] = {{'"', '"'},  {'\\', '\\'}, {'/', '/'},  {'b', '\b'},
                               {'f', '\f'}, {'n', '\n'},  {'r', '\r'}, {'t', '\t'}};

std::string unexpected(const std::string& text, const char* kind, const std::string& word) {
  return "Unexpected '" + text + "' " + kind + " in " + word + " value";
}

template <class T>
Value value_of(const detail::Extraction<T>& extraction, const std::string& number) {
  if (!extraction.is_converted) throw Reader::Unexpected(number, "number");
  return extraction.value;
}

// Intended: the point alone decides, so `1e5` is the integer 1;
// ReaderTest.AnExponentWithoutAPointIsIgnored.
Value number_value(const std::string& number) {
  const bool is_decimal = number.find('.') != std::string::npos;
  return is_decimal ? value_of(detail::extract_decimal(number), number)
                    : value_of(detail::extract_integer(number), number);
}

}  // namespace

struct Reader::Literal {
  std::string_view word;
  int Reader::*state;
  Value (*value)();
};

const Reader::Literal Reader::literals[] = {
    {"true", &Reader::true_state_, [] { return Value(true); }},
    {"false", &Reader::false_state_, [] { return Value(false); }},
    {"null", &Reader::null_state_, [] { return Value(); }},
};

Reader::Unexpected::Unexpected(char c, const std::string& word)
    : std::runtime_error(unexpected(std::string(1, c), "character", word)) {}

Reader::Unexpected::Unexpected(const std::string& string, const std::string& word)
    : std::runtime_error(unexpected(string, "string", word)) {}

Reader::Unexpected::~Unexpected() = default;

Reader::Reader() = default;
Reader::~Reader() = default;

const Object& Reader::object() const { return object_.map(); }

void Reader::clear() { object_.map().clear(); }

bool Reader::read(const char*& begin, const char* const& end) {
  const char* const slice_end = end;
  while (begin != slice_end) {
    const Step outcome = step(begin, slice_end);
    if (outcome == Step::again) continue;
    ++begin;
    if (outcome == Step::done) return true;
  }
  return false;
}

Reader::Step Reader::step(const char*& begin, const char* end) {
  if (current_string_ != nullptr) return step_string(begin, end);
  if (in_number_) return step_number(begin, end);
  if (is_in_literal()) return step_literal(*begin);
  if (is_whitespace(*begin)) return skip_whitespace(begin, end);
  if (expect_key_) return step_key(*begin);
  if (expect_colon_) return step_colon(*begin);
  if (current_value_ != nullptr) return step_value(*begin);
  return step_container(*begin);
}

Reader::Step Reader::skip_whitespace(const char*& begin, const char* end) {
  begin = std::find_if_not(begin, end, is_whitespace);
  return Step::again;
}

Reader::Step Reader::step_string(const char*& begin, const char* end) {
  if (escape_) return step_escape(*begin);
  const char* const run_end = std::find_if(begin, end, is_special_in_string);
  current_string_->append(begin, run_end);
  begin = run_end;
  if (begin == end) return Step::again;
  if (*begin == '\\') {
    escape_ = true;
  } else {
    end_string();
  }
  return Step::next;
}

Reader::Step Reader::step_escape(char c) {
  const auto row = std::find_if(std::begin(escapes), std::end(escapes),
                                [c](const char(&escape)[2]) { return escape[0] == c; });
  if (row == std::end(escapes)) throw Unexpected(std::string{'\\', c}, "string");
  current_string_->push_back((*row)[1]);
  escape_ = false;
  return Step::next;
}

// A name that repeats finds the entry of the first, of which the next value replaces the content.
void Reader::end_string() {
  if (current_string_ == &key_) {
    current_value_ = &current_object_->try_emplace(std::move(key_)).first->second;
    key_.clear();
    expect_colon_ = true;
  }
  current_string_ = nullptr;
}

// The character behind the number is still to be looked at.
Reader::Step Reader::step_number(const char*& begin, const char* end) {
  const char* const run_end = std::find_if_not(begin, end, is_number_character);
  number_.append(begin, run_end);
  begin = run_end;
  if (begin == end) return Step::again;
  *current_value_ = number_value(number_);
  current_value_ = nullptr;
  number_.clear();
  in_number_ = false;
  return Step::again;
}

Reader::Step Reader::step_literal(char c) {
  const auto literal = std::find_if(std::begin(literals), std::end(literals),
                                    [this](const Literal& row) { return this->*row.state != 0; });
  const std::string_view word = literal->word;
  int& state = this->*literal->state;
  if (c != word[static_cast<std::size_t>(state)]) {
    throw Unexpected(c, "'" + std::string(word) + "'");
  }
  ++state;
  if (static_cast<std::size_t>(state) == word.size()) state = 0;
  return Step::next;
}

// Intended: a brace closes at once what has no entries, also from an earlier object; so a second object
// without members is refused until `clear`; ReaderTest.AnEmptyObjectIsRefusedWhereEntriesAreLeft.
Reader::Step Reader::step_key(char c) {
  if (c == '"') {
    expect_key_ = false;
    current_string_ = &key_;
    return Step::next;
  }
  if (c != '}' || !current_object_->empty()) throw Unexpected(c, "object");
  expect_key_ = false;
  return Step::again;
}

Reader::Step Reader::step_colon(char c) {
  if (c != ':') throw Unexpected(c, "object");
  expect_colon_ = false;
  return Step::next;
}

Reader::Step Reader::step_value(char c) {
  if (c == '"') return begin_string();
  if (c == '-' || is_digit(c)) return begin_number();
  if (c == '{') return begin_map();
  if (c == '[') return begin_array();
  if (c == ']' && is_at_first_item()) return end_empty_array();
  return begin_literal(c);
}

Reader::Step Reader::begin_string() {
  *current_value_ = std::string();
  current_string_ = &current_value_->get<std::string>();
  current_value_ = nullptr;
  return Step::next;
}

// The character is the first one of the number.
Reader::Step Reader::begin_number() {
  in_number_ = true;
  return Step::again;
}

Reader::Step Reader::begin_map() {
  *current_value_ = Object();
  stack_.push_back(current_value_);
  restore_container();
  current_value_ = nullptr;
  expect_key_ = true;
  return Step::next;
}

Reader::Step Reader::begin_array() {
  *current_value_ = Array(1);
  stack_.push_back(current_value_);
  restore_container();
  current_value_ = &stack_.back()->get<Array>().front();
  return Step::next;
}

bool Reader::is_at_first_item() const {
  return current_array_ != nullptr && current_array_->size() == 1;
}

Reader::Step Reader::end_empty_array() {
  current_array_->clear();
  current_value_ = nullptr;
  return Step::again;
}

// The letters that follow are only checked.
Reader::Step Reader::begin_literal(char c) {
  const auto literal = std::find_if(std::begin(literals), std::end(literals),
                                    [c](const Literal& row) { return row.word.front() == c; });
  if (literal == std::end(literals)) throw Unexpected(c, "value");
  *current_value_ = literal->value();
  current_value_ = nullptr;
  this->*literal->state = 1;
  return Step::next;
}

Reader::Step Reader::step_container(char c) {
  if (current_array_ != nullptr) return step_array(c);
  return current_object_ != nullptr ? step_object(c) : step_outside(c);
}

Reader::Step Reader::step_array(char c) {
  if (c == ']') return close_container();
  if (c != ',') throw Unexpected(c, "array");
  current_value_ = &current_array_->emplace_back();
  return Step::next;
}

Reader::Step Reader::step_object(char c) {
  if (c == '}') return close_container();
  if (c != ',') throw Unexpected(c, "object");
  expect_key_ = true;
  return Step::next;
}

Reader::Step Reader::step_outside(char c) {
  if (c != '{') throw Unexpected(c, "object");
  object_.map();
  stack_.push_back(&object_);
  restore_container();
  expect_key_ = true;
  return Step::next;
}

Reader::Step Reader::close_container() {
  stack_.pop_back();
  restore_container();
  return stack_.empty() ? Step::done : Step::next;
}

void Reader::restore_container() {
  Value* const container = stack_.empty() ? nullptr : stack_.back();
  const Kind kind = container == nullptr ? kind_null : container->kind();
  current_array_ = kind == kind_array ? &container->get<Array>() : nullptr;
  current_object_ = kind == kind_map ? &container->get<Object>() : nullptr;
}

}  // namespace Json
