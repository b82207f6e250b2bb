// The one door to the deflate engine. Another engine for the same streams can stand behind it.
#pragma once

#include <vrelio/file/file_access.h>

#include <memory>

namespace Vrel::detail {

// Results of a step, here as far as the library tells them apart. Users see the numbers in
// messages, so they are the same whatever the engine.
enum engine_result : int {
  engine_ok = 0,
  engine_stream_end = 1,
  engine_unusable = -2,
  engine_bad_data = -3,
  engine_no_progress = -5
};

// What one step did: an engine_result or another number below 0, bytes taken, bytes put out.
struct CodingStep {
  int result;
  unsigned consumed;
  unsigned produced;
};

// What becomes of bytes that the encoder still holds back. After a full flush a decoder can start.
enum class Flush { none, full, finish };

class DeflateEncoder {
 public:
  // A level that the engine does not have, or too little memory, makes every step unusable.
  explicit DeflateEncoder(int level);
  ~DeflateEncoder();
  DeflateEncoder(const DeflateEncoder&) = delete;
  DeflateEncoder& operator=(const DeflateEncoder&) = delete;

  // A step that fills all its room is to be repeated with what is left of the input.
  CodingStep encode(const void* input, u64 size, void* output, unsigned room, Flush flush);

 private:
  struct Stream;
  std::unique_ptr<Stream> stream_;
};

// The stream from its header to its checksum, or deflate blocks alone.
enum class StreamForm { whole, blocks };

class DeflateDecoder {
 public:
  // Expects a whole stream. Too little memory makes every step unusable.
  DeflateDecoder();
  ~DeflateDecoder();
  DeflateDecoder(const DeflateDecoder&) = delete;
  DeflateDecoder& operator=(const DeflateDecoder&) = delete;

  void restart(StreamForm form);

  // Decode until a byte lacks input or room, the stream ends or fails. A step after the end or a
  // failure comes to the same result again. A failure that lies in the next byte itself does not
  // show before there is room for that byte.
  CodingStep decode(const void* input, unsigned size, void* output, unsigned room);

 private:
  struct Stream;
  std::unique_ptr<Stream> stream_;
};

}  // namespace Vrel::detail
