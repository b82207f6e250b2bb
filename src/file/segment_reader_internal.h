// The compressed segment while it is read.
#pragma once

#include "file/byte_store_internal.h"
#include "file/deflate_engine_internal.h"
#include "file/stored_bytes_internal.h"

namespace Vrel::detail {

// Texts that the segment and its reader have in common.
constexpr char beyond_boundary[] = "Trying to read beyond segment boundary!";
constexpr char inconsistency[] = "Inconsistency in segment!";

// What is still wanted by one read.
struct ReadRequest {
  unsigned char* destination;
  unsigned size;
  // Stored bytes, from the next one to be fetched on, that are worth fetching at once.
  u64 worth_fetching;

  void advance(unsigned produced) {
    destination += produced;
    size -= produced;
  }
};

// Decodes stored bytes from a start of the stream or a flush point on.
//
// To the caller each read is one decoding that has the next chunk of stored bytes before it, again
// and again until all is read, and that goes on behind the last byte wanted for as long as it needs
// no room: so a damage or the end right behind that byte belongs to the read. What is really
// fetched is less: what the caller thinks worth it, twice as much each time that a sequence of
// reads goes on.
//
// Small reads in sequence are served from bytes decoded ahead. An end or a failure met there waits
// until a read comes to it.
class SegmentReader {
 public:
  explicit SegmentReader(unsigned chunk_size) : chunk_size_(chunk_size) {}

  // Go on with another place of the stored bytes, to which the caller moves them.
  void restart(StreamForm form);

  // The next read is no part of a sequence: it decodes no further than wanted.
  void expect_jump() { in_sequence_ = false; }

  // A sink for bytes that are skipped, and its size.
  unsigned char* get_scratch();
  unsigned get_scratch_size() const;

  // Raises `beyond_boundary` (-1), `raise_failure`, `inconsistency` (-10), and what the stored side
  // raises.
  void read(StoredBytes& stored, ReadRequest request);

  // Raise VrelError "Zip error (%d)!" (-10) with the engine's result.
  [[noreturn]] static void raise_failure(int result);

 private:
  void take_ahead(ReadRequest& request);
  bool may_decode_ahead(const StoredBytes& stored, const ReadRequest& request) const;
  bool decode_ahead(StoredBytes& stored, ReadRequest& request);
  void decode(StoredBytes& stored, ReadRequest& request);
  void fetch(StoredBytes& stored, ReadRequest& request);
  u64 count_left(const StoredBytes& stored) const { return input_.get_size() + stored.get_left(); }

  DeflateDecoder decoder_;
  unsigned chunk_size_;
  // How much the next fetch of a sequence takes.
  u64 sequence_fetch_ = 0;
  bool in_sequence_ = false;
  ByteStore input_;
  ByteStore ahead_;
  ByteStore scratch_;
};

}  // namespace Vrel::detail
