// The one road on which the library raises its errors.
#pragma once

#include <vrelio/foundation/error.h>

namespace Vrel::detail {

// Identifiers; their texts stand in docs/errors.md.
enum error_id {
  id_plain = -1,
  id_file_system = -3,
  id_format = -4,
  id_conversion = -5,
  id_stack_index = -6,
  id_handle = -9,
  id_compression = -10,
  id_cancelled = -11,
  id_mode = -15
};

// Throw a VrelError with a message in the form of printf. Text from outside is always an argument
// of "%s".
[[noreturn]] void raise(int id, const char* format, ...) __attribute__((format(printf, 2, 3)));

// The same with the calling thread's system error, which is read before anything can overwrite it.
[[noreturn]] void raise_oserr(int id, const char* format, ...)
    __attribute__((format(printf, 2, 3)));

}  // namespace Vrel::detail
