// Text in the form of printf as a string of its own length.
#pragma once

#include <vrelio/export.h>

#include <cstdarg>
#include <string>
#include <type_traits>

/// The formatted text up to its first zero character; empty where it cannot be formatted.
VRELIO_EXPORT std::string format_string(const char* format, ...);
VRELIO_EXPORT std::wstring format_string(const wchar_t* format, ...);

/// The same from a ready argument list, which is used up.
VRELIO_EXPORT std::string format_string(const char* format, std::va_list arguments);
VRELIO_EXPORT std::wstring format_string(const wchar_t* format, std::va_list arguments);

namespace Vrel::detail {
VRELIO_EXPORT std::string format_arguments(const char* format, ...);
VRELIO_EXPORT std::wstring format_arguments(const wchar_t* format, ...);

template <class T>
using if_maybe_null = std::enable_if_t<std::is_integral_v<T> || std::is_null_pointer_v<T>, int>;
}  // namespace Vrel::detail

/// Takes the calls whose first argument is a literal 0 or null, which would else pass for an
/// argument list where that is a pointer.
template <class Character, class First, class... Rest, Vrel::detail::if_maybe_null<First> = 0>
std::basic_string<Character> format_string(const Character* format, First first, Rest... rest) {
  return Vrel::detail::format_arguments(format, first, rest...);
}
