// The loops behind vrel_dt_convert, and the tables that hold one for every pair of real types.
#pragma once

#include <cstddef>

#include "foundation/data_type_list_internal.h"

namespace Vrel::detail {

// What a loop reads and writes. The second planes are null but for joining and splitting.
struct convert_buffers {
  const unsigned char* source;
  const unsigned char* source_imaginary;
  unsigned char* destination;
  unsigned char* destination_imaginary;
};

// Converts `count` elements, the first of each buffer first: a destination may begin where its
// source begins, or before, if its elements are not larger. The addresses are taken by reference: a
// copy reads in larger words what was just written in smaller ones, and so waits for all stores
// before it to be done, which costs a short run more than its conversion.
using convert_kernel = void (*)(const convert_buffers& buffers, std::size_t count);

struct convert_loop {
  // Null where a pair of types has no conversion.
  convert_kernel kernel;
  // Whether it only moves bytes.
  bool is_copy;
};

// Row: type of the source; column: type of the destination; both as numbered by `real_row`.
struct convert_table {
  struct row {
    convert_loop columns[real_types::size];
  };
  row rows[real_types::size];
};

struct convert_kernels {
  convert_table plain;
  convert_table to_complex;
  convert_table join;
  convert_table split;
};

// The same loops, compiled for different processors; every set gives the same results.
extern const convert_kernels baseline_kernels;
#ifdef __x86_64__
extern const convert_kernels avx2_kernels;
extern const convert_kernels avx512_kernels;
#endif

// The fastest set that this processor can run.
const convert_kernels& supported_kernels();

}  // namespace Vrel::detail
