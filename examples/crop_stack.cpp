// Cut a part out of a stack, with its axes exchanged, as floating point numbers.
#include <vrelio/vrelio.h>

#include <cstdio>

int main() {
  VStackImp stack(Ome::type_uint16, {6, 4, 3}, Ome::order_XYZTC);
  stack.set_labels({"X", "Y", "Z"});
  auto* const elements = reinterpret_cast<unsigned short*>(stack.get_data_ptr());
  for (unsigned int i = 0; i < stack.get_number_of_elements(); ++i)
    elements[i] = static_cast<unsigned short>(i);

  VStackRegion region;
  region.from = {2, -1, 1};                       // a region may begin in front of the stack
  region.to = {5, VStackRegion::end_of_axis, 2};  // and its bounds are half-open
  region.permutation = {1, 0};                    // Y, then X; plane 1 is held
  region.type = vrel_dt_from_name("single");

  VStackImp part(0);
  part.copy(&stack, region);

  const auto* values = reinterpret_cast<const float*>(part.get_data_ptr());
  for (unsigned int x = 0; x < part.get_dimension_size(1); ++x) {
    for (unsigned int y = 0; y < part.get_dimension_size(0); ++y)
      std::printf("%5.1f", static_cast<double>(*values++));
    std::printf("\n");
  }
  std::printf("%s along axis 0, %s along axis 1\n", part.get_label(0).c_str(),
              part.get_label(1).c_str());
}
