// ".dbl" files as tests make and read them.
#pragma once

#include <vrelio/container/dbl.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <numeric>
#include <string>
#include <vector>

namespace Vrel::testing {

using Dims = std::array<int, 4>;
using Lengths = std::array<float, 4>;

constexpr Lengths some_lengths = {1.5F, -2.0F, 0.0F, 1e30F};

// The 128 bytes in front of the samples, put together from the table of the format alone.
inline std::string dbl_header(const Dims& dims, const Lengths& lengths, unsigned char precision) {
  std::string bytes;
  for (const std::size_t i : {2U, 1U, 0U, 3U}) {
    bytes += static_cast<char>(dims[i] / 256);
    bytes += static_cast<char>(dims[i] % 256);
  }
  for (const std::size_t i : {2U, 1U, 0U, 3U}) {
    std::uint32_t bits;
    std::memcpy(&bits, &lengths[i], sizeof bits);
    for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(bits >> shift);
  }
  bytes += static_cast<char>(precision);
  return bytes + std::string(103, '\0');
}

template <class T>
std::string bytes_of(const std::vector<T>& samples) {
  return {reinterpret_cast<const char*>(samples.data()), samples.size() * sizeof(T)};
}

// 0.1, 1.1, 2.1 and so on: no float has these values.
inline std::vector<double> some_samples(std::size_t count) {
  std::vector<double> samples(count);
  std::iota(samples.begin(), samples.end(), 0.1);
  return samples;
}

inline std::vector<float> narrowed(const std::vector<double>& samples) {
  std::vector<float> result;
  for (const double sample : samples) result.push_back(static_cast<float>(sample));
  return result;
}

inline std::vector<double> widened(const std::vector<float>& samples) {
  return {samples.begin(), samples.end()};
}

// One call of `vrel_dbl_read` and what it left behind.
class DblReading {
 public:
  // With room for samples of the caller's, or with that for four sizes.
  DblReading(const std::string& path, int code, void* room = nullptr) {
    std::memcpy(&place, &code, sizeof code);
    result =
        vrel_dbl_read(path.c_str(), room == nullptr ? dims.data() : room, lengths.data(), &place);
    const bool has_pointer = result != 0 && code != 0xA0 && code != 0xAD;
    if (has_pointer && room == nullptr) block_.reset(place);
  }

  template <class T>
  std::vector<T> samples(std::size_t count) const {
    const T* const first = static_cast<const T*>(place);
    return {first, first + count};
  }

  int result = -1;
  Dims dims = {-1, -1, -1, -1};
  Lengths lengths = {-1, -1, -1, -1};
  void* place = nullptr;

 private:
  struct Free {
    void operator()(void* block) const { std::free(block); }
  };
  std::unique_ptr<void, Free> block_;
};

}  // namespace Vrel::testing
