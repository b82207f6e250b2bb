// Plain arrays of doubles or floats in up to four dimensions, in files named ".dbl". Where their bytes stand:
// docs/format.md, "Plain double arrays".
#pragma once

#include <vrelio/export.h>

/// Write samples to a ".dbl" file; one of that name is replaced.
///
/// Raises nothing. After a failure of the system, what was written stays.
/// \param name  of the file, as the system takes it.
/// \param dims  four sizes from 0 to 65535, the fastest first.
/// \param lengths  four physical lengths, one for each of `dims`.
/// \param data  the samples, as many as the product of `dims`, which has to fit 32 bits.
/// \param single  0: they are stored as doubles; 1: they are narrowed to floats. With any other number `data`
///   points at floats, which are stored as they are.
/// \return 1; 0 for a failure, also for sizes that the file cannot hold and for a file that `VFile::open` holds
///   open, where no file is touched.
VRELIO_EXPORT int vrel_dbl_write(const char* name, const int* dims, const float* lengths,
                                 const double* data, int single);

/// Read a ".dbl" file.
///
/// | Code | Effect | `target` | Result |
/// |---|---|---|---|
/// | 0xA0, 0xAD | no samples | four sizes | as stored |
/// | 0xAA | into `target` | room for the samples | single |
/// | 0xAB | into `target` | room for the samples | as stored |
/// | 0xAC | into `target` | room for the samples | double |
/// | 0xAE | into a new block | four sizes | single |
/// | 0xAF | into a new block | four sizes | as stored |
/// | any other | into a new block | four sizes | double |
///
/// Raises nothing, and locks nothing. The count of samples comes from the sizes alone: of a file that ends
/// before them, a new block has zeros behind those that are there, and room of the caller keeps what it had.
/// \param name  of the file, as the system takes it.
/// \param[out] target  takes four `int`s, the fastest size first, or the samples; see the table.
/// \param[out] lengths  takes four physical lengths.
/// \param[in,out] mode  an `int` with the code, where a pointer has room too. Where samples are read it
///   becomes a pointer to them. A new block is the caller's, to be given to `free`.
/// \return 1 where the result is double, 2 where it is single; 0 if the file cannot be opened or its header not
///   be read in full, where nothing has changed, and if the samples cannot be read or there is no memory for
///   them, where sizes and lengths are known but no block is left.
VRELIO_EXPORT int vrel_dbl_read(const char* name, void* target, float* lengths, void* mode);
