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
};

}  // namespace Json
