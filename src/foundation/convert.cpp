#include <vrelio/foundation/convert.h>
#include <vrelio/foundation/data_type.h>

#include "foundation/convert_kernels_internal.h"
#include "foundation/data_type_list_internal.h"
#include "foundation/element_conversion_internal.h"

namespace Vrel::detail {

#ifdef __x86_64__

const convert_kernels& supported_kernels() {
  __builtin_cpu_init();
  if (__builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
      __builtin_cpu_supports("avx512dq") && __builtin_cpu_supports("avx512vl"))
    return avx512_kernels;
  return __builtin_cpu_supports("avx2") ? avx2_kernels : baseline_kernels;
}

#else

const convert_kernels& supported_kernels() { return baseline_kernels; }

#endif

namespace {

constexpr convert_loop no_loop = {nullptr, false};

convert_loop loop_at(const convert_table& table, int source_row, int destination_row) {
  if (source_row < 0 || destination_row < 0) return no_loop;
  return table.rows[source_row].columns[destination_row];
}

struct choice {
  convert_loop loop;
  // Steps of the loop in one element of the caller.
  unsigned int steps = 1;
};

choice choose_plain(const convert_kernels& kernels, int source_type, int destination_type) {
  if (source_type == id_rgb && destination_type == id_rgb)
    return {loop_at(kernels.plain, real_row(id_uint8), real_row(id_uint8)), 3};
  const int source_row = real_row(source_type == id_uint32_alias ? id_uint32 : source_type);
  const int source_complex_row = complex_row(source_type);
  const int destination_complex_row = complex_row(destination_type);
  if (source_complex_row >= 0)
    return {loop_at(kernels.plain, source_complex_row, destination_complex_row), 2};
  if (destination_complex_row >= 0)
    return {loop_at(kernels.to_complex, source_row, destination_complex_row)};
  return {loop_at(kernels.plain, source_row, real_row(destination_type))};
}

choice choose(int source_type, int destination_type, conversion_mode mode) {
  const convert_kernels& kernels = supported_kernels();
  if (mode == conversion_mode::join)
    return {loop_at(kernels.join, real_row(source_type), complex_row(destination_type))};
  if (mode == conversion_mode::split)
    return {loop_at(kernels.split, complex_row(source_type), real_row(destination_type))};
  return choose_plain(kernels, source_type, destination_type);
}

}  // namespace

element_conversion find_conversion(int source_type, int destination_type, conversion_mode mode) {
  const choice chosen = choose(source_type, destination_type, mode);
  const auto step_size = [&](int type) {
    return static_cast<std::size_t>(vrel_dt_get_size(type)) / chosen.steps;
  };
  return {{chosen.loop, step_size(source_type), step_size(destination_type)}, chosen.steps};
}

namespace {

conversion_mode mode_of(bool joins, bool splits) {
  if (joins) return conversion_mode::join;
  return splits ? conversion_mode::split : conversion_mode::plain;
}

}  // namespace
}  // namespace Vrel::detail

int vrel_dt_convert(int source_type, int destination_type, const void* source, void* destination,
                    int count, const void* source_imaginary, void* destination_imaginary) {
  using namespace Vrel::detail;
  const bool joins = source_imaginary != nullptr;
  const bool splits = destination_imaginary != nullptr;
  if (joins && splits) return -1;
  const element_conversion found =
      find_conversion(source_type, destination_type, mode_of(joins, splits));
  if (!found.step.loop.kernel) return -1;
  if (count <= 0) return 0;
  const convert_buffers buffers = {static_cast<const unsigned char*>(source),
                                   static_cast<const unsigned char*>(source_imaginary),
                                   static_cast<unsigned char*>(destination),
                                   static_cast<unsigned char*>(destination_imaginary)};
  run_conversion(found.step, buffers, static_cast<std::size_t>(count) * found.steps_per_element);
  return 0;
}
