#include "file/segment_reader_internal.h"

#include <algorithm>
#include <cstring>

#include "foundation/raise_internal.h"

namespace Vrel::detail {

namespace {

constexpr unsigned largest_scratch = 64u << 10;
// Reads below the first size, in sequence, are served from as many bytes as the second, which is
// enough to make the cost of a decoding step small.
constexpr unsigned small_read = 4u << 10;
constexpr unsigned ahead_size = 64u << 10;
// With such chunks what is decoded ahead lies within the chunk that each of the reads has.
constexpr unsigned least_chunk_for_ahead = 64u << 10;
// Enough to see what follows the last byte wanted.
constexpr u64 look_behind_size = 4u << 10;
// What a raw decoder leaves over at the end of a whole stream.
constexpr u64 checksum_size = 4;

void check_result(int result, bool is_idle) {
  if (result == engine_ok || (is_idle && result == engine_no_progress)) return;
  SegmentReader::raise_failure(result);
}

void check_end(unsigned wanted, u64 left) {
  if (wanted == 0 && (left == 0 || left == checksum_size)) return;
  raise(id_compression, inconsistency);
}

// The stored bytes are used up, and the stream has not ended.
void check_used_up(unsigned wanted) {
  if (wanted > 0) raise(id_plain, beyond_boundary);
  VrelError()(inconsistency)(id_compression).do_warn();
}

}  // namespace

void SegmentReader::raise_failure(int result) { raise(id_compression, "Zip error (%d)!", result); }

void SegmentReader::restart(StreamForm form) {
  decoder_.restart(form);
  input_.clear();
  ahead_.clear();
  sequence_fetch_ = 0;
  expect_jump();
}

unsigned char* SegmentReader::get_scratch() { return scratch_.make_room(get_scratch_size()); }

unsigned SegmentReader::get_scratch_size() const {
  return std::clamp(chunk_size_, 1u, largest_scratch);
}

void SegmentReader::read(StoredBytes& stored, ReadRequest request) {
  do {
    take_ahead(request);
    if (!ahead_.is_empty()) return;
  } while (may_decode_ahead(stored, request) && decode_ahead(stored, request));
  decode(stored, request);
  in_sequence_ = true;
}

void SegmentReader::take_ahead(ReadRequest& request) {
  const unsigned size = std::min(ahead_.get_size(), request.size);
  if (size == 0) return;
  std::memcpy(request.destination, ahead_.data(), size);
  ahead_.take(size);
  request.advance(size);
}

bool SegmentReader::may_decode_ahead(const StoredBytes& stored, const ReadRequest& request) const {
  return in_sequence_ && request.size > 0 && request.size < small_read &&
         chunk_size_ >= least_chunk_for_ahead && count_left(stored) > 1;
}

// Only input at hand is used, and not the last stored byte: a read that uses it up may be one to
// warn of. False if that gave nothing.
bool SegmentReader::decode_ahead(StoredBytes& stored, ReadRequest& request) {
  if (input_.is_empty()) fetch(stored, request);
  const auto usable =
      static_cast<unsigned>(std::min<u64>(input_.get_size(), count_left(stored) - 1));
  unsigned char* const room = ahead_.make_room(ahead_size);
  const CodingStep step = decoder_.decode(input_.data(), usable, room, ahead_size);
  input_.take(step.consumed);
  ahead_.fill(step.produced);
  return step.produced > 0;
}

void SegmentReader::decode(StoredBytes& stored, ReadRequest& request) {
  unsigned chunk_left = chunk_size_;
  for (;;) {
    if (input_.is_empty() && chunk_left > 0) fetch(stored, request);
    const unsigned offered = std::min(input_.get_size(), chunk_left);
    const CodingStep step =
        decoder_.decode(input_.data(), offered, request.destination, request.size);
    input_.take(step.consumed);
    chunk_left -= step.consumed;
    request.advance(step.produced);
    const u64 left = count_left(stored);
    if (step.result == engine_stream_end) return check_end(request.size, left);
    check_result(step.result, request.size == 0 && offered > 0);
    if (request.size == 0 && step.consumed < offered) return;
    if (left == 0) return check_used_up(request.size);
    if (chunk_left > 0) continue;
    if (request.size == 0) return;
    chunk_left = chunk_size_;
  }
}

void SegmentReader::fetch(StoredBytes& stored, ReadRequest& request) {
  const bool is_told = request.size > 0 && request.worth_fetching > 0;
  u64 wanted = is_told ? request.worth_fetching : look_behind_size;
  if (in_sequence_) wanted = std::max(wanted, sequence_fetch_);
  const auto size = static_cast<unsigned>(std::min<u64>({wanted, chunk_size_, stored.get_left()}));
  if (size == 0) return;
  stored.read(input_.make_room(size), size);
  input_.fill(size);
  request.worth_fetching -= std::min<u64>(request.worth_fetching, size);
  sequence_fetch_ = std::max(sequence_fetch_, 2 * u64{size});
}

}  // namespace Vrel::detail
