// Several ways to one end, timed in turns in one process.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

namespace bench {

struct Contestant {
  std::string name;
  std::function<void()> work;
};

inline double seconds_of(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// Prints the best time of each and, for the others, how many times that of the first it is.
inline void contest(const char* title, std::size_t bytes, int rounds,
                    const std::vector<Contestant>& contestants) {
  std::vector<double> best(contestants.size(), 1e9);
  for (int round = 0; round < rounds; ++round) {
    for (std::size_t i = 0; i < contestants.size(); ++i) {
      best[i] = std::min(best[i], seconds_of(contestants[i].work));
    }
  }
  std::printf("%s\n", title);
  for (std::size_t i = 0; i < contestants.size(); ++i) {
    std::printf("  %-12s %10.3f ms %10.1f MB/s %8.2f\n", contestants[i].name.c_str(), best[i] * 1e3,
                static_cast<double>(bytes) / best[i] / 1e6, best[i] / best[0]);
  }
  std::fflush(stdout);
}

}  // namespace bench
