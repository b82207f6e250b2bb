// A lock for callers; the library itself takes none.
#pragma once

#include <vrelio/export.h>

#include <mutex>

/// A lock that one thread may enter several times.
///
/// Intended: a copy names the same system object, and every destructor deletes it. So a copy must
/// neither outlive its source nor be destroyed beside it.
class VRELIO_EXPORT VCriticalSection {
 public:
  VCriticalSection();
  /// Names the same system object.
  VCriticalSection(const VCriticalSection& other) = default;
  /// Names the other's system object from now on.
  VCriticalSection& operator=(const VCriticalSection& other) = default;
  virtual ~VCriticalSection();

  /// Enter; waits while another thread is inside.
  void lock();
  /// Leave. Called by the thread that is inside, once for each `lock`.
  void unlock();

 private:
  std::recursive_mutex* section_;
};
