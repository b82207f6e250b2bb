// Gives the process a locale that writes numbers with a mark between groups of digits.
#pragma once

#include <locale>
#include <string>

namespace Vrel::testing {

/// As long as it lives; one at a time.
class ScopedDigitGroups {
 public:
  ScopedDigitGroups() : before_(std::locale::global(std::locale(std::locale(), new Groups))) {}
  ~ScopedDigitGroups() { std::locale::global(before_); }
  ScopedDigitGroups(const ScopedDigitGroups&) = delete;
  ScopedDigitGroups& operator=(const ScopedDigitGroups&) = delete;

 private:
  // Owned by the locale.
  struct Groups : std::numpunct<char> {
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
  };

  std::locale before_;
};

}  // namespace Vrel::testing
