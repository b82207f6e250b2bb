// Read a VBF file: every stack with its tags, and one plane of each as floating point numbers.
#include <vrelio/vrelio.h>

#include <cstdio>
#include <numeric>
#include <vector>

int main(int count, char** arguments) {
  if (count != 2) return 2;
  try {
    VBFFile file(VPropstring(arguments[1], VPropstring::encoding_local), VFile::mode_read);
    for (unsigned int i = 0; i < file->get_number_of_stacks(); ++i) {
      const boost::shared_ptr<VBFStackInterface> stack = file->get_stack(i);
      std::printf("%s: %u samples of %s\n", stack->get_name().c_str(),
                  stack->get_number_of_elements(), vrel_dt_get_name(stack->get_dt()));
      for (const std::string& key : stack->get_tag_keys())
        std::printf("  %s: %s\n", key.c_str(), stack->get_tag(key).c_str());
      if (stack->get_rank() < 2 || stack->get_number_of_elements() == 0) continue;

      // The last plane; compressed stacks are decoded from the nearest flush point on.
      std::vector<float> plane(std::size_t{stack->get_dimension_size(0)} *
                               stack->get_dimension_size(1));
      const auto length = static_cast<unsigned int>(plane.size());
      auto position = static_cast<int>(stack->get_number_of_elements() - length);
      stack->read(vrel_dt_from_name("single"), plane.data(), nullptr, length, position);
      std::printf("  mean of the last plane: %g\n",
                  std::accumulate(plane.begin(), plane.end(), 0.0) / length);
    }
  } catch (const VrelError& error) {
    std::fprintf(stderr, "%s\n", error.get_msg());
    return 1;
  }
}
