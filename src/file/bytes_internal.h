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

inline std::uint32_t get_u32(const unsigned char* bytes) {
  std::uint32_t value = 0;
  for (int i = 0; i < 4; ++i) value |= std::uint32_t{bytes[i]} << (8 * i);
  return value;
}

inline std::uint64_t get_u64(const unsigned char* bytes) {
  std::uint64_t value = 0;
  for (int i = 0; i < 8; ++i) value |= std::uint64_t{bytes[i]} << (8 * i);
  return value;
}

inline double get_f64(const unsigned char* bytes) {
  const std::uint64_t bits = get_u64(bytes);
  double value;
  std::memcpy(&value, &bits, sizeof value);
  return value;
}

}  // namespace Vrel::detail
