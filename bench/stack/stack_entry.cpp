// Stacks as plain functions, for comparisons that are written in another language.
#include <vrelio/stack/stack_imp.h>

#include <vector>

extern "C" {

__attribute__((visibility("default"))) VStackImp* stack_make(int type, const unsigned int* sizes,
                                                             int rank) {
  auto* const stack = new VStackImp(0);
  stack->create(std::vector<unsigned int>(sizes, sizes + rank), type);
  return stack;
}

__attribute__((visibility("default"))) void stack_free(VStackImp* stack) { delete stack; }

__attribute__((visibility("default"))) unsigned char* stack_data(VStackImp* stack) {
  return stack->get_data_ptr();
}

// `from`, `to` and `permutation` have `rank` entries.
__attribute__((visibility("default"))) void stack_copy(VStackImp* stack, const VStackImp* source,
                                                       const int* from, const int* to,
                                                       const unsigned int* permutation, int rank,
                                                       int type) {
  VStackRegion region;
  region.type = type;
  region.from.assign(from, from + rank);
  region.to.assign(to, to + rank);
  region.permutation.assign(permutation, permutation + rank);
  stack->copy(source, region);
}

}  // extern "C"
