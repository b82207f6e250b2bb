#include "foundation/file_name_internal.h"

#include <boost/locale/encoding.hpp>

#include "foundation/system_internal.h"

namespace Vrel::detail {

namespace {

void append_utf8(std::string& out, char32_t code) {
  const auto byte = [&out](char32_t bits) {
    out += static_cast<char>(static_cast<unsigned char>(bits));
  };
  const auto continuation = [&](int shift) { byte(0x80 | ((code >> shift) & 0x3F)); };
  if (code < 0x80) {
    byte(code);
  } else if (code < 0x800) {
    byte(0xC0 | (code >> 6));
    continuation(0);
  } else if (code < 0x10000) {
    byte(0xE0 | (code >> 12));
    continuation(6);
    continuation(0);
  } else {
    byte(0xF0 | (code >> 18));
    continuation(12);
    continuation(6);
    continuation(0);
  }
}

bool is_high_surrogate(char32_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool is_low_surrogate(char32_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

}  // namespace

std::optional<std::string> to_utf8(const std::wstring& text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    auto code = static_cast<char32_t>(text[i]);
    if (is_high_surrogate(code)) {
      if (i + 1 == text.size()) return std::nullopt;
      const auto low = static_cast<char32_t>(text[++i]);
      if (!is_low_surrogate(low)) return std::nullopt;
      code = (((code & 0x3FF) << 10) | (low & 0x3FF)) + 0x10000;
    } else if (is_low_surrogate(code) || code > 0x10FFFF) {
      return std::nullopt;
    }
    append_utf8(out, code);
  }
  return out;
}

std::optional<std::string> to_codeset(const std::wstring& text, const std::string& codeset) {
  std::optional<std::string> utf8 = to_utf8(text);
  if (!utf8 || codeset == "UTF-8") return utf8;
  try {
    namespace conv = boost::locale::conv;
    std::string local = conv::between(*utf8, codeset, "UTF-8", conv::stop);
    // A converter may put a look-alike where a character is missing.
    if (conv::between(local, "UTF-8", codeset, conv::stop) != *utf8) return std::nullopt;
    return local;
  } catch (const std::exception&) {
    return std::nullopt;
  }
}

std::optional<std::string> to_system_name(const VPropstring& name) {
  if (name.find(L'\0') != VPropstring::npos) return std::nullopt;
  return to_codeset(name, local_codeset());
}

}  // namespace Vrel::detail
