#include "stack/box_conversion_internal.h"

#include <algorithm>

#include "foundation/data_type_list_internal.h"

namespace Vrel::detail {
namespace {

// Shorter runs go to the loop itself.
constexpr std::size_t long_run_size = std::size_t{256} << 10;

bool is_numeric(int type) { return real_row(type) >= 0 || complex_row(type) >= 0; }

}  // namespace

BoxConversion::BoxConversion(int source_type, int destination_type)
    : takes_real_part_(complex_row(source_type) >= 0 && real_row(destination_type) >= 0),
      is_supported_(is_numeric(source_type) && is_numeric(destination_type)),
      found_(find_conversion(source_type, destination_type,
                             takes_real_part_ ? conversion_mode::split : conversion_mode::plain)) {}

void BoxConversion::run(const unsigned char* source, unsigned char* destination,
                        std::size_t count) const {
  if (takes_real_part_) return run_real_parts(source, destination, count);
  const std::size_t steps = count * found_.steps_per_element;
  const convert_buffers buffers = {source, nullptr, destination, nullptr};
  if (steps * found_.step.destination_size < long_run_size)
    found_.step.loop.kernel(buffers, steps);
  else
    run_conversion(found_.step, buffers, steps);
}

void BoxConversion::run_real_parts(const unsigned char* source, unsigned char* destination,
                                   std::size_t count) const {
  unsigned char imaginary[4096];
  const std::size_t block = sizeof imaginary / destination_size();
  for (std::size_t done = 0; done < count; done += block)
    found_.step.loop.kernel({source + done * source_size(), nullptr,
                             destination + done * destination_size(), imaginary},
                            std::min(block, count - done));
}

}  // namespace Vrel::detail
