// A disk that is full in the middle of a transfer.
#pragma once

#include <sys/resource.h>

#include <csignal>

namespace Vrel::testing {

// While it lives, no file of this process grows beyond a size: a transfer that passes it is cut off there, and
// the next fails with EFBIG.
class ScopedFileSizeLimit {
 public:
  explicit ScopedFileSizeLimit(rlim_t size) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
    ::getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit limit{size, before_.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~ScopedFileSizeLimit() {
    ::setrlimit(RLIMIT_FSIZE, &before_);
    std::signal(SIGXFSZ, handler_);
  }
  ScopedFileSizeLimit(const ScopedFileSizeLimit&) = delete;
  ScopedFileSizeLimit& operator=(const ScopedFileSizeLimit&) = delete;

 private:
  void (*handler_)(int);
  rlimit before_{};
};

}  // namespace Vrel::testing
