#include "support/system_fault.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/types.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdlib>
#include <new>

namespace {

Vrel::testing::Fault current;
const Vrel::testing::Fault* active = nullptr;
int seen = 0;
bool hit = false;
std::vector<Vrel::testing::WrittenBytes>* recorded = nullptr;
std::string name_of_shared_memory;
int writes_to_death = 0;

bool fails(Vrel::testing::SystemCall call) {
  if (active == nullptr || active->call != call) return false;
  ++seen;
  if (active->occurrence != 0 && active->occurrence != seen) return false;
  hit = true;
  return true;
}

// A failed call answers -1, a short transfer moves less than it was asked for.
template <class Transfer>
ssize_t faulty_transfer(Vrel::testing::SystemCall call, std::size_t size, Transfer transfer) {
  if (!fails(call)) return transfer(size);
  if (active->error == 0) return transfer(active->short_size < size ? active->short_size : size);
  errno = active->error;
  return -1;
}

template <class Result, class Call>
Result faulty(Vrel::testing::SystemCall kind, Call call) {
  if (!fails(kind)) return call();
  errno = active->error;
  return Result{-1};
}

}  // namespace

extern "C" {
int __real_open(const char* name, int flags, ...);
ssize_t __real_read(int descriptor, void* buffer, std::size_t size);
ssize_t __real_write(int descriptor, const void* buffer, std::size_t size);
off_t __real_lseek(int descriptor, off_t offset, int whence);
int __real_flock(int descriptor, int operation);
int __real_ftruncate(int descriptor, off_t length);
int __real_posix_fallocate(int descriptor, off_t offset, off_t length);
int __real_shm_open(const char* name, int flags, mode_t permissions);
void* __real_calloc(std::size_t count, std::size_t size);
void* __real_mmap(void* address, std::size_t size, int protection, int flags, int descriptor,
                  off_t offset);

int __wrap_open(const char* name, int flags, ...);
ssize_t __wrap_read(int descriptor, void* buffer, std::size_t size);
ssize_t __wrap_write(int descriptor, const void* buffer, std::size_t size);
off_t __wrap_lseek(int descriptor, off_t offset, int whence);
int __wrap_flock(int descriptor, int operation);
int __wrap_ftruncate(int descriptor, off_t length);
int __wrap_posix_fallocate(int descriptor, off_t offset, off_t length);
int __wrap_shm_open(const char* name, int flags, mode_t permissions);
void* __wrap_calloc(std::size_t count, std::size_t size);
void* __wrap_mmap(void* address, std::size_t size, int protection, int flags, int descriptor,
                  off_t offset);

using Vrel::testing::SystemCall;

static void record_write(int descriptor, const void* buffer, ssize_t size) {
  if (recorded == nullptr || size <= 0) return;
  const off_t end = __real_lseek(descriptor, 0, SEEK_CUR);
  recorded->push_back({static_cast<std::size_t>(end - size),
                       {static_cast<const char*>(buffer), static_cast<std::size_t>(size)}});
}

static void die_if_it_is_time() {
  if (writes_to_death != 0 && --writes_to_death == 0) ::kill(::getpid(), SIGKILL);
}

int __wrap_open(const char* name, int flags, ...) {
  std::va_list arguments;
  va_start(arguments, flags);
  const mode_t permissions = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
  va_end(arguments);
  return faulty<int>(SystemCall::open, [&] { return __real_open(name, flags, permissions); });
}

ssize_t __wrap_read(int descriptor, void* buffer, std::size_t size) {
  return faulty_transfer(SystemCall::read, size,
                         [&](std::size_t part) { return __real_read(descriptor, buffer, part); });
}

ssize_t __wrap_write(int descriptor, const void* buffer, std::size_t size) {
  const ssize_t moved = faulty_transfer(SystemCall::write, size, [&](std::size_t part) {
    return __real_write(descriptor, buffer, part);
  });
  record_write(descriptor, buffer, moved);
  die_if_it_is_time();
  return moved;
}

off_t __wrap_lseek(int descriptor, off_t offset, int whence) {
  return faulty<off_t>(SystemCall::seek, [&] { return __real_lseek(descriptor, offset, whence); });
}

int __wrap_flock(int descriptor, int operation) {
  return faulty<int>(SystemCall::lock, [&] { return __real_flock(descriptor, operation); });
}

int __wrap_ftruncate(int descriptor, off_t length) {
  return faulty<int>(SystemCall::truncate, [&] { return __real_ftruncate(descriptor, length); });
}

// Answers the error number itself.
int __wrap_posix_fallocate(int descriptor, off_t offset, off_t length) {
  if (fails(SystemCall::reserve)) return active->error;
  return __real_posix_fallocate(descriptor, offset, length);
}

int __wrap_shm_open(const char* name, int flags, mode_t permissions) {
  name_of_shared_memory = name;
  return faulty<int>(SystemCall::open_shared,
                     [&] { return __real_shm_open(name, flags, permissions); });
}

void* __wrap_calloc(std::size_t count, std::size_t size) {
  return fails(SystemCall::allocate) ? nullptr : __real_calloc(count, size);
}

void* __wrap_mmap(void* address, std::size_t size, int protection, int flags, int descriptor,
                  off_t offset) {
  if (!fails(SystemCall::map)) {
    return __real_mmap(address, size, protection, flags, descriptor, offset);
  }
  errno = active->error;
  return MAP_FAILED;
}
}

// All that is made on the heap comes by here, and the sanitizers see what stands behind it.
void* operator new(std::size_t size) {
  void* const block =
      fails(SystemCall::allocate_object) ? nullptr : std::malloc(size == 0 ? 1 : size);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return fails(SystemCall::allocate_object) ? nullptr : std::malloc(size == 0 ? 1 : size);
}

void operator delete(void* block) noexcept { std::free(block); }

void operator delete(void* block, const std::nothrow_t& /*tag*/) noexcept { std::free(block); }

void operator delete(void* block, std::size_t /*size*/) noexcept { std::free(block); }

namespace Vrel::testing {

ScopedDeath::ScopedDeath(int write) { writes_to_death = write; }

ScopedDeath::~ScopedDeath() { writes_to_death = 0; }

ScopedSystemFault::ScopedSystemFault(const Fault& fault) {
  seen = 0;
  hit = false;
  active = &(current = fault);
}

ScopedSystemFault::~ScopedSystemFault() { active = nullptr; }

int ScopedSystemFault::calls() const { return seen; }

bool ScopedSystemFault::happened() const { return hit; }

ScopedWriteRecord::ScopedWriteRecord() { recorded = &writes_; }

ScopedWriteRecord::~ScopedWriteRecord() { recorded = nullptr; }

std::string last_name_of_shared_memory() { return name_of_shared_memory; }

}  // namespace Vrel::testing
