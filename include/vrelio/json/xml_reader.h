// Reads XML text, slice by slice, into a value. docs/values.md has the mapping.
#pragma once

#include <vrelio/export.h>
#include <vrelio/json/value.h>

#include <deque>
#include <iosfwd>
#include <stdexcept>
#include <string>

namespace Json {

/// Turns the text of one XML document of data into a value. The text may come in slices that are cut
/// anywhere; all state is kept here. Nothing recurses.
///
/// An element becomes the entry of its name in the map of its parent. Without attributes and child
/// elements its text is that entry; otherwise the entry is a map of the attributes, with the content
/// under the empty key: a text, or a map of the children. A name that repeats among the children
/// becomes an array. Texts are typed by their spelling: booleans, integers, decimals, else strings.
///
/// Of the prolog only `<?xml ...?>` is taken. Comments, CDATA sections, document types, numeric
/// character references and text beside child elements are refused.
class VRELIO_EXPORT XmlReader {
 public:
  /// The text is no document as the reader takes it.
  class VRELIO_EXPORT Unexpected : public std::runtime_error {
   public:
    /// "Unexpected C WORD".
    Unexpected(char c, const std::string& word);
    /// "Unexpected STRING WORD".
    Unexpected(const std::string& string, const std::string& word);
    ~Unexpected() override;
  };

  /// Read into `root`, which becomes null first, has to outlive the reading, and must not be changed
  /// by others meanwhile.
  explicit XmlReader(Value& root);
  ~XmlReader();
  XmlReader(const XmlReader&) = delete;
  XmlReader& operator=(const XmlReader&) = delete;

  /// Read on in a slice of the text.
  ///
  /// \param[in,out] begin  the first character to read; moves behind every character that was taken.
  ///   After an exception it stands behind the character that was not expected.
  /// \param[in] end  behind the last character of the slice.
  /// \return true as soon as the root element is closed by an end tag, or by the `/>` of a tag with
  ///   attributes or with a blank before it; false if the slice ends before.
  /// \throws XmlReader::Unexpected if a character, a name or a reference cannot be taken.
  bool read(const char*& begin, const char* const& end);
  /// Read on in a stream; see the other form.
  /// \return false if the stream ends or fails before the root element is closed.
  bool read(std::istream& in);

  /// Whether the text may end here: no element and no tag is open, and no text waits for its end. So a
  /// document that is only `<a/>`, which makes no `read` return true, can be told from one that was
  /// cut off.
  bool may_end() const;

  /// Forget the attributes of `<?xml ...?>`. The state of reading stays as it is.
  void clear();
};

}  // namespace Json
