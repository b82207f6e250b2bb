#include "foundation/system_internal.h"

#include <langinfo.h>
#include <string.h>  // NOLINT(modernize-deprecated-headers): strerror_r
#include <sys/syscall.h>
#include <unistd.h>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cwchar>

namespace Vrel::detail {

namespace {

// strerror_r comes in two forms, and the headers choose: the portable one returns a status and
// fills the buffer, the other returns the text, and a text of its own making for a number that the
// system does not know.
[[maybe_unused]] const char* text_of(int status, const char* buffer) {
  return status == 0 ? buffer : nullptr;
}
[[maybe_unused]] const char* text_of(const char* text, const char*) {
  return std::strncmp(text, "Unknown error", 13) == 0 ? nullptr : text;
}

}  // namespace

int last_system_error() { return errno; }

std::string system_error_text(int number) {
  char buffer[1024] = "";
  const char* text = text_of(::strerror_r(number, buffer, sizeof buffer), buffer);
  return text != nullptr ? text : "Unknown system error.";
}

std::uint32_t system_thread_id() { return static_cast<std::uint32_t>(::syscall(SYS_gettid)); }

std::string local_codeset() {
  const std::string codeset = ::nl_langinfo(CODESET);
  return codeset == "ANSI_X3.4-1968" ? "UTF-8" : codeset;
}

bool format_wide(std::wstring& text, const wchar_t* format, std::va_list arguments) {
  wchar_t* buffer = nullptr;
  std::size_t length = 0;
  std::FILE* stream = ::open_wmemstream(&buffer, &length);
  if (stream == nullptr) return false;
  const bool formatted = std::vfwprintf(stream, format, arguments) >= 0;
  const bool complete = std::fclose(stream) == 0 && formatted;
  if (complete) text.append(buffer, length);
  std::free(buffer);
  return complete;
}

}  // namespace Vrel::detail
