// The JSON reader in its plainest form: one character after the other, one condition after the other.
// What Json::Reader does is held against it.
#pragma once

#include <vrelio/json/value.h>

#include <locale>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace Vrel::testing {

class PlainJsonReader {
 public:
  bool read(const char*& begin, const char* end) {
    for (; begin != end; ++begin) {
      if (take(*begin)) {
        ++begin;
        return true;
      }
    }
    return false;
  }

  const Json::Object& object() { return root_.map(); }

 private:
  static bool is_one_of(char c, const std::string& set) { return set.find(c) != std::string::npos; }
  static bool is_space(char c) { return is_one_of(c, " \t\n\v\f\r"); }
  static bool is_digit(char c) { return is_one_of(c, "0123456789"); }

  [[noreturn]] static void fail(char c, const std::string& word) {
    throw std::runtime_error(std::string("Unexpected '") + c + "' character in " + word + " value");
  }
  [[noreturn]] static void fail(const std::string& text, const std::string& word) {
    throw std::runtime_error("Unexpected '" + text + "' string in " + word + " value");
  }

  // Whether the character closes the outermost object.
  bool take(char c) {
    if (string_ != nullptr) return take_in_string(c);
    if (letters_ > 0) return take_in_word(c);
    if (!number_.empty()) {
      if (is_digit(c) || is_one_of(c, ".eE+-")) return take_in_number(c);
      end_number();
    } else if (take_expected(c)) {
      return false;
    }
    return take_after_value(c);
  }

  bool take_in_string(char c) {
    if (is_escaped_) {
      const std::string letters = "\"\\/bfnrt";
      if (!is_one_of(c, letters)) fail(std::string("\\") + c, "string");
      *string_ += "\"\\/\b\f\n\r\t"[letters.find(c)];
      is_escaped_ = false;
    } else if (c == '\\') {
      is_escaped_ = true;
    } else if (c != '"') {
      *string_ += c;
    } else {
      if (string_ == &key_) end_key();
      string_ = nullptr;
    }
    return false;
  }

  void end_key() {
    value_ = &open_.back()->map()[key_];
    key_.clear();
    is_colon_expected_ = true;
  }

  bool take_in_number(char c) {
    number_ += c;
    return false;
  }

  template <class T>
  T extracted() const {
    std::istringstream stream(number_);
    stream.imbue(std::locale::classic());
    T value{};
    if (!(stream >> value)) fail(number_, "number");
    return value;
  }

  void end_number() {
    if (is_one_of('.', number_)) {
      *value_ = extracted<double>();
    } else {
      *value_ = extracted<int>();
    }
    number_.clear();
    value_ = nullptr;
  }

  bool take_in_word(char c) {
    if (c != word_[letters_]) fail(c, "'" + word_ + "'");
    if (++letters_ == word_.size()) letters_ = 0;
    return false;
  }

  // Whether the character is done with.
  bool take_expected(char c) {
    if (is_key_expected_) {
      if (is_space(c)) return true;
      if (c != '"' && (c != '}' || !open_.back()->map().empty())) fail(c, "object");
      is_key_expected_ = false;
      if (c == '"') string_ = &key_;
      return c == '"';
    }
    if (is_colon_expected_) {
      if (is_space(c)) return false;
      if (c != ':') fail(c, "object");
      is_colon_expected_ = false;
      return true;
    }
    return value_ != nullptr && begin_value(c);
  }

  // Whether the character is done with.
  bool begin_value(char c) {
    if (is_space(c)) return true;
    if (c == '-' || is_digit(c)) {
      number_ = c;
    } else if (c == '"') {
      *value_ = "";
      string_ = &value_->get<std::string>();
      value_ = nullptr;
    } else if (c == '{') {
      open(Json::Object());
      is_key_expected_ = true;
    } else if (c == '[') {
      open(Json::Array(1));
      value_ = &open_.back()->array().front();
    } else if (c == ']' && is_array_open() && open_.back()->array().size() == 1) {
      open_.back()->array().clear();
      value_ = nullptr;
      return false;
    } else {
      begin_word(c);
    }
    return true;
  }

  void open(Json::Value container) {
    *value_ = std::move(container);
    open_.push_back(value_);
    value_ = nullptr;
  }

  void begin_word(char c) {
    if (!is_one_of(c, "tfn")) fail(c, "value");
    word_ = c == 't' ? "true" : c == 'f' ? "false" : "null";
    *value_ = c == 'n' ? Json::Value() : Json::Value(c == 't');
    value_ = nullptr;
    letters_ = 1;
  }

  bool is_array_open() const { return !open_.empty() && open_.back()->kind() == Json::kind_array; }

  bool take_after_value(char c) {
    if (is_space(c)) return false;
    if (open_.empty()) {
      if (c != '{') fail(c, "object");
      root_.map();
      open_.push_back(&root_);
      is_key_expected_ = true;
      return false;
    }
    const bool is_array = is_array_open();
    if (c == (is_array ? ']' : '}')) {
      open_.pop_back();
      return open_.empty();
    }
    if (c != ',') fail(c, is_array ? "array" : "object");
    if (is_array) {
      value_ = &open_.back()->array().emplace_back();
    } else {
      is_key_expected_ = true;
    }
    return false;
  }

  Json::Value root_;
  std::vector<Json::Value*> open_;
  std::string key_;
  std::string number_;
  std::string* string_ = nullptr;
  Json::Value* value_ = nullptr;
  bool is_escaped_ = false;
  std::string word_;
  std::size_t letters_ = 0;
  bool is_key_expected_ = false;
  bool is_colon_expected_ = false;
};

}  // namespace Vrel::testing
