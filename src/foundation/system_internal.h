// What the foundation asks of the operating system: errors, thread, encoding. One implementation
// per system.
#pragma once

#include <cstdarg>
#include <cstdint>
#include <string>

namespace Vrel::detail {

// The calling thread's last error number.
int last_system_error();

// The system's text for an error number; "Unknown system error." where it has none.
std::string system_error_text(int number);

// The kernel's id of the calling thread.
std::uint32_t system_thread_id();

// The codeset of the locale that the process has set, and UTF-8 for the "C" locale's ASCII.
std::string local_codeset();

// Append a wide text in the form of printf, whatever its length, which the standard's own function
// cannot measure. False if it cannot be formatted.
bool format_wide(std::wstring& text, const wchar_t* format, std::va_list arguments);

}  // namespace Vrel::detail
