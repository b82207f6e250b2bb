// A stack as one dataset of an HDF5 file.
#pragma once

#include <cstdint>
#include <string>

#include "container/stack_shape.h"

namespace bench {

class Hdf5Stack {
 public:
  enum Layout { contiguous, deflated };

  // Make a file with a stack of zeros.
  Hdf5Stack(const std::string& path, std::size_t planes, Layout layout);
  // Open one.
  explicit Hdf5Stack(const std::string& path);
  ~Hdf5Stack();
  Hdf5Stack(const Hdf5Stack&) = delete;
  Hdf5Stack& operator=(const Hdf5Stack&) = delete;

  void write_plane(std::size_t plane, const Sample* samples);
  void read(const Box& box, Sample* samples);
  void read_as_float(const Box& box, float* samples);

 private:
  void select(const Box& box);

  std::int64_t file_ = -1;
  std::int64_t set_ = -1;
  std::int64_t file_space_ = -1;
  std::int64_t memory_space_ = -1;
};

// A file with so many small datasets, which are opened one by one.
void write_hdf5_sets(const std::string& path, unsigned count);
void open_hdf5_sets(const std::string& path, unsigned count);

}  // namespace bench
