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

 private:
  // Reads one character; true at the end of the root element. What follows it, from `rest` to `end`, may
  // be taken too as far as it only lengthens a name or a text, or is skipped.
  bool read(char c, const char*& rest, const char* end);
  void read_name(const char*& rest, const char* end);
  void read_between_tags(char c, const char*& rest, const char* end);
  bool read_in_tag(char c, const char*& rest, const char* end);
  bool read_tag_name(char c, const char*& rest, const char* end);
  bool read_attributes(char c, const char*& rest, const char* end);
  void read_attribute(char c);

  void read_tag_mark(char c);
  bool read_behind_tag_name(char c);
  void finish_tag_name();
  void finish_attribute_name();
  bool finish_tag();
  bool finish_end_tag();
  void open_element();
  void close_element();
  void leave_by_empty_tag();
  Value& current_element();
  Value& parent_of_new_element();

  void read_text(char c, const char*& rest, const char* end);
  void begin_text(char c, const char*& rest, const char* end);
  void read_reference(char c, const char*& rest, const char* end);
  void read_string(char c, const char*& rest, const char* end);
  void read_number(char c, const char*& rest, const char* end);
  void read_literal(char c, int& state, const char* word);
  void become_string(char c);
  void end_text(char c);
  Value take_value();

  Object processing_attributes_;           // those of <?xml ...?>
  Value* root_;                            // not owned
  std::deque<Object::value_type*> stack_;  // the open elements, outermost first
  Value* slot_ = nullptr;                  // what the text being read will fill
  std::string token_;                      // the name or text being read
  std::string reference_;                  // the name between & and ;
  bool in_tag_ = false;                    // behind <, up to >
  bool in_attributes_ = false;             // in a tag behind its name
  bool is_processing_ = false;             // in <? ... ?>
  bool is_end_tag_ = false;                // in </ ... >, or between / and > behind attributes
  bool is_closing_ = false;                // behind the / or ? in front of >
  bool in_attribute_ = false;              // from an attribute's first letter to its closing quote
  bool expect_equals_ = false;             // behind an attribute's name
  bool expect_quote_ = false;              // behind =, up to the closing quote
  bool in_name_ = false;                   // the token is a name
  char delimiter_ = 0;                     // in a text, what ends it: a quote or <
  bool in_reference_ = false;              // between & and ;
  bool is_string_ = false;                 // the text is known to be a string
  bool is_number_ = false;                 // the text can be a number so far
  int true_state_ = 0;                     // letters of "true" that the text consists of
  int false_state_ = 0;                    // letters of "false"
};

}  // namespace Json
