// Makes the n-th of some system calls fail, for tests of what follows. The calls are wrapped by the
// linker, so that the library itself knows nothing of it.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace Vrel::testing {

enum class SystemCall {
  open,
  read,
  write,
  seek,
  lock,
  truncate,
  reserve,
  open_shared,
  map,
  allocate,
  allocate_object  // operator new
};

struct Fault {
  SystemCall call;
  // Which call of the kind fails, the first being 1; 0 for each of them.
  int occurrence;
  // The error number that the call leaves behind; 0 for a transfer that is short instead.
  int error;
  // Bytes that a short transfer still moves.
  std::size_t short_size = 0;
};

// While it lives, the calls of this process fail as told. One at a time.
class ScopedSystemFault {
 public:
  explicit ScopedSystemFault(const Fault& fault);
  ~ScopedSystemFault();
  ScopedSystemFault(const ScopedSystemFault&) = delete;
  ScopedSystemFault& operator=(const ScopedSystemFault&) = delete;

  // Calls of the kind seen so far.
  int calls() const;
  bool happened() const;
};

// While it lives, the process is killed behind its n-th write, the first being 1. One at a time.
class ScopedDeath {
 public:
  explicit ScopedDeath(int write);
  ~ScopedDeath();
  ScopedDeath(const ScopedDeath&) = delete;
  ScopedDeath& operator=(const ScopedDeath&) = delete;
};

// Bytes that a write has moved, and where to.
struct WrittenBytes {
  std::size_t position;
  std::string bytes;
};

// While it lives, keeps what the calls of write move. One at a time.
class ScopedWriteRecord {
 public:
  ScopedWriteRecord();
  ~ScopedWriteRecord();
  ScopedWriteRecord(const ScopedWriteRecord&) = delete;
  ScopedWriteRecord& operator=(const ScopedWriteRecord&) = delete;

  const std::vector<WrittenBytes>& writes() const { return writes_; }

 private:
  std::vector<WrittenBytes> writes_;
};

// The name that was last given to shm_open, whether it succeeded or not.
std::string last_name_of_shared_memory();

}  // namespace Vrel::testing
