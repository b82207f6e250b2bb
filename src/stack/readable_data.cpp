#include "stack/readable_data_internal.h"

#include <vrelio/stack/stack_imp.h>

#include "stack/stack_errors_internal.h"

namespace Vrel::detail {

const unsigned char* readable_data(const VStackInterface& stack) {
  const auto* const held = dynamic_cast<const VStackImp*>(&stack);
  if (held != nullptr && held->get_data_size() < held->get_size(0)) raise_internal_error();
  return stack.get_data_ptr();
}

}  // namespace Vrel::detail
