#include "lib/memory_limit.h"

#include <sys/resource.h>

#include <algorithm>

namespace Vrel::tool {

#if defined(__SANITIZE_ADDRESS__)

bool limit_memory(std::uint64_t) { return false; }

#else

bool limit_memory(std::uint64_t bytes) {
  rlimit limit{};
  if (::getrlimit(RLIMIT_DATA, &limit) != 0) return false;
  limit.rlim_cur = std::min<rlim_t>(bytes, limit.rlim_max);
  return ::setrlimit(RLIMIT_DATA, &limit) == 0;
}

#endif

}  // namespace Vrel::tool
