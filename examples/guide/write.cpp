#include <vrelio/vrelio.h>

#include <vector>

int main() {
  // 64 x 48 pixels in 3 planes; X runs fastest, then Y, then Z.
  std::vector<unsigned short> samples(64 * 48 * 3);
  for (std::size_t i = 0; i < samples.size(); ++i)
    samples[i] = static_cast<unsigned short>(i % 64 + 100 * (i / (64 * 48)));

  VBFFile file(L"cells.vbf", VFile::mode_create);
  file->set_description("a first file");

  const auto stack = file->add_stack(false);
  const int type = vrel_dt_from_name("uint16");
  stack->create({64, 48, 3}, type);
  stack->set_name("nuclei");
  stack->set_labels({"X", "Y", "Z"});
  const double lengths[] = {6.4, 4.8, 1.5};  // of whole axes, not of pixels
  for (unsigned int axis = 0; axis < 3; ++axis) {
    stack->set_len(axis, lengths[axis]);
    stack->set_units(axis, si::value("um"));
  }
  stack->set_tag("objective", "63x/1.4 Oil");
  stack->write(type, samples.data(), nullptr, VBFStackInterface::all_samples);

  file->close();
}
