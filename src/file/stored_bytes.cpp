#include "file/stored_bytes_internal.h"
#include "file/system_file_internal.h"
#include "foundation/raise_internal.h"

namespace Vrel::detail {

// The position of all ones would move the file to its end.
void StoredBytes::move_file() {
  if (position_ == no_position || file_.seek(position_) != position_) {
    raise(id_format, "Invalid stack position specified in header!");
  }
}

void StoredBytes::advance(unsigned size) {
  position_ += size;
  left_ -= size;
}

void StoredBytes::read(void* buffer, unsigned size) {
  move_file();
  file_.read(buffer, size);
  advance(size);
}

void StoredBytes::write(const void* buffer, unsigned size) {
  move_file();
  file_.write(buffer, size);
  advance(size);
}

}  // namespace Vrel::detail
