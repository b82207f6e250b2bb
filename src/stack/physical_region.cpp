#include <vrelio/stack/physical_region.h>

#include <cstddef>

VStackPhysicalRegion::VStackPhysicalRegion(unsigned int rank) : from(rank), to(rank) {
  axes.set_size({rank, rank}, VProparrayBase::set_mode_clear);
  for (std::size_t axis = 0; axis < rank; ++axis) axes[axis * rank + axis] = 1.0;
}
