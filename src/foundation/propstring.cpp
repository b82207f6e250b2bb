#include <vrelio/foundation/format_string.h>
#include <vrelio/foundation/propstring.h>

#include <boost/locale/encoding.hpp>
#include <stdexcept>

#include "foundation/system_internal.h"
#include "foundation/unicode_internal.h"

namespace {

namespace conv = boost::locale::conv;

constexpr const char* utf8 = "UTF-8";

std::string codeset_of(VPropstring::encoding encoding) {
  switch (encoding) {
    case VPropstring::encoding_utf8:
      return utf8;
    case VPropstring::encoding_local:
      return Vrel::detail::local_codeset();
    case VPropstring::encoding_windows1252:
      return "windows-1252";
  }
  throw std::runtime_error(
      format_string("Unknown encoding '%d' found", static_cast<int>(encoding)));
}

std::size_t length_before_zero(const char* text, unsigned int length) {
  return length == VPropstring::zero_terminated ? std::char_traits<char>::length(text) : length;
}

std::size_t length_before_zero(const wchar_t* text, unsigned int length) {
  return length == VPropstring::zero_terminated ? std::char_traits<wchar_t>::length(text) : length;
}

// The wide text goes through UTF-8, since Boost.Locale takes surrogates in 32-bit units for faults.
std::string narrow(std::wstring_view text, VPropstring::encoding encoding) {
  const std::string codeset = codeset_of(encoding);
  std::string bytes = Vrel::detail::utf8_of(text);
  if (bytes.empty() || codeset == utf8) return bytes;
  return conv::from_utf<char>(bytes, codeset, conv::skip);
}

std::wstring widen(const std::string& text, VPropstring::encoding encoding) {
  const std::string codeset = codeset_of(encoding);
  if (text.empty() || codeset == utf8) return Vrel::detail::utf16_of(text);
  return Vrel::detail::utf16_of(conv::to_utf<char>(text, codeset, conv::skip));
}

}  // namespace

VPropstring::VPropstring(const char* text, encoding from_encoding) { from(text, from_encoding); }

VPropstring::VPropstring(const std::string& text, encoding from_encoding) {
  from(text, from_encoding);
}

VPropstring& VPropstring::operator=(const char* text) {
  from(text, encoding_local);
  return *this;
}

VPropstring& VPropstring::operator=(const std::string& text) {
  from(text, encoding_local);
  return *this;
}

VPropstring& VPropstring::from(const std::string& text, encoding from_encoding) {
  assign(widen(text, from_encoding));
  return *this;
}

VPropstring& VPropstring::from(const char* text, encoding from_encoding, unsigned int length) {
  return from(std::string(text, length_before_zero(text, length)), from_encoding);
}

std::string VPropstring::to(encoding to_encoding) const { return narrow(*this, to_encoding); }

void VPropstring::to(std::string& out, encoding to_encoding) const { out = to(to_encoding); }

bool VPropstring::to(char* buffer, unsigned int& size, encoding to_encoding) const {
  const std::string text = to(to_encoding);
  if (text.size() < size) {
    text.copy(buffer, text.size());
    return true;
  }
  size = static_cast<unsigned int>(text.size());
  return false;
}

unsigned int VPropstring::size_in(encoding to_encoding) const {
  return static_cast<unsigned int>(to(to_encoding).size());
}

unsigned int VPropstring::size_in(const wchar_t* text, encoding to_encoding, unsigned int length) {
  const std::wstring_view wide(text, length_before_zero(text, length));
  return static_cast<unsigned int>(narrow(wide, to_encoding).size());
}

unsigned int VPropstring::length_of(const char* text, encoding from_encoding, unsigned int length) {
  return static_cast<unsigned int>(VPropstring().from(text, from_encoding, length).size());
}
