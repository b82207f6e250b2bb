#include <vrelio/vrelio.h>

#include <iostream>
#include <vector>

int main() {
  VBFFile file(L"cells.vbf", VFile::mode_read);
  for (unsigned int i = 0; i < file->get_number_of_stacks(); ++i) {
    const auto stack = file->get_stack(i);
    std::cout << stack->get_name() << ": " << vrel_dt_get_name(stack->get_dt());
    for (unsigned int axis = 0; axis < stack->get_rank(); ++axis)
      std::cout << ", " << stack->get_label(axis) << ' ' << stack->get_dimension_size(axis);
    std::cout << '\n';
    for (const std::string& key : stack->get_tag_keys())
      std::cout << "  " << key << " = " << stack->get_tag(key) << '\n';

    // The second plane alone, as double whatever the file has.
    std::vector<double> plane(stack->get_dimension_size(0) * stack->get_dimension_size(1));
    const auto count = static_cast<unsigned int>(plane.size());
    int position = static_cast<int>(count);
    stack->read(vrel_dt_from_name("double"), plane.data(), nullptr, count, position);
    std::cout << "  from " << plane.front() << " to " << plane.back() << '\n';
  }
}
