#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>

#include "stack/large_pages_internal.h"

namespace Vrel::detail {
namespace {

// Below that the system would hardly find a large page inside.
constexpr std::size_t worthwhile_size = std::size_t{4} << 20;

}  // namespace

void prefer_large_pages(void* begin, std::size_t size) noexcept {
#ifdef MADV_HUGEPAGE
  if (size < worthwhile_size) return;
  const auto page = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
  const std::uintptr_t skipped = (page - reinterpret_cast<std::uintptr_t>(begin) % page) % page;
  // Refused by systems that have none; the memory is the same then.
  ::madvise(static_cast<unsigned char*>(begin) + skipped, size - skipped, MADV_HUGEPAGE);
#else
  static_cast<void>(begin);
  static_cast<void>(size);
#endif
}

}  // namespace Vrel::detail
