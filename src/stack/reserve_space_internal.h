// Having the system give memory or disk space at once, not at the first access.
#pragma once

namespace Vrel::detail {

// Take the space for the first `size` bytes of an open file; what it holds stays. 0, or the system's
// error number. A file system that cannot reserve is no error.
int reserve_space(int descriptor, unsigned int size);

}  // namespace Vrel::detail
