// Two ways to the same end, timed in turns, each time in a process of its own.
#pragma once

#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <functional>

constexpr int comparison_rounds = 7;

inline void require(bool condition, const char* what) {
  if (condition) return;
  std::fprintf(stderr, "%s\n", what);
  std::exit(1);
}

inline double seconds(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// In a process of its own, so that nobody finds the heap as another one left it.
inline double seconds_apart(const std::function<void()>& work) {
  int ends[2];
  require(pipe(ends) == 0, "no pipe");
  const pid_t child = fork();
  require(child != -1, "no process");
  double time = 0.0;
  if (child == 0) {
    malloc_trim(0);
    time = seconds(work);
    _exit(write(ends[1], &time, sizeof time) == sizeof time ? 0 : 1);
  }
  close(ends[1]);
  require(read(ends[0], &time, sizeof time) == sizeof time, "no time");
  close(ends[0]);
  waitpid(child, nullptr, 0);
  return time;
}

inline void print_comparison_head() {
  std::printf("%-30s %10s %10s %8s\n", "MB/s", "ours", "peer", "ratio");
}

/// The best rate of each, in MB/s of a text of `size` bytes, and their ratio.
inline void compare(const char* name, std::size_t size, const std::function<void()>& ours,
                    const std::function<void()>& peer) {
  double best_ours = seconds_apart(ours);
  double best_peer = seconds_apart(peer);
  for (int i = 1; i < comparison_rounds; ++i) {
    best_ours = std::min(best_ours, seconds_apart(ours));
    best_peer = std::min(best_peer, seconds_apart(peer));
  }
  const double megabytes = static_cast<double>(size) / 1e6;
  std::printf("%-30s %10.1f %10.1f %8.2f\n", name, megabytes / best_ours, megabytes / best_peer,
              best_peer / best_ours);
  std::fflush(stdout);
}

inline std::size_t heap_size() {
  const auto info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

/// What the object that `make` gives takes of the heap.
template <class Make>
double bytes_per_node(const Make& make, std::size_t nodes) {
  const std::size_t before = heap_size();
  const auto tree = make();
  return static_cast<double>(heap_size() - before) / static_cast<double>(nodes);
}

inline void print_memory(double ours, double peer) {
  std::printf("%-30s %10.1f %10.1f %8.2f\n", "bytes per node", ours, peer, peer / ours);
}
