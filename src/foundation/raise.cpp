#include "foundation/raise_internal.h"

#include <vrelio/foundation/format_string.h>

#include <cstdarg>

namespace Vrel::detail {

void raise(int id, const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  const std::string message = format_string(format, arguments);
  va_end(arguments);
  throw VrelError()("%s", message.c_str())(id);
}

void raise_oserr(int id, const char* format, ...) {
  VrelError error;
  error.do_oserr();
  std::va_list arguments;
  va_start(arguments, format);
  const std::string message = format_string(format, arguments);
  va_end(arguments);
  throw VrelError(error)("%s", message.c_str())(id);
}

}  // namespace Vrel::detail
