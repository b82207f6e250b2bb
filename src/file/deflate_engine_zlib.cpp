#define ZLIB_CONST
#include <zlib.h>

#include <cstring>
#include <limits>

#include "file/deflate_engine_internal.h"
#include "foundation/raise_internal.h"

namespace Vrel::detail {

static_assert(engine_ok == Z_OK && engine_stream_end == Z_STREAM_END &&
                  engine_unusable == Z_STREAM_ERROR && engine_bad_data == Z_DATA_ERROR &&
                  engine_no_progress == Z_BUF_ERROR,
              "users see zlib's numbers");
static_assert(sizeof(uInt) == sizeof(unsigned), "a step takes as many bytes as a request has");

namespace {

int zlib_flush(Flush flush) {
  switch (flush) {
    case Flush::none:
      return Z_NO_FLUSH;
    case Flush::full:
      return Z_FULL_FLUSH;
    case Flush::finish:
      break;
  }
  return Z_FINISH;
}

void offer(z_stream& stream, const void* input, unsigned size, void* output, unsigned room) {
  stream.next_in = static_cast<const Bytef*>(input);
  stream.avail_in = size;
  stream.next_out = static_cast<Bytef*>(output);
  stream.avail_out = room;
}

CodingStep step_of(const z_stream& stream, int result, unsigned size, unsigned room) {
  return {result, size - stream.avail_in, room - stream.avail_out};
}

}  // namespace

struct DeflateEncoder::Stream : z_stream {};

// What zlib answers here it answers again in each step.
DeflateEncoder::DeflateEncoder(int level) : stream_(std::make_unique<Stream>()) {
  deflateInit(stream_.get(), level);
}

DeflateEncoder::~DeflateEncoder() { deflateEnd(stream_.get()); }

CodingStep DeflateEncoder::encode(const void* input, u64 size, void* output, unsigned room,
                                  Flush flush) {
  if (size > std::numeric_limits<unsigned>::max()) {
    raise(id_plain, "Zlib cannot handle chunks larger than 4GB");
  }
  const auto input_size = static_cast<unsigned>(size);
  offer(*stream_, input, input_size, output, room);
  const int result = deflate(stream_.get(), zlib_flush(flush));
  return step_of(*stream_, result, input_size, room);
}

struct DeflateDecoder::Stream : z_stream {
  // zlib finds a distance that reaches before the first byte either together with the bytes before
  // it or, if these left no room, once there is room. This is the one failure that lies in the
  // next byte itself.
  bool lacks_history() const {
    return msg != nullptr && std::strcmp(msg, "invalid distance too far back") == 0;
  }
};

DeflateDecoder::DeflateDecoder() : stream_(std::make_unique<Stream>()) {
  inflateInit(stream_.get());
}

DeflateDecoder::~DeflateDecoder() { inflateEnd(stream_.get()); }

void DeflateDecoder::restart(StreamForm form) {
  inflateReset2(stream_.get(), form == StreamForm::whole ? MAX_WBITS : -MAX_WBITS);
}

CodingStep DeflateDecoder::decode(const void* input, unsigned size, void* output, unsigned room) {
  if (room == 0 && stream_->lacks_history()) return {engine_no_progress, 0, 0};
  offer(*stream_, input, size, output, room);
  const int result = inflate(stream_.get(), Z_SYNC_FLUSH);
  return step_of(*stream_, result, size, room);
}

}  // namespace Vrel::detail
