// Any text as a path: it is valid exactly if it can be created, what is written at it is read there, and
// reading creates nothing. Paths with large positions are only asked about, since their elements are real.
#include <vrelio/foundation/error.h>
#include <vrelio/prop/prop_struct.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <utility>

namespace {

void require(bool condition) {
  if (!condition) std::abort();
}

bool is_digit(char c) { return c >= '0' && c <= '9'; }

// At most some megabytes of elements.
bool is_affordable(const std::string& path) {
  int digits = 0;
  for (const char c : path) {
    digits = is_digit(c) ? digits + 1 : 0;
    if (digits > 2) return false;
  }
  return std::count(path.begin(), path.end(), ',') <= 2;
}

bool can_be_written(VProp& value, const std::string& path) {
  try {
    value[path] = 1;
    return true;
  } catch (const VrelError&) {
    return false;
  }
}

bool can_be_read(const VProp& value, const std::string& path) {
  try {
    value.getp(path);
    return true;
  } catch (const VrelError&) {
    return false;
  }
}

void write_and_read(const std::string& path, bool is_valid) {
  VProp value;
  require(path.empty() || !can_be_read(value, path));
  require(value.empty());
  require(can_be_written(value, path) == is_valid);
  if (!is_valid) return;
  require(std::as_const(value)[path].get<int>() == 1);
  VProp copy(value);
  copy[path] = 2;
  require(std::as_const(value)[path].get<int>() == 1);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string path(data, data + size);
  const bool is_valid = vrel_prop_is_valid_path(path);
  if (is_affordable(path)) write_and_read(path, is_valid);
  return 0;
}
