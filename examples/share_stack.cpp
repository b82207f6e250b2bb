// Share the elements of a stack with a second process, without a copy.
#include <vrelio/vrelio.h>

#include <cstdio>
#include <cstdlib>
#include <numeric>
#include <string>

namespace {

// The second process gets the id alone; what the bytes are both sides have to know.
int add_up(const std::string& id) {
  Vrel::SharedMemory block(id);
  const auto* const bytes = static_cast<const unsigned char*>(block.data());
  const unsigned long sum = std::accumulate(bytes, bytes + block.size(), 0UL);
  std::printf("the other process sees %u bytes that add up to %lu\n", block.size(), sum);
  return 0;
}

}  // namespace

int main(int count, char** arguments) {
  if (count == 2) return add_up(arguments[1]);

  VStackImp stack(Ome::type_uint8, {10, 10}, Ome::order_XYZTC);
  const std::string id = stack.share();  // from now on the elements lie in shared memory
  std::iota(stack.get_data_ptr(), stack.get_data_ptr() + 100, static_cast<unsigned char>(0));

  const std::string command = "'" + std::string(arguments[0]) + "' " + id;
  return std::system(command.c_str()) == 0 ? 0 : 1;
}
