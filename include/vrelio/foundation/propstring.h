// The text type of the library: wide inside, converted where narrow text comes in or goes out.
#pragma once

#include <vrelio/export.h>

#include <string>
#include <string_view>

/// Wide text in UTF-16 code units, also where `wchar_t` has 32 bits, so that lengths agree on every
/// system. Where a caller hands in wide text, a 32-bit unit above 0xFFFF counts as the code point that
/// it is, and is kept until the text is converted: what is read back from narrow text has a pair in its
/// place, and is not equal.
///
/// Converting raises no error for a character: what the other encoding cannot express, and what is no
/// character, is dropped. Of a sequence that is cut or broken the bytes that are characters by themselves
/// stay: a digit in GB18030, `$` and `$)` of an escape in ISO-2022. A local encoding that Boost.Locale does
/// not know raises its `boost::locale::conv::invalid_charset_error`, a std::runtime_error.
///
/// ```cpp
/// VPropstring unit("10 \xC2\xB5m", VPropstring::encoding_utf8);
/// std::string bytes = unit.to(VPropstring::encoding_windows1252);  // "10 \xB5m"
/// ```
class VRELIO_EXPORT VPropstring : public std::wstring {
 public:
  /// A narrow encoding. Where none is named, it is `encoding_local`.
  enum encoding : int {
    encoding_utf8 = 0,        ///< UTF-8
    encoding_local = 1,       ///< that of the locale which the process has set, else UTF-8
    encoding_windows1252 = 2  ///< always windows-1252
  };

  /// "To the first zero character", for lengths that can be left out.
  static constexpr unsigned int zero_terminated = 0xFFFFFFFF;

  VPropstring() = default;
  VPropstring(const VPropstring& other) = default;      ///< the same units
  VPropstring(VPropstring&& other) noexcept = default;  ///< takes the units over
  ~VPropstring() = default;
  /// A narrow text up to its zero character; see `from`.
  VPropstring(const char* text, encoding from_encoding);
  /// A narrow text; see `from`.
  VPropstring(const std::string& text, encoding from_encoding);
  /// The text up to its zero character.
  // NOLINTNEXTLINE(google-explicit-constructor): a name is a text
  VPropstring(const wchar_t* text) : std::wstring(text) {}
  /// The text as it stands.
  // NOLINTNEXTLINE(google-explicit-constructor): a name is a text
  VPropstring(const std::wstring& text) : std::wstring(text) {}

  VPropstring& operator=(const VPropstring& other) = default;      ///< takes the same units
  VPropstring& operator=(VPropstring&& other) noexcept = default;  ///< takes the units over
  /// Take over a text in `encoding_local`, up to its zero character.
  VPropstring& operator=(const char* text);
  /// Take over a text in `encoding_local`.
  VPropstring& operator=(const std::string& text);

  /// The text in `encoding_local`.
  // NOLINTNEXTLINE(google-explicit-constructor): a text has narrow bytes
  operator std::string() const { return to(encoding_local); }

  /// Take over a narrow text. After an error the text is as it was.
  /// \throws std::runtime_error "Unknown encoding 'N' found" for an encoding that is none.
  VPropstring& from(const std::string& text, encoding from_encoding);
  /// Take over exactly `length` bytes, also past a zero byte, or with `zero_terminated` the bytes before
  /// the first zero byte; see the other form.
  VPropstring& from(const char* text, encoding from_encoding, unsigned int length);

  /// The text in a narrow encoding.
  /// \throws std::runtime_error "Unknown encoding 'N' found" for an encoding that is none.
  std::string to(encoding to_encoding) const;
  /// Write the text in a narrow encoding to `out`; see the other form.
  void to(std::string& out, encoding to_encoding) const;
  /// Copy the text in a narrow encoding, without a terminator, to a buffer that is larger than it needs.
  ///
  /// \param[out] buffer  takes the bytes if `size` is above their number; else it stays as it is.
  /// \param[in,out] size  bytes that the buffer has; becomes the number of bytes of the text where they
  ///   do not fit.
  /// \param[in] to_encoding  of the bytes.
  /// \return whether the text was copied.
  ///
  /// Intended: a buffer of exactly the number of bytes is too small;
  /// VPropstringTest.ABufferOfExactlyTheNeededSizeIsTooSmall.
  bool to(char* buffer, unsigned int& size, encoding to_encoding) const;

  /// Number of bytes of the text in a narrow encoding.
  unsigned int size_in(encoding to_encoding) const;
  /// Number of bytes of a wide text of `length` units, or before its zero character with
  /// `zero_terminated`, in a narrow encoding.
  static unsigned int size_in(const wchar_t* text, encoding to_encoding, unsigned int length);
  /// Number of UTF-16 units of a narrow text of `length` bytes, or before its zero byte with
  /// `zero_terminated`.
  static unsigned int length_of(const char* text, encoding from_encoding, unsigned int length);

  /// Whether the text in `encoding_local`, without what that cannot express, has these bytes.
  bool operator==(const std::string& text) const { return to(encoding_local) == text; }
  /// Whether the text in `encoding_local` has these bytes before their zero byte.
  bool operator==(const char* text) const { return to(encoding_local) == text; }
  /// Whether the units are the same.
  bool operator==(const std::wstring& text) const { return std::wstring_view(*this) == text; }
  /// Whether the units are the same as those before the zero character.
  bool operator==(const wchar_t* text) const { return std::wstring_view(*this) == text; }
  /// The opposite of `==` with the same argument.
  template <class Text>
  bool operator!=(const Text& text) const {
    return !(*this == text);
  }
};
