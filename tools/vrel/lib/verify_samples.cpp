#include "lib/verify_samples.h"

#include <vrelio/foundation/data_type.h>
#include <zlib.h>

#include <algorithm>
#include <vector>

#include "lib/inflater.h"

namespace Vrel::tool {

namespace {

constexpr std::size_t block_size = 256u << 10;
constexpr u64 checksum_size = 4;
// A table that is wrong is wrong in each entry.
constexpr u64 most_flush_faults = 10;

std::string of_bytes(u64 seen, u64 expected) {
  return std::to_string(seen) + " of " + std::to_string(expected) + " bytes";
}

// One pass over a stream. At each flush point that stands where the stream is between two blocks,
// decoding begins anew: if it succeeds, it has given what it gives to whoever starts there, and what
// it gives without a start there.
class StreamCheck {
 public:
  StreamCheck(VFile& file, const StackRecord& stack, const FindingSinks& sinks,
              ProgressBar& progress, bool restarts)
      : file_(file),
        stack_(stack),
        sinks_(sinks),
        progress_(progress),
        restarts_(restarts),
        expected_(size_of_samples(stack)),
        inflater_(file, stack.data_position, stack.header.data_length),
        block_(block_size) {}

  // False where the stream cannot be decoded behind a flush point without what stands in front of it.
  bool run();

 private:
  u64 place() const { return stack_.data_position + inflater_.offset(); }
  void decode_to(u64 stop);
  bool may_go_on() const { return is_decoding() && produced_ <= expected_; }
  bool is_decoding() const {
    return inflater_.state() == Inflater::State::running ||
           inflater_.state() == Inflater::State::starved;
  }
  void check_flush_points();
  void check_flush_point(u64 number, u64 offset);
  void flush_fault(u64 number, const std::string& what);
  void check_end();
  void check_checksum();

  VFile& file_;
  const StackRecord& stack_;
  const FindingSinks& sinks_;
  ProgressBar& progress_;
  bool restarts_;
  u64 expected_;
  Inflater inflater_;
  std::vector<unsigned char> block_;
  u64 produced_ = 0;
  uLong adler_ = adler32(0, nullptr, 0);
  u64 last_offset_ = 0;
  u64 last_restart_ = 0;
  u64 flush_faults_ = 0;
};

bool StreamCheck::run() {
  if (restarts_) check_flush_points();
  if (may_go_on()) decode_to(stack_.header.data_length);
  if (last_restart_ != 0 && inflater_.lacks_history()) {
    flush_fault(last_restart_, "cannot be decoded from without the bytes in front of it");
    return false;
  }
  check_end();
  return true;
}

void StreamCheck::decode_to(u64 stop) {
  do {
    const u64 before = inflater_.offset();
    const unsigned size = inflater_.decode(block_.data(), block_size, stop);
    adler_ = adler32(adler_, block_.data(), size);
    produced_ += size;
    progress_.advance(inflater_.offset() - before);
  } while (inflater_.state() == Inflater::State::running && produced_ <= expected_);
}

void StreamCheck::check_flush_points() {
  const std::vector<u64>& offsets = stack_.flush_positions;
  if (offsets.empty()) return;
  if (stack_.flush_block_size == 0) {
    sinks_.note(stack_.data_position, "There are flush points, but no distance between them");
    return;
  }
  for (u64 number = 1; number <= offsets.size() && may_go_on(); ++number) {
    check_flush_point(number, offsets[number - 1]);
  }
  if (flush_faults_ > most_flush_faults) {
    sinks_.flush_fault(stack_.data_position, std::to_string(flush_faults_ - most_flush_faults) +
                                                 " more flush points are wrong");
  }
}

void StreamCheck::check_flush_point(u64 number, u64 offset) {
  if (offset > stack_.header.data_length) return flush_fault(number, "lies behind the data");
  if (offset <= last_offset_) return flush_fault(number, "does not lie behind the one before");
  last_offset_ = offset;
  decode_to(offset);
  if (inflater_.state() == Inflater::State::broken) return;
  const bool starved = inflater_.state() == Inflater::State::starved;
  if (!starved || inflater_.offset() != offset) {
    if (produced_ <= expected_) flush_fault(number, "lies behind the end of the stream");
  } else if (produced_ / stack_.flush_block_size != number ||
             produced_ % stack_.flush_block_size != 0) {
    flush_fault(number, "stands at byte " + std::to_string(produced_) +
                            " of the samples, which is not its place");
  } else if (!inflater_.is_between_blocks()) {
    flush_fault(number, "stands inside a block");
  } else {
    inflater_.restart();
    last_restart_ = number;
  }
}

void StreamCheck::flush_fault(u64 number, const std::string& what) {
  if (++flush_faults_ > most_flush_faults) return;
  sinks_.flush_fault(stack_.data_position + stack_.flush_positions[number - 1],
                     "Flush point " + std::to_string(number) + ' ' + what);
}

void StreamCheck::check_end() {
  if (produced_ > expected_) {
    return sinks_.note(place(), "The zlib stream goes on behind the last sample");
  }
  switch (inflater_.state()) {
    case Inflater::State::broken:
      return sinks_.fault(place(), "The zlib stream is damaged behind " +
                                       of_bytes(produced_, expected_) + " of the samples");
    case Inflater::State::ended:
      if (produced_ == expected_) return check_checksum();
      return sinks_.fault(place(), "The zlib stream ends with " + of_bytes(produced_, expected_));
    default:
      break;
  }
  if (produced_ < expected_) {
    return sinks_.fault(place(), "The zlib stream is cut off behind " +
                                     of_bytes(produced_, expected_) + " of the samples");
  }
  sinks_.note(place(), "The zlib stream has no end, and so no checksum");
}

void StreamCheck::check_checksum() {
  const u64 left = stack_.header.data_length - inflater_.offset();
  if (left < checksum_size) return sinks_.fault(place(), "The checksum of the stream is cut off");
  unsigned char bytes[checksum_size];
  file_.seek(place());
  file_.read(bytes, checksum_size);
  uLong stored = 0;
  for (const unsigned char byte : bytes) stored = stored << 8 | byte;
  if (stored != adler_) sinks_.fault(place(), "The checksum of the samples is wrong");
  if (left > checksum_size) {
    sinks_.fault(place() + checksum_size, "The stream ends " +
                                              std::to_string(left - checksum_size) +
                                              " bytes in front of the end of the data");
  }
  progress_.advance(left);
}

void check_stream(VFile& file, const StackRecord& stack, const FindingSinks& sinks,
                  ProgressBar& progress) {
  const int level = stack.header.compression_level;
  if (level < 0 || level > 9) {
    sinks.note(stack.stack_position,
               "The compression level " + std::to_string(level) + " does not exist");
  }
  if (StreamCheck(file, stack, sinks, progress, true).run()) return;
  StreamCheck(file, stack, sinks, progress, false).run();
}

void read_all(VFile& file, const StackRecord& stack, ProgressBar& progress) {
  std::vector<unsigned char> block(block_size);
  file.seek(stack.data_position);
  for (u64 left = stack.header.data_length; left > 0;) {
    const auto size = static_cast<unsigned>(std::min<u64>(left, block_size));
    file.read(block.data(), size);
    progress.advance(size);
    left -= size;
  }
}

void check_raw(VFile& file, const StackRecord& stack, const FindingSinks& sinks,
               ProgressBar& progress) {
  const u64 expected = size_of_samples(stack);
  if (stack.header.data_length != expected) {
    sinks.fault(stack.data_position, "The data has " + std::to_string(stack.header.data_length) +
                                         " bytes, but its samples take " +
                                         std::to_string(expected));
  }
  read_all(file, stack, progress);
}

}  // namespace

bool is_zipped(const StackHeader& header) {
  return header.compression_type == 1 && header.compression_level != 0;
}

u64 size_of_samples(const StackRecord& stack) {
  return u64{stack.number_of_samples} *
         static_cast<unsigned>(vrel_dt_get_size(stack.header.data_type));
}

void check_samples(VFile& file, const StackRecord& stack, const FindingSinks& sinks,
                   ProgressBar& progress) {
  const StackHeader& header = stack.header;
  if (header.compression_type > 1) {
    sinks.fault(
        stack.stack_position + 328,
        "The compression type " + std::to_string(header.compression_type) + " does not exist");
  }
  if (vrel_dt_get_size(header.data_type) == 0) {
    sinks.fault(stack.stack_position + 324, "The data type " + std::to_string(header.data_type) +
                                                " has no samples of a known size");
    return;
  }
  if (header.data_length == 0) return;
  if (is_zipped(header)) return check_stream(file, stack, sinks, progress);
  check_raw(file, stack, sinks, progress);
}

}  // namespace Vrel::tool
