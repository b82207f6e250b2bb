// A stack as one directory for each plane of a TIFF file, in deflated strips.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "container/stack_shape.h"

struct tiff;

namespace bench {

class TiffStack {
 public:
  enum Access { write_new, read_existing };

  TiffStack(const std::string& path, Access access);
  ~TiffStack();
  TiffStack(const TiffStack&) = delete;
  TiffStack& operator=(const TiffStack&) = delete;

  void write_plane(const Sample* samples);
  void read_plane(std::size_t plane, Sample* samples);
  void read_row(std::size_t plane, std::size_t row, Sample* samples);

 private:
  void go_to(std::size_t plane);

  tiff* file_;
  // Where each plane's directory stands, so that none is looked for.
  std::vector<std::uint64_t> directories_;
  std::size_t current_ = 0;
  std::vector<Sample> strip_;
};

}  // namespace bench
