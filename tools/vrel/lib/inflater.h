// A zlib stream in a file, decoded as far as it goes.
#pragma once

#include <vrelio/file/file.h>

#include <memory>
#include <string>
#include <vector>

namespace Vrel::tool {

/// Decodes the blocks of one stream and tells where it stands, also in a stream that is cut off or
/// damaged. The checksum behind the blocks is left to the caller.
class Inflater {
 public:
  /// How far decoding has come.
  enum class State {
    running,  ///< all that was asked for was decoded
    starved,  ///< all stored bytes that may be taken were taken
    ended,    ///< the last block has ended
    broken    ///< a stored byte fits no stream
  };

  /// \param file      not owned.
  /// \param position  of the stream's first byte.
  /// \param size      stored bytes.
  Inflater(VFile& file, u64 position, u64 size);
  ~Inflater();
  Inflater(const Inflater&) = delete;
  Inflater& operator=(const Inflater&) = delete;

  /// Decode bytes without taking a stored one at the offset `stop` or behind it.
  /// \return how many bytes were decoded; `state` tells why they are fewer than `size`.
  /// \throws what the file raises.
  unsigned decode(unsigned char* bytes, unsigned size, u64 stop);

  State state() const { return state_; }
  /// Stored bytes that were taken.
  u64 offset() const { return offset_; }
  /// Whether no block is open and the next one begins with the next byte.
  bool is_between_blocks() const;
  /// Whether what broke the stream is a reference to bytes in front of a restart.
  bool lacks_history() const;
  /// Forget all decoded bytes, as who begins here.
  void restart();

 private:
  struct Stream;

  bool take_header();
  void fetch();

  VFile& file_;
  u64 position_;
  u64 size_;
  u64 offset_ = 0;
  State state_ = State::running;
  std::vector<unsigned char> input_;
  std::size_t used_ = 0;
  std::unique_ptr<Stream> stream_;
};

}  // namespace Vrel::tool
