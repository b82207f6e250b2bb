#include "container/hdf5_stack.h"

#include <hdf5.h>

#include <array>
#include <string>
#include <vector>

namespace bench {

namespace {

// Enough for the blocks of a plane, so that none is decoded twice.
constexpr std::size_t cache_size = 16U << 20;
constexpr std::size_t cache_slots = 10007;
constexpr double replace_when_read = 1.0;

hid_t open_access() {
  const hid_t access = H5Pcreate(H5P_DATASET_ACCESS);
  H5Pset_chunk_cache(access, cache_slots, cache_size, replace_when_read);
  return access;
}

hid_t creation(Hdf5Stack::Layout layout) {
  const hid_t properties = H5Pcreate(H5P_DATASET_CREATE);
  if (layout == Hdf5Stack::deflated) {
    const std::array<hsize_t, 3> chunk = {1, block_rows, width};
    H5Pset_chunk(properties, 3, chunk.data());
    H5Pset_deflate(properties, 1);
  }
  H5Pset_fill_time(properties, H5D_FILL_TIME_NEVER);
  return properties;
}

std::array<hsize_t, 3> reversed(const std::size_t (&values)[3]) {
  return {values[2], values[1], values[0]};
}

}  // namespace

Hdf5Stack::Hdf5Stack(const std::string& path, std::size_t planes, Layout layout)
    : file_(H5Fcreate(path.c_str(), H5F_ACC_TRUNC, H5P_DEFAULT, H5P_DEFAULT)) {
  const std::array<hsize_t, 3> sizes = {planes, height, width};
  file_space_ = H5Screate_simple(3, sizes.data(), nullptr);
  const hid_t properties = creation(layout);
  const hid_t access = open_access();
  set_ =
      H5Dcreate2(file_, "stack", H5T_NATIVE_UINT16, file_space_, H5P_DEFAULT, properties, access);
  H5Pclose(properties);
  H5Pclose(access);
  require(set_ >= 0, "HDF5: no dataset");
}

Hdf5Stack::Hdf5Stack(const std::string& path)
    : file_(H5Fopen(path.c_str(), H5F_ACC_RDONLY, H5P_DEFAULT)) {
  const hid_t access = open_access();
  set_ = H5Dopen2(file_, "stack", access);
  H5Pclose(access);
  file_space_ = H5Dget_space(set_);
  require(set_ >= 0, "HDF5: no dataset");
}

Hdf5Stack::~Hdf5Stack() {
  if (memory_space_ >= 0) H5Sclose(memory_space_);
  H5Sclose(file_space_);
  H5Dclose(set_);
  H5Fclose(file_);
}

void Hdf5Stack::select(const Box& box) {
  const std::array<hsize_t, 3> first = reversed(box.first);
  const std::array<hsize_t, 3> size = reversed(box.size);
  H5Sselect_hyperslab(file_space_, H5S_SELECT_SET, first.data(), nullptr, size.data(), nullptr);
  if (memory_space_ >= 0) H5Sclose(memory_space_);
  memory_space_ = H5Screate_simple(3, size.data(), nullptr);
}

void Hdf5Stack::write_plane(std::size_t plane, const Sample* samples) {
  select({{0, 0, plane}, {width, height, 1}});
  const herr_t result =
      H5Dwrite(set_, H5T_NATIVE_UINT16, memory_space_, file_space_, H5P_DEFAULT, samples);
  require(result >= 0, "HDF5: not written");
}

void Hdf5Stack::read(const Box& box, Sample* samples) {
  select(box);
  const herr_t result =
      H5Dread(set_, H5T_NATIVE_UINT16, memory_space_, file_space_, H5P_DEFAULT, samples);
  require(result >= 0, "HDF5: not read");
}

void Hdf5Stack::read_as_float(const Box& box, float* samples) {
  select(box);
  const herr_t result =
      H5Dread(set_, H5T_NATIVE_FLOAT, memory_space_, file_space_, H5P_DEFAULT, samples);
  require(result >= 0, "HDF5: not read");
}

void write_hdf5_sets(const std::string& path, unsigned count) {
  const hid_t access = H5Pcreate(H5P_FILE_ACCESS);
  H5Pset_libver_bounds(access, H5F_LIBVER_LATEST, H5F_LIBVER_LATEST);
  const hid_t file = H5Fcreate(path.c_str(), H5F_ACC_TRUNC, H5P_DEFAULT, access);
  const std::array<hsize_t, 2> sizes = {16, 16};
  const hid_t space = H5Screate_simple(2, sizes.data(), nullptr);
  const std::vector<Sample> samples(256);
  for (unsigned i = 0; i < count; ++i) {
    const hid_t set = H5Dcreate2(file, std::to_string(i).c_str(), H5T_NATIVE_UINT16, space,
                                 H5P_DEFAULT, H5P_DEFAULT, H5P_DEFAULT);
    H5Dwrite(set, H5T_NATIVE_UINT16, H5S_ALL, H5S_ALL, H5P_DEFAULT, samples.data());
    H5Dclose(set);
  }
  H5Sclose(space);
  H5Fclose(file);
  H5Pclose(access);
}

void open_hdf5_sets(const std::string& path, unsigned count) {
  const hid_t file = H5Fopen(path.c_str(), H5F_ACC_RDONLY, H5P_DEFAULT);
  for (unsigned i = 0; i < count; ++i) {
    const hid_t set = H5Dopen2(file, std::to_string(i).c_str(), H5P_DEFAULT);
    require(set >= 0, "HDF5: no dataset");
    H5Dclose(set);
  }
  H5Fclose(file);
}

}  // namespace bench
