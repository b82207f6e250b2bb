// Code points in UTF-8 and in wide text.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace Vrel::detail {

// Take the next code point from the front of a wide text: a pair of surrogates, or one unit, which
// where `wchar_t` has 32 bits may lie above 0xFFFF. Nothing for a lone surrogate and for a unit beyond
// Unicode, which are taken as well.
std::optional<char32_t> take_code_point(std::wstring_view& text);

// Take the next code point from the front of a UTF-8 text. Nothing for bytes that stand for none; they
// are taken up to where a well-formed sequence may begin again.
std::optional<char32_t> take_code_point(std::string_view& text);

void append_utf8(std::string& out, char32_t code);
// One UTF-16 unit or a pair of surrogates.
void append_utf16(std::wstring& out, char32_t code);

// UTF-8 of a wide text without what stands for no code point.
std::string utf8_of(std::wstring_view text);
// UTF-16 units of a UTF-8 text without what stands for no code point.
std::wstring utf16_of(std::string_view text);

}  // namespace Vrel::detail
