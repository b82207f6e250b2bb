// Stores that go past the cache, where the processor has them.
#pragma once

#include <cstddef>
#include <cstdint>

#ifdef __x86_64__
#include <emmintrin.h>
#endif

namespace Vrel::detail {

constexpr std::size_t line_size = 64;

// A buffer that stays in the first-level cache: half a page, by measurement.
struct staging_block {
  alignas(line_size) unsigned char bytes[2048];
};

#ifdef __x86_64__

constexpr bool has_streaming_stores = true;

// The destination begins with a line.
inline void stream_out(unsigned char* destination, const staging_block& block) {
  for (std::size_t i = 0; i < sizeof block.bytes; i += sizeof(__m128i)) {
    const __m128i* from = reinterpret_cast<const __m128i*>(block.bytes + i);
    _mm_stream_si128(reinterpret_cast<__m128i*>(destination + i), _mm_load_si128(from));
  }
}

// Whole lines; the destination begins with one.
inline void stream_lines(unsigned char* destination, const unsigned char* source,
                         std::size_t size) {
  for (std::size_t i = 0; i < size; i += sizeof(__m128i)) {
    const __m128i* from = reinterpret_cast<const __m128i*>(source + i);
    _mm_stream_si128(reinterpret_cast<__m128i*>(destination + i), _mm_loadu_si128(from));
  }
}

// What was streamed becomes visible to other processors in the order of the program.
inline void finish_streaming() { _mm_sfence(); }

#else

constexpr bool has_streaming_stores = false;
inline void stream_out(unsigned char*, const staging_block&) {}
inline void stream_lines(unsigned char*, const unsigned char*, std::size_t) {}
inline void finish_streaming() {}

#endif

// A hint; the addresses need not exist.
inline void prefetch(std::uintptr_t address, std::size_t size) {
  for (std::size_t i = 0; i < size; i += line_size)
    // NOLINTNEXTLINE(performance-no-int-to-ptr): nothing is accessed
    __builtin_prefetch(reinterpret_cast<const void*>(address + i));
}

}  // namespace Vrel::detail
