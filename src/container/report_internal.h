// What destructors do with failures.
#pragma once

#include <vrelio/foundation/error.h>

#include <exception>

namespace Vrel::detail {

// Do what may raise, and report what it raises by `VrelError::process`.
template <class Work>
void report_failures(Work work) noexcept {
  try {
    try {
      work();
    } catch (const VrelError& error) {
      error.process();
    } catch (const std::exception& error) {
      VrelError(error.what(), nullptr, nullptr, 0).process();
    }
  } catch (...) {
    // No memory for a report, or something that has no text.
    return;
  }
}

}  // namespace Vrel::detail
