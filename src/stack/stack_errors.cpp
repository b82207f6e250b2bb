#include "stack/stack_errors_internal.h"

#include <stdexcept>

#include "foundation/raise_internal.h"

namespace Vrel::detail {

void raise_internal_error() { raise(id_plain, "Internal error!"); }

void raise_invalid_element_type() { raise(id_plain, "Invalid type!"); }

void raise_invalid_region() { raise(id_plain, "Called on invalid region!"); }

void raise_invalid_stack_position() { raise(id_plain, "Invalid global stack position!"); }

void raise_product_too_large() { raise(id_plain, "The product exceeds the maximum size."); }

void raise_unsupported_number_of_sizes() {
  throw std::invalid_argument("Unsupported number of sizes");
}

}  // namespace Vrel::detail
