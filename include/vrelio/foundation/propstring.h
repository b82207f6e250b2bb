// The text type of the library, here as far as file names need it.
#pragma once

#include <vrelio/export.h>

#include <string>

/// Wide text in UTF-16 code units, also where `wchar_t` has 32 bits. A 32-bit unit above 0xFFFF
/// counts as the code point that it is.
class VRELIO_EXPORT VPropstring : public std::wstring {
 public:
  VPropstring() = default;
  /// The text up to its zero character.
  // NOLINTNEXTLINE(google-explicit-constructor): a name is a text
  VPropstring(const wchar_t* text) : std::wstring(text) {}
  /// The text as it stands.
  // NOLINTNEXTLINE(google-explicit-constructor): a name is a text
  VPropstring(const std::wstring& text) : std::wstring(text) {}
};
