// Numbers to little-endian bytes and back, whatever the order of the machine.
#pragma once

#include <cstdint>
#include <cstring>

namespace Vrel::detail {

inline void put_u32(unsigned char* bytes, std::uint32_t value) {
  for (int i = 0; i < 4; ++i) bytes[i] = static_cast<unsigned char>(value >> (8 * i));
}

inline void put_u64(unsigned char* bytes, std::uint64_t value) {
  for (int i = 0; i < 8; ++i) bytes[i] = static_cast<unsigned char>(value >> (8 * i));
}

inline void put_f64(unsigned char* bytes, double value) {
  std::uint64_t bits;
  std::memcpy(&bits, &value, sizeof bits);
  put_u64(bytes, bits);
}

// Written out, so that compilers see one load in it.
inline std::uint32_t get_u32(const unsigned char* bytes) {
  return std::uint32_t{bytes[0]} | std::uint32_t{bytes[1]} << 8U | std::uint32_t{bytes[2]} << 16U |
         std::uint32_t{bytes[3]} << 24U;
}

inline std::uint64_t get_u64(const unsigned char* bytes) {
  return get_u32(bytes) | std::uint64_t{get_u32(bytes + 4)} << 32U;
}

inline double get_f64(const unsigned char* bytes) {
  const std::uint64_t bits = get_u64(bytes);
  double value;
  std::memcpy(&value, &bits, sizeof value);
  return value;
}

}  // namespace Vrel::detail
