#include "lib/sample_copy.h"

#include <vrelio/foundation/error.h>

#include <algorithm>
#include <vector>

namespace Vrel::tool {

SampleRange choose_range(u64 number_of_samples, std::optional<u64> position,
                         std::optional<u64> count) {
  const u64 first = position.value_or(0);
  const u64 left = number_of_samples - std::min(first, number_of_samples);
  if (first > number_of_samples || count.value_or(0) > left) {
    throw VrelError(VrelError()("Trying to read beyond segment boundary!"));
  }
  return {first, count.value_or(left)};
}

void copy_samples(const ReadSamples& read, unsigned sample_size, SampleRange range, Output& output,
                  ProgressBar& progress) {
  constexpr u64 block_size = 4u << 20;
  const u64 block_count = std::min(range.count, block_size / sample_size);
  std::vector<char> block(block_count * sample_size);
  while (range.count > 0) {
    const u64 count = std::min(range.count, block_count);
    read(range.position, count, block.data());
    output.write(block.data(), count * sample_size);
    progress.advance(count * sample_size);
    range.position += count;
    range.count -= count;
  }
}

}  // namespace Vrel::tool
