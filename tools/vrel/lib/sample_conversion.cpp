#include "lib/sample_conversion.h"

#include <vrelio/foundation/convert.h>
#include <vrelio/foundation/data_type.h>
#include <vrelio/foundation/error.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "lib/complex_type.h"

namespace Vrel::tool {

namespace {

bool can_convert(int from, int to) {
  return vrel_dt_convert(from, to, nullptr, nullptr, 0, nullptr, nullptr) == 0;
}

// Blocks that stay in the cache between reading and converting.
constexpr u64 block_samples = 16384;

struct Converter {
  ReadSamples read;
  int from;
  int to;
  std::vector<char> block;

  Converter(ReadSamples read_samples, int source_type, int destination_type)
      : read(std::move(read_samples)),
        from(source_type),
        to(destination_type),
        block(block_samples * static_cast<u64>(vrel_dt_get_size(from))) {}

  void operator()(u64 position, u64 count, void* destination) {
    const auto size = static_cast<u64>(vrel_dt_get_size(to));
    auto* const bytes = static_cast<char*>(destination);
    for (u64 done = 0; done < count;) {
      const u64 piece = std::min(count - done, block_samples);
      read(position + done, piece, block.data());
      vrel_dt_convert(from, to, block.data(), bytes + done * size, static_cast<int>(piece), nullptr,
                      nullptr);
      done += piece;
    }
  }
};

}  // namespace

bool is_conversion_target(int data_type) {
  constexpr int uint8_id = 1;
  return can_convert(uint8_id, data_type) || can_convert(uint8_id | complex_flag, data_type);
}

ReadSamples convert_samples(ReadSamples read, int from, int to) {
  if (from == to) return read;
  if (!can_convert(from, to)) {
    throw VrelError(VrelError()("Invalid on-the-fly conversion from '%s' to '%s'!",
                                vrel_dt_get_name(from), vrel_dt_get_name(to)));
  }
  return Converter(std::move(read), from, to);
}

}  // namespace Vrel::tool
