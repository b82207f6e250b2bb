#include "foundation/file_name_internal.h"

#include <boost/locale/encoding.hpp>

#include "foundation/system_internal.h"
#include "foundation/unicode_internal.h"

namespace Vrel::detail {

std::optional<std::string> to_utf8(const std::wstring& text) {
  std::string out;
  out.reserve(text.size());
  std::wstring_view rest = text;
  while (!rest.empty()) {
    const std::optional<char32_t> code = take_code_point(rest);
    if (!code) return std::nullopt;
    append_utf8(out, *code);
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
