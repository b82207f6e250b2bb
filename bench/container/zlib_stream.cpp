#include "container/zlib_stream.h"

#include <fcntl.h>
#include <unistd.h>
#include <zlib.h>

#include <algorithm>

namespace bench {

namespace {

constexpr unsigned buffer_size = 4U << 20;
// Behind a full flush there is no header, which a negative window size says.
constexpr int bare_window = -15;

Bytef* bytes_of(const Sample* samples) {
  return reinterpret_cast<Bytef*>(const_cast<Sample*>(samples));
}

}  // namespace

FlushPositions write_zlib_stream(const std::string& path, const Sample* samples,
                                 std::size_t planes) {
  const int file = ::open(path.c_str(), O_RDWR | O_CREAT | O_TRUNC, 0600);
  FlushPositions positions;
  std::vector<unsigned char> buffer(buffer_size);
  z_stream stream{};
  deflateInit(&stream, 1);
  stream.next_out = buffer.data();
  stream.avail_out = buffer_size;
  std::uint64_t written = 0;
  const auto put = [&] {
    const std::size_t produced = buffer_size - stream.avail_out;
    require(::write(file, buffer.data(), produced) == static_cast<ssize_t>(produced),
            "zlib: not written");
    written += produced;
    stream.next_out = buffer.data();
    stream.avail_out = buffer_size;
  };
  for (std::size_t block = 0; block < planes * plane_size / block_size; ++block) {
    stream.next_in = bytes_of(samples) + block * block_size;
    stream.avail_in = block_size;
    do {
      deflate(&stream, Z_FULL_FLUSH);
      if (stream.avail_out == 0) put();
    } while (stream.avail_in > 0);
    positions.push_back(written + buffer_size - stream.avail_out);
  }
  while (deflate(&stream, Z_FINISH) != Z_STREAM_END) put();
  put();
  deflateEnd(&stream);
  ::close(file);
  return positions;
}

void read_zlib_stream(const std::string& path, const FlushPositions& positions, std::size_t first,
                      std::size_t size, unsigned char* bytes) {
  const int file = ::open(path.c_str(), O_RDONLY);
  std::vector<unsigned char> buffer(buffer_size);
  z_stream stream{};
  inflateInit2(&stream, first == 0 ? 15 : bare_window);
  ::lseek(file, first == 0 ? 0 : static_cast<off_t>(positions[first - 1]), SEEK_SET);
  while (size > 0) {
    if (stream.avail_in == 0) {
      stream.next_in = buffer.data();
      stream.avail_in = static_cast<unsigned>(::read(file, buffer.data(), buffer_size));
    }
    const std::size_t piece = std::min<std::size_t>(size, plane_size);
    stream.next_out = bytes;
    stream.avail_out = static_cast<unsigned>(piece);
    require(inflate(&stream, Z_NO_FLUSH) >= Z_OK, "zlib: not read");
    const std::size_t produced = piece - stream.avail_out;
    bytes += produced;
    size -= produced;
  }
  inflateEnd(&stream);
  ::close(file);
}

}  // namespace bench
