#include <cstring>

#include "container/dbl_format_internal.h"
#include "file/bytes_internal.h"
#include "foundation/data_type_list_internal.h"

namespace Vrel::detail {

namespace {

// Where the first three dimensions stand in reverse order: entry i is the place of dimension i.
constexpr std::array<std::size_t, dbl_rank> place_of_dimension = {2, 1, 0, 3};
constexpr std::size_t lengths_offset = 8;
constexpr std::size_t precision_offset = 24;
constexpr unsigned char single_precision = 1;

// Sizes have their high byte first, all else its low byte: the mixture is the format's.
void put_u16_be(unsigned char* bytes, std::uint16_t value) {
  bytes[0] = static_cast<unsigned char>(value >> 8U);
  bytes[1] = static_cast<unsigned char>(value);
}

std::uint16_t get_u16_be(const unsigned char* bytes) {
  return static_cast<std::uint16_t>((bytes[0] << 8U) | bytes[1]);
}

void put_f32(unsigned char* bytes, float value) {
  std::uint32_t bits;
  std::memcpy(&bits, &value, sizeof bits);
  put_u32(bytes, bits);
}

float get_f32(const unsigned char* bytes) {
  const std::uint32_t bits = get_u32(bytes);
  float value;
  std::memcpy(&value, &bits, sizeof value);
  return value;
}

}  // namespace

DblHeaderBytes encode(const DblHeader& header) {
  DblHeaderBytes bytes{};
  for (std::size_t i = 0; i < dbl_rank; ++i) {
    const std::size_t place = place_of_dimension[i];
    put_u16_be(bytes.data() + 2 * place, header.dims[i]);
    put_f32(bytes.data() + lengths_offset + 4 * place, header.lengths[i]);
  }
  bytes[precision_offset] = header.is_single ? single_precision : 0;
  return bytes;
}

DblHeader decode_dbl_header(const DblHeaderBytes& bytes) {
  DblHeader header;
  for (std::size_t i = 0; i < dbl_rank; ++i) {
    const std::size_t place = place_of_dimension[i];
    header.dims[i] = get_u16_be(bytes.data() + 2 * place);
    header.lengths[i] = get_f32(bytes.data() + lengths_offset + 4 * place);
  }
  header.is_single = bytes[precision_offset] == single_precision;
  return header;
}

// Four sizes of 16 bits fit 64 bits.
std::optional<std::uint32_t> count_samples(const DblHeader& header) {
  std::uint64_t count = 1;
  for (const std::uint16_t size : header.dims) count *= size;
  if (count > UINT32_MAX) return std::nullopt;
  return static_cast<std::uint32_t>(count);
}

int dbl_data_type(const DblHeader& header) { return header.is_single ? id_single : id_double; }

std::size_t dbl_sample_size(const DblHeader& header) {
  return header.is_single ? sizeof(float) : sizeof(double);
}

}  // namespace Vrel::detail
