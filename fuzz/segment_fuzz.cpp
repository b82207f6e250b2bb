// Seeks and reads in any bytes as a segment. Up to the first error a zlib stream has to do what its
// plain form does, and a raw segment what its bytes say.
//
// Input: kind, chunk size, limit (2 bytes), flush block size (2), count of flush points, count of
// steps, the flush points (2 each), the steps (1 for the kind, 2 for the amount), the stored bytes.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

#include "file/segment_outcome.h"
#include "support/attached_file.h"

namespace {

using namespace Vrel::testing;

class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}

  unsigned byte() {
    if (size_ == 0) return 0;
    --size_;
    return *data_++;
  }
  unsigned word() {
    const unsigned low = byte();
    return low | byte() << 8;
  }
  std::string rest() const { return {reinterpret_cast<const char*>(data_), size_}; }

 private:
  const std::uint8_t* data_;
  std::size_t size_;
};

struct Case {
  int level;
  unsigned chunk_size;
  unsigned limit;
  u64 block_size;
  std::vector<u64> flush_positions;
  std::vector<Step> steps;
  std::string stored;
};

Case case_of(Input input) {
  constexpr int levels[] = {1, 9, 0, -1};
  constexpr unsigned chunk_sizes[] = {0, 1, 2, 7, 64, 4096, 65536, 4194304};
  Case sample;
  const unsigned kind = input.byte();
  sample.level = levels[kind % 4];
  sample.chunk_size = chunk_sizes[input.byte() % 8];
  const unsigned limit = input.word();
  sample.limit = (kind & 4) != 0 ? limit : VZippedSegment::no_limit;
  sample.block_size = input.word();
  const unsigned points = input.byte() % 16;
  const unsigned steps = input.byte() % 64;
  for (unsigned i = 0; i < points; ++i) {
    const u64 point = input.word();
    sample.flush_positions.push_back(point == 0xFFFF ? ~u64{0} : point);
  }
  for (unsigned i = 0; i < steps; ++i) {
    const bool is_seek = input.byte() % 2 != 0;
    sample.steps.push_back({is_seek, input.word()});
  }
  sample.stored = input.rest();
  return sample;
}

void require_equal(const Outcome& outcome, const Outcome& expected) {
  if (outcome == expected) return;
  std::cout << "is:       " << outcome << "\nought be: " << expected << std::endl;
  std::abort();
}

// A plain form of the raw segment needs no more than the bytes.
void check_raw(const Case& sample, const Step& step, const Outcome& outcome) {
  if (step.is_seek || !outcome.error.empty()) return;
  if (step.amount == 0) return;
  const std::string expected = sample.stored.substr(outcome.position - step.amount, step.amount);
  if (outcome.data != expected) std::abort();
}

void run(const Case& sample) {
  AttachedFile file("front" + sample.stored + "behind");
  file.file().set_chunk_size(sample.chunk_size);
  VZippedSegment segment;
  segment.init_r(file.file(), sample.level, 5, sample.stored.size(), sample.limit);
  segment.set_flush_positions(sample.flush_positions, sample.block_size);
  PlainReader plain(sample.stored, sample.chunk_size, sample.limit);
  plain.set_flush_positions(sample.flush_positions, sample.block_size);
  bool is_compared = sample.level > 0;
  for (const Step& step : sample.steps) {
    const Outcome outcome = segment_outcome(segment, step);
    if (sample.level == 0) check_raw(sample, step, outcome);
    if (!is_compared) continue;
    require_equal(outcome, plain_outcome(plain, step));
    is_compared = outcome.error.empty();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  run(case_of(Input(data, size)));
  return 0;
}
