// What the tests of the segment share.
#pragma once

#include <gtest/gtest.h>
#include <vrelio/foundation/error.h>

#include <functional>
#include <random>
#include <string>

namespace Vrel::testing {

constexpr unsigned default_chunk = 0x400000;

// Runs, matches and noise, so that streams hold every kind of symbol.
inline std::string sample_data(std::size_t size, unsigned seed) {
  std::mt19937 random(seed);
  std::string data;
  while (data.size() < size) {
    const std::size_t length = 1 + random() % 300;
    if (random() % 3 == 0) {
      data.append(length, static_cast<char>(random() % 7));
    } else if (random() % 2 == 0 && data.size() > length) {
      data += data.substr(random() % (data.size() - length), length);
    } else {
      for (std::size_t i = 0; i < length; ++i) data += static_cast<char>(random() % 256);
    }
  }
  data.resize(size);
  return data;
}

inline unsigned size_of(const std::string& data) { return static_cast<unsigned>(data.size()); }

// Whether a statement warned, by the last-error pair.
inline bool warns(const std::function<void()>& statement) {
  VrelError()("nothing yet")(77).process();
  statement();
  if (vrel_get_last_error() == 77) return false;
  EXPECT_EQ(vrel_get_last_error(), -10);
  EXPECT_STREQ(vrel_get_last_error_string(), "Inconsistency in segment!");
  return true;
}

}  // namespace Vrel::testing
