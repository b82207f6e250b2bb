// How far long work has come, for whoever watches a terminal.
#pragma once

#include <vrelio/file/file_access.h>

#include <chrono>
#include <functional>
#include <string>

namespace Vrel::tool {

/// One line without its end: bar, share, rate and remaining time.
std::string progress_text(u64 done, u64 total, std::chrono::duration<double> elapsed);

/// Shows itself once the work has lasted half a second, at most ten times a second, and is gone
/// when the object is.
class ProgressBar {
 public:
  using Clock = std::function<std::chrono::steady_clock::time_point()>;
  using Display = std::function<void(const std::string&)>;

  /// A bar on standard error if that is a terminal, else one that shows nothing.
  static ProgressBar on_terminal(u64 total);

  /// \param total  bytes of the whole work.
  /// \param display  takes what is to be printed; none for a bar that shows nothing.
  ProgressBar(u64 total, Display display, Clock clock);
  ~ProgressBar();
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;

  /// Count bytes that were done since the last call.
  void advance(u64 bytes);

 private:
  u64 total_;
  u64 done_ = 0;
  bool visible_ = false;
  Display display_;
  Clock clock_;
  std::chrono::steady_clock::time_point start_;
  std::chrono::steady_clock::time_point next_update_;
};

}  // namespace Vrel::tool
