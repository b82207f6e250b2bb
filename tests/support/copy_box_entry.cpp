#include "support/copy_box_entry.h"

#include "stack/copy_box_internal.h"

int copy_box_entry(int source_type, int destination_type, const void* source, void* destination,
                   const long long* axes, int rank) {
  std::vector<Vrel::detail::BoxAxis> box;
  for (int i = 0; i < rank; ++i)
    box.push_back({static_cast<std::size_t>(axes[3 * i]), axes[3 * i + 1], axes[3 * i + 2]});
  return Vrel::detail::copy_box(source_type, destination_type,
                                static_cast<const unsigned char*>(source),
                                static_cast<unsigned char*>(destination), box)
             ? 0
             : -1;
}
