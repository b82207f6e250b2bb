#include <vrelio/foundation/format_string.h>

#include <cstdio>

#include "foundation/system_internal.h"

std::string format_string(const char* format, std::va_list arguments) {
  std::va_list measured;
  va_copy(measured, arguments);
  const int length = std::vsnprintf(nullptr, 0, format, measured);
  va_end(measured);
  if (length < 1) return {};
  std::string text(static_cast<std::size_t>(length) + 1, '\0');
  std::vsnprintf(text.data(), text.size(), format, arguments);
  return text.c_str();  // NOLINT(readability-redundant-string-cstr): up to the first zero
}

std::wstring format_string(const wchar_t* format, std::va_list arguments) {
  std::wstring text;
  // NOLINTNEXTLINE(readability-redundant-string-cstr): up to the first zero
  return Vrel::detail::format_wide(text, format, arguments) ? text.c_str() : std::wstring();
}

std::string format_string(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  std::string text = format_string(format, arguments);
  va_end(arguments);
  return text;
}

std::wstring format_string(const wchar_t* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  std::wstring text = format_string(format, arguments);
  va_end(arguments);
  return text;
}

namespace Vrel::detail {

std::string format_arguments(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  std::string text = format_string(format, arguments);
  va_end(arguments);
  return text;
}

std::wstring format_arguments(const wchar_t* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  std::wstring text = format_string(format, arguments);
  va_end(arguments);
  return text;
}

}  // namespace Vrel::detail
