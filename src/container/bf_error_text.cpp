// The texts of identifiers for people.
#include <vrelio/container/bf_file.h>
#include <vrelio/foundation/error.h>

#include <algorithm>
#include <cstring>
#include <string>

#include "foundation/raise_internal.h"

using namespace Vrel::detail;

namespace {

const char* find_text(int code) {
  switch (code) {
    case id_file_system:
      return "Filesystem error";
    case id_format:
      return "Error in file format";
    case id_conversion:
      return "Error during type conversion";
    case id_stack_index:
      return "Stack index error";
    case -7:
      return "Error in vbf routine";
    case -8:
      return "Invalid string buffer supplied";
    case id_handle:
      return "Problem with vbf handle";
    case id_compression:
      return "Error in vbf filter queue";
    case id_cancelled:
      return "Operation cancelled by caller";
    default:
      return "Error in vbf routine";
  }
}

std::string compose(int code) {
  std::string tail;
  if (code < 0) {
    tail = std::string("\n") + vrel_get_last_error_string();
    code = vrel_get_last_error();
  }
  if (code == 0) return std::string();
  return std::string("Error in vbf module: ") + find_text(code) + tail;
}

}  // namespace

// Intended: a code below 0 is only a sign that the last error is meant;
// ErrorTextTest.ACodeBelowZeroStandsForTheLastError.
const char* vrel_bf_get_errorstring(int code) {
  static char buffer[2048];
  const std::string text = compose(code);
  const std::size_t length = std::min(text.size(), sizeof buffer - 1);
  std::memcpy(buffer, text.data(), length);
  buffer[length] = '\0';
  return buffer;
}
