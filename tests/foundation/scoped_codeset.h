// Pretends that the locale of the process has another codeset.
#pragma once

namespace Vrel::testing {

/// As long as it lives; one at a time.
class ScopedCodeset {
 public:
  explicit ScopedCodeset(const char* name);
  ~ScopedCodeset();
  ScopedCodeset(const ScopedCodeset&) = delete;
  ScopedCodeset& operator=(const ScopedCodeset&) = delete;
};

}  // namespace Vrel::testing
