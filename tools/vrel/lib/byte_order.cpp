#include "lib/byte_order.h"

#include <vrelio/foundation/data_type.h>

#include <cstdint>
#include <cstring>

#include "lib/complex_type.h"

namespace Vrel::tool {

namespace {

std::uint16_t reversed(std::uint16_t number) { return __builtin_bswap16(number); }
std::uint32_t reversed(std::uint32_t number) { return __builtin_bswap32(number); }
std::uint64_t reversed(std::uint64_t number) { return __builtin_bswap64(number); }

template <class Number>
void reverse_all(void* numbers, std::size_t size) {
  auto* const bytes = static_cast<unsigned char*>(numbers);
  for (std::size_t i = 0; i + sizeof(Number) <= size; i += sizeof(Number)) {
    Number number;
    std::memcpy(&number, bytes + i, sizeof number);
    number = reversed(number);
    std::memcpy(bytes + i, &number, sizeof number);
  }
}

}  // namespace

void reverse_bytes(void* numbers, std::size_t size, unsigned width) {
  if (width == 2) reverse_all<std::uint16_t>(numbers, size);
  if (width == 4) reverse_all<std::uint32_t>(numbers, size);
  if (width == 8) reverse_all<std::uint64_t>(numbers, size);
}

unsigned number_width(int data_type) {
  const int size = vrel_dt_get_size(data_type);
  return static_cast<unsigned>((data_type & complex_flag) != 0 ? size / 2 : size);
}

}  // namespace Vrel::tool
