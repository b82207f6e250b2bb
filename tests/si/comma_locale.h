// A locale that writes 1.234,5 for as long as the object lives.
#pragma once

#include <clocale>
#include <locale>
#include <memory>
#include <string>

namespace si::testing {

class CommaLocale {
 public:
  CommaLocale()
      : streams_(std::locale::global(
            std::locale(std::locale::classic(), std::make_unique<Commas>().release()))),
        numbers_(std::setlocale(LC_NUMERIC, nullptr)) {
    // It is built with the tests where localedef is there; the streams have theirs in any case.
    std::setlocale(LC_NUMERIC, "de_DE.UTF-8");
  }
  ~CommaLocale() {
    std::locale::global(streams_);
    std::setlocale(LC_NUMERIC, numbers_.c_str());
  }
  CommaLocale(const CommaLocale&) = delete;
  CommaLocale& operator=(const CommaLocale&) = delete;

 private:
  // Owned by the locale that it is given to.
  class Commas : public std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
  };

  std::locale streams_;
  std::string numbers_;
};

}  // namespace si::testing
