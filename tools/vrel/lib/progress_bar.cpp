#include "lib/progress_bar.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>

namespace Vrel::tool {

namespace {

using namespace std::chrono_literals;

constexpr auto delay = 500ms;
constexpr auto interval = 100ms;
constexpr const char* clear_line = "\r\x1B[K";

std::string bar(double share) {
  constexpr std::size_t width = 30;
  const auto full = static_cast<std::size_t>(share * static_cast<double>(width));
  return '[' + std::string(full, '#') + std::string(width - full, '.') + ']';
}

void print_to_standard_error(const std::string& text) {
  std::fwrite(text.data(), 1, text.size(), stderr);
}

}  // namespace

std::string progress_text(u64 done, u64 total, std::chrono::duration<double> elapsed) {
  const double share =
      total == 0 ? 1.0 : static_cast<double>(std::min(done, total)) / static_cast<double>(total);
  const double rate = static_cast<double>(done) / std::max(elapsed.count(), 1e-9);
  const double remaining = static_cast<double>(total - std::min(done, total)) / std::max(rate, 1.0);
  char numbers[80];
  std::snprintf(numbers, sizeof numbers, " %3.0f %%  %.1f MB/s  %.0f s left", share * 100.0,
                rate / 1e6, remaining);
  return bar(share) + numbers;
}

ProgressBar ProgressBar::on_terminal(u64 total) {
  const bool visible = ::isatty(STDERR_FILENO) == 1;
  return {total, visible ? Display(print_to_standard_error) : Display(),
          std::chrono::steady_clock::now};
}

ProgressBar::ProgressBar(u64 total, Display display, Clock clock)
    : total_(total),
      display_(std::move(display)),
      clock_(std::move(clock)),
      start_(clock_()),
      next_update_(start_ + delay) {}

ProgressBar::~ProgressBar() {
  if (visible_) display_(clear_line);
}

void ProgressBar::advance(u64 bytes) {
  done_ += bytes;
  if (!display_) return;
  const auto now = clock_();
  if (now < next_update_) return;
  next_update_ = now + interval;
  visible_ = true;
  display_(clear_line + progress_text(done_, total_, now - start_));
}

}  // namespace Vrel::tool
