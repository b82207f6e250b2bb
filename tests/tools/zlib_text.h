// Streams for tests.
#pragma once

#include <zlib.h>

#include <stdexcept>
#include <string>

namespace Vrel::testing {

// A zlib stream of the text, with a flush behind each `block` bytes.
inline std::string zlib_stream(const std::string& text, std::size_t block,
                               int flush = Z_FULL_FLUSH) {
  z_stream stream{};
  if (deflateInit(&stream, 6) != Z_OK) throw std::runtime_error("no encoder");
  std::string bytes(2 * text.size() + 64 * (text.size() / block + 2), '\0');
  stream.next_out = reinterpret_cast<Bytef*>(bytes.data());
  stream.avail_out = static_cast<uInt>(bytes.size());
  for (std::size_t begin = 0; begin < text.size(); begin += block) {
    std::string piece = text.substr(begin, block);
    stream.next_in = reinterpret_cast<Bytef*>(piece.data());
    stream.avail_in = static_cast<uInt>(piece.size());
    deflate(&stream, flush);
  }
  deflate(&stream, Z_FINISH);
  bytes.resize(stream.total_out);
  deflateEnd(&stream);
  return bytes;
}

}  // namespace Vrel::testing
