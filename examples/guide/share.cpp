#include <vrelio/vrelio.h>

#include <iostream>

int main() {
  VStackImp stack(Ome::type_uint8, {10, 10}, Ome::order_XYZTC);
  const std::string id = stack.share();  // the samples move into shared memory
  stack.get_data_ptr()[99] = 42;

  // What another process does that was told the id.
  Vrel::SharedMemory block(id);
  const auto* const samples = static_cast<const unsigned char*>(block.data());
  std::cout << block.size() << " bytes, the last one " << int{samples[99]} << '\n';
}
