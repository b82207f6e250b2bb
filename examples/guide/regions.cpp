#include <vrelio/vrelio.h>

#include <iostream>

int main() {
  VBFFile file(L"cells.vbf", VFile::mode_read);
  const boost::shared_ptr<VStackInterface> whole = file->read_stack(0, 0);

  VStackRegion region;
  region.create(whole.get(), 0);  // all of it, in its own type
  region.from = {10, 20, 1};
  region.to = {30, VStackRegion::end_of_axis, 2};
  region.permutation = {1, 0};  // Y runs fastest, then X; plane 1 is held
  region.type = vrel_dt_from_name("single");

  VStackImp part(0);
  part.copy(whole.get(), region);
  for (unsigned int axis = 0; axis < part.get_rank(); ++axis) {
    part.set_units(axis, whole->get_units(region.permutation[axis]));  // a copy leaves them out
    std::cout << part.get_label(axis) << ' ' << part.get_dimension_size(axis) << ", ";
  }
  const auto* const samples = reinterpret_cast<const float*>(part.get_data_ptr());
  std::cout << "first sample " << samples[0] << '\n';

  VBFFile result(L"part.vbf", VFile::mode_create);
  result->write_stack(&part, 0);
  result->close();
}
