// Errors of stacks that several functions raise.
#pragma once

namespace Vrel::detail {

[[noreturn]] void raise_internal_error();          // "Internal error!" (-1)
[[noreturn]] void raise_invalid_element_type();    // "Invalid type!" (-1)
[[noreturn]] void raise_invalid_region();          // "Called on invalid region!" (-1)
[[noreturn]] void raise_invalid_stack_position();  // "Invalid global stack position!" (-1)
[[noreturn]] void raise_product_too_large();       // "The product exceeds the maximum size." (-1)

// std::invalid_argument "Unsupported number of sizes"
[[noreturn]] void raise_unsupported_number_of_sizes();

}  // namespace Vrel::detail
