#include "lib/description.h"

#include <vrelio/container/chain.h>

namespace Vrel::tool {

Description read_description(VFileAccess& file) {
  Description description;
  try {
    read_chain(file, description.file);
  } catch (const VrelError& error) {
    description.error = error;
  }
  return description;
}

const StackRecord& choose_stack(const Description& description, u64 index) {
  const std::vector<StackRecord>& stacks = description.file.stacks;
  if (index < stacks.size()) return stacks[index];
  if (description.error) throw VrelError(*description.error);
  throw VrelError(VrelError()("Invalid stack index %llu!", index)(-6));
}

}  // namespace Vrel::tool
