// Conversion on the fly between the samples of a caller and those of a file.
#pragma once

namespace Vrel::detail {

// Samples of one type in one buffer or, as real and imaginary parts, in two.
template <class Byte>
struct SampleBuffer {
  int type;
  Byte* data;
  Byte* imaginary;
};

// Raise "Invalid on-the-fly conversion from '%s' to '%s'!" (-1).
[[noreturn]] void raise_no_conversion(int from, int to);

// Convert `count` samples, at most 2^31 - 1. Raises as `raise_no_conversion`.
void convert_samples(const SampleBuffer<const unsigned char>& from,
                     const SampleBuffer<unsigned char>& to, unsigned count);

}  // namespace Vrel::detail
