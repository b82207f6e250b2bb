// Reads JSON text, slice by slice, into a value.
#pragma once

#include <vrelio/export.h>
#include <vrelio/json/value.h>

#include <deque>
#include <stdexcept>
#include <string>

namespace Json {

/// Turns the text of one JSON object into a map. The text may come in slices that are cut anywhere,
/// also inside a string, a number or a literal; all state is kept here. Nothing recurses.
///
/// Strings are bytes of any encoding; of escapes there are `\"` `\\` `\/` `\b` `\f` `\n` `\r` `\t`. A
/// number with a decimal point is a decimal, any other an integer of 32 bits.
///
/// A further object that is read goes into the same map, key by key, until `clear()`. After an
/// exception the reader cannot be used further; what was built up to there is in `object()`.
///
/// Intended: without a decimal point an exponent is ignored, so `1e5` is the integer 1;
/// ReaderTest.AnExponentWithoutAPointIsIgnored.
class VRELIO_EXPORT Reader {
 public:
  /// The text is no JSON object as the reader takes it.
  class VRELIO_EXPORT Unexpected : public std::runtime_error {
   public:
    /// "Unexpected 'C' character in WORD value".
    Unexpected(char c, const std::string& word);
    /// "Unexpected 'STRING' string in WORD value".
    Unexpected(const std::string& string, const std::string& word);
    ~Unexpected() override;
  };

  Reader();
  ~Reader();
  Reader(const Reader&) = delete;
  Reader& operator=(const Reader&) = delete;

  /// Read on in a slice of the text.
  ///
  /// \param[in,out] begin  the first character to read; moves behind every character that was taken.
  ///   After the brace that closes the object it stands behind that brace; after an exception it stands
  ///   on the character that was not expected.
  /// \param[in] end  behind the last character of the slice.
  /// \return true as soon as the object is closed; false if the slice ends before.
  /// \throws Reader::Unexpected if a character, a literal, an escape or a number cannot be taken.
  bool read(const char*& begin, const char* const& end);

  /// What was read so far; an empty map if nothing was.
  const Object& object() const;
  /// Empty the map between two objects. The state of reading stays as it is, so inside an object this
  /// must not be called.
  void clear();

 private:
  // What comes after a step: the next character, one more look at this one, or the end of the object.
  enum class Step { next, again, done };
  struct Literal;
  static const Literal literals[];

  Step step(const char*& begin, const char* end);
  static Step skip_whitespace(const char*& begin, const char* end);
  Step step_string(const char*& begin, const char* end);
  Step step_escape(char c);
  Step step_number(const char*& begin, const char* end);
  Step step_literal(char c);
  Step step_key(char c);
  Step step_colon(char c);
  Step step_value(char c);
  Step step_container(char c);
  Step step_array(char c);
  Step step_object(char c);
  Step step_outside(char c);

  void end_string();
  Step begin_string();
  Step begin_number();
  Step begin_map();
  Step begin_array();
  bool is_at_first_item() const;
  Step end_empty_array();
  Step begin_literal(char c);
  bool is_in_literal() const { return (true_state_ | false_state_ | null_state_) != 0; }
  Step close_container();
  void restore_container();

  mutable Value object_;      // the result; a map once reading has begun
  std::deque<Value*> stack_;  // the open containers, outermost first
  std::string key_;
  std::string number_;                     // its characters so far
  std::string* current_string_ = nullptr;  // takes characters; null outside of strings
  Value* current_value_ = nullptr;         // takes the next value; null if none is expected
  Array* current_array_ = nullptr;         // the innermost container if it is an array
  Object* current_object_ = nullptr;       // the innermost container if it is a map
  bool in_number_ = false;
  bool escape_ = false;  // behind a backslash in a string
  int true_state_ = 0;   // how many letters of the word were read, 0 outside of it
  int false_state_ = 0;
  int null_state_ = 0;
  bool expect_key_ = false;    // in an object, before a name or the end
  bool expect_colon_ = false;  // behind a name
};

}  // namespace Json
