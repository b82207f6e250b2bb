// Write a VBF file with one compressed stack that grows plane by plane.
#include <vrelio/vrelio.h>

#include <cstdio>
#include <vector>

int main(int count, char** arguments) {
  if (count != 2) return 2;
  try {
    VBFFile file(VPropstring(arguments[1], VPropstring::encoding_local), VFile::mode_create);
    file->set_description("written by an example");
    const boost::shared_ptr<VBFStackInterface> stack = file->add_stack(false);
    stack->create({64, 48, 0}, vrel_dt_from_name("uint16"));  // the last axis grows
    stack->set_compression(1, 6);
    stack->set_name("ramp");
    stack->set_labels({"X", "Y", "Z"});
    stack->set_len(0, 6.4);  // of the whole axis
    stack->set_units(0, si::value("um"));
    stack->set_tag("objective", "63x/1.4 Oil");

    std::vector<unsigned short> plane(64 * 48);
    for (unsigned short z = 0; z < 5; ++z) {
      for (std::size_t i = 0; i < plane.size(); ++i)
        plane[i] = static_cast<unsigned short>(i % 64 + 100U * z);
      stack->write(stack->get_dt(), plane.data(), nullptr, static_cast<unsigned>(plane.size()));
    }
    file->close();  // makes the stack complete, and raises what a destructor would swallow
  } catch (const VrelError& error) {
    std::fprintf(stderr, "%s\n", error.get_msg());
    return 1;
  }
}
