#include "foundation/convert_run_internal.h"

#include <cstdint>

#include "foundation/stream_internal.h"

namespace Vrel::detail {
namespace {

// Smaller destinations are not worth the call that aligns them.
constexpr std::size_t aligned_size = 1024;

// From here on the destination is stored in whole lines and past the cache, which saves reading it
// first. Measured with 2 MiB of second-level cache: the stores alone gain from 4 MiB on, at 16 MiB
// they still gain where the result is read at once, and at 32 MiB the gain is a third and more.
constexpr std::size_t streaming_size = std::size_t{16} << 20;

// How far the source is fetched ahead while a block is converted and written out.
constexpr std::size_t prefetch_distance = 4096;

std::uintptr_t address(const unsigned char* pointer) {
  return reinterpret_cast<std::uintptr_t>(pointer);
}

std::size_t bytes_to_line(const unsigned char* destination) {
  return (line_size - address(destination) % line_size) % line_size;
}

// Whether all destinations reach the start of a line after the same number of whole elements.
bool reaches_line(const conversion& conversion, const convert_buffers& buffers) {
  const std::size_t head = bytes_to_line(buffers.destination);
  return head % conversion.destination_size == 0 &&
         (!buffers.destination_imaginary || bytes_to_line(buffers.destination_imaginary) == head);
}

void advance(convert_buffers& buffers, const conversion& conversion, std::size_t count) {
  const std::size_t read = count * conversion.source_size;
  const std::size_t written = count * conversion.destination_size;
  buffers.source += read;
  buffers.destination += written;
  if (buffers.source_imaginary) buffers.source_imaginary += read;
  if (buffers.destination_imaginary) buffers.destination_imaginary += written;
}

void prefetch_sources(const convert_buffers& buffers, std::size_t size) {
  prefetch(address(buffers.source) + prefetch_distance, size);
  if (buffers.source_imaginary)
    prefetch(address(buffers.source_imaginary) + prefetch_distance, size);
}

void stream_block(const conversion& conversion, const convert_buffers& buffers, std::size_t count) {
  staging_block block;
  staging_block imaginary_block;
  prefetch_sources(buffers, count * conversion.source_size);
  const convert_buffers staged = {buffers.source, buffers.source_imaginary, block.bytes,
                                  imaginary_block.bytes};
  conversion.loop.kernel(staged, count);
  stream_out(buffers.destination, block);
  if (buffers.destination_imaginary) stream_out(buffers.destination_imaginary, imaginary_block);
}

// Streams whole blocks; returns the number of elements converted.
std::size_t stream_blocks(const conversion& conversion, convert_buffers buffers,
                          std::size_t count) {
  const std::size_t step = sizeof(staging_block) / conversion.destination_size;
  std::size_t done = 0;
  for (; count - done >= step; done += step) {
    stream_block(conversion, buffers, step);
    advance(buffers, conversion, step);
  }
  finish_streaming();
  return done;
}

// The destination begins with a line, which also spares the loop stores across two lines.
void run_aligned(const conversion& conversion, convert_buffers buffers, std::size_t count) {
  std::size_t done = 0;
  if (has_streaming_stores && count * conversion.destination_size >= streaming_size)
    done = stream_blocks(conversion, buffers, count);
  advance(buffers, conversion, done);
  conversion.loop.kernel(buffers, count - done);
}

}  // namespace

void run_conversion(const conversion& conversion, const convert_buffers& buffers,
                    std::size_t count) {
  if (conversion.loop.is_copy || count * conversion.destination_size < aligned_size ||
      !reaches_line(conversion, buffers))
    return conversion.loop.kernel(buffers, count);
  const std::size_t head = bytes_to_line(buffers.destination) / conversion.destination_size;
  convert_buffers rest = buffers;
  conversion.loop.kernel(rest, head);
  advance(rest, conversion, head);
  run_aligned(conversion, rest, count - head);
}

}  // namespace Vrel::detail
