#include "foundation/scoped_codeset.h"

#include <dlfcn.h>
#include <langinfo.h>

namespace {

const char* codeset = nullptr;  // null for that which the process has

}  // namespace

// Stands in front of the C library's own, also for the shared library.
extern "C" __attribute__((visibility("default"))) char* nl_langinfo(nl_item item) noexcept {
  if (item == CODESET && codeset != nullptr) return const_cast<char*>(codeset);
  using Function = char* (*)(nl_item);
  static const auto next = reinterpret_cast<Function>(::dlsym(RTLD_NEXT, "nl_langinfo"));
  return next(item);
}

namespace Vrel::testing {

ScopedCodeset::ScopedCodeset(const char* name) { codeset = name; }
ScopedCodeset::~ScopedCodeset() { codeset = nullptr; }

}  // namespace Vrel::testing
