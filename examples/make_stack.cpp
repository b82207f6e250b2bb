// Make a stack in memory, describe it and fill it.
#include <vrelio/vrelio.h>

#include <cstdio>

int main() {
  // 64 x 48 pixels, 5 planes, all elements 0.
  VStackImp stack(Ome::type_uint16, {64, 48, 5}, Ome::order_XYZTC);
  stack.set_name("ramp");
  stack.set_labels({"X", "Y", "Z"});
  stack.set_len(0, 6.4);  // micrometres
  stack.set_len(1, 4.8);
  stack.set_len(2, 2.5);

  // The fast way is through the buffer: axis 0 runs fastest.
  auto* const elements = reinterpret_cast<unsigned short*>(stack.get_data_ptr());
  for (unsigned int i = 0; i < stack.get_number_of_elements(); ++i)
    elements[i] = static_cast<unsigned short>(i % 64);

  // The convenient one is an iterator, which converts and walks any part: here the last plane.
  VStackRegion region;
  region.create(&stack, 0);
  region.from[2] = 4;
  for (const auto it = VStackInterface::make_iterator(&stack, region); !it->at_end; it->advance())
    it->write(1000.5);

  const VStackPosition place = stack.get_stack_position();
  std::printf("%s: %u elements along %u axes, %g um per pixel, last element %d, %u global axes\n",
              stack.get_name().c_str(), stack.get_number_of_elements(), stack.get_rank(),
              stack.get_length(0) / stack.get_dimension_size(0),
              elements[stack.get_number_of_elements() - 1], place.axes.count());
}
