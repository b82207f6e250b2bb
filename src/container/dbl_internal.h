// What reading and writing ".dbl" files have in common, and what opening one as a container needs.
#pragma once

#include <vrelio/foundation/convert.h>
#include <vrelio/foundation/propstring.h>

#include <algorithm>
#include <string>

#include "container/dbl_format_internal.h"
#include "file/system_file_internal.h"

namespace Vrel::detail {

// An open file of the system.
class Descriptor {
 public:
  Descriptor(const std::string& name, OpenMode mode) : number_(system_open(name, mode)) {}
  ~Descriptor() {
    if (is_open()) system_close(number_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  bool is_open() const { return number_ != -1; }

  bool read(void* buffer, std::size_t size) const { return system_read(number_, buffer, size); }
  bool write(const void* buffer, std::size_t size) const {
    return system_write(number_, buffer, size);
  }

  // Bytes from the current position to the end; as many as there can be where the file has no end.
  u64 count_bytes_left() const {
    const u64 here = system_move(number_, 0, MoveFrom::current);
    const u64 end = system_move(number_, 0, MoveFrom::end);
    if (here == no_position || end == no_position) return no_position;
    system_move(number_, here, MoveFrom::start);
    return end - std::min(here, end);
  }

 private:
  int number_;
};

// What the plain functions give for a failure.
constexpr int dbl_failed = 0;

// Convert `count` samples, at most 2^31 - 1, between single and double.
inline void convert_dbl_samples(int from, int to, const void* source, void* destination,
                                std::size_t count) {
  vrel_dt_convert(from, to, source, destination, static_cast<int>(count), nullptr, nullptr);
}

// Raises "Error reading .dbl file!" (-4).
DblHeader read_dbl_header(const VPropstring& name);

}  // namespace Vrel::detail
