#include <vrelio/vrelio.h>

#include <vector>

int main() {
  VBFFile file(L"cells.vbf", VFile::mode_modify);  // keeps what the file has

  const auto stack = file->add_stack(false);
  const int type = vrel_dt_from_name("single");
  stack->set_compression(1, 6);  // zlib at level 6
  stack->create({16, 16, 0}, type);
  stack->set_name("time series");
  stack->set_labels({"X", "Y", "T"});

  std::vector<float> plane(16 * 16);
  for (int t = 0; t < 5; ++t) {
    for (float& sample : plane) sample += 0.5F;
    stack->write(type, plane.data(), nullptr, static_cast<unsigned int>(plane.size()));
  }
  stack->commit(type);

  file->close();
}
