// The header of ".dbl" files; docs/format.md, "Plain double arrays".
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace Vrel::detail {

constexpr std::size_t dbl_header_size = 128;
constexpr std::size_t dbl_rank = 4;

struct DblHeader {
  std::array<std::uint16_t, dbl_rank> dims{};  // the fastest first
  std::array<float, dbl_rank> lengths{};
  bool is_single = false;
};

using DblHeaderBytes = std::array<unsigned char, dbl_header_size>;

DblHeaderBytes encode(const DblHeader& header);
DblHeader decode_dbl_header(const DblHeaderBytes& bytes);

// The product of all sizes, or none where it does not fit 32 bits.
std::optional<std::uint32_t> count_samples(const DblHeader& header);

// Data type id and size in bytes of the samples as stored.
int dbl_data_type(const DblHeader& header);
std::size_t dbl_sample_size(const DblHeader& header);

}  // namespace Vrel::detail
