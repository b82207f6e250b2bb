// The conversion of the elements of a box, chosen once.
#pragma once

#include <cstddef>

#include "foundation/element_conversion_internal.h"

namespace Vrel::detail {

class BoxConversion {
 public:
  /// For ids of numeric element types; any other pair is not supported.
  BoxConversion(int source_type, int destination_type);

  bool is_supported() const { return is_supported_; }
  /// Whether elements only move; they then have the same size on both sides.
  bool is_copy() const { return found_.step.loop.is_copy; }
  /// Bytes of an element.
  std::size_t source_size() const { return size_of(found_.step.source_size); }
  std::size_t destination_size() const { return size_of(found_.step.destination_size); }

  /// Convert elements that lie one behind the other on both sides.
  void run(const unsigned char* source, unsigned char* destination, std::size_t count) const;

 private:
  std::size_t size_of(std::size_t step_size) const { return step_size * found_.steps_per_element; }
  void run_real_parts(const unsigned char* source, unsigned char* destination,
                      std::size_t count) const;

  bool takes_real_part_;
  bool is_supported_;
  element_conversion found_;
};

}  // namespace Vrel::detail
