// Sets the time zone of the process for as long as the object lives.
#pragma once

#include <cstdlib>
#include <ctime>
#include <string>

class ScopedTimeZone {
 public:
  explicit ScopedTimeZone(const char* zone) {
    const char* const former = std::getenv("TZ");
    has_former_ = former != nullptr;
    if (has_former_) former_ = former;
    set(zone);
  }
  ~ScopedTimeZone() { set(has_former_ ? former_.c_str() : nullptr); }
  ScopedTimeZone(const ScopedTimeZone&) = delete;
  ScopedTimeZone& operator=(const ScopedTimeZone&) = delete;

 private:
  static void set(const char* zone) {
    zone == nullptr ? ::unsetenv("TZ") : ::setenv("TZ", zone, 1);
    ::tzset();
  }

  std::string former_;
  bool has_former_ = false;
};
