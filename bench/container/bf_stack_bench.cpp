// A stack of 512 MiB into files and back, beside bare system calls, bare zlib, HDF5 and TIFF.
//
// Each way moves the same planes in the same order, and compresses blocks of the same size at the same
// level. All files lie in memory. What is read is compared before anything is timed.
#include <fcntl.h>
#include <unistd.h>
#include <vrelio/container/bf_file.h>
#include <vrelio/container/chain.h>

#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "container/contest.h"
#include "container/hdf5_stack.h"
#include "container/stack_shape.h"
#include "container/tiff_stack.h"
#include "container/zlib_stream.h"
#include "support/fluorescence.h"

namespace {

using namespace bench;

constexpr std::size_t planes = 256;
constexpr std::size_t distinct_planes = 16;
constexpr std::size_t total = planes * plane_size;
constexpr int uint16 = 4;
constexpr int single = 64;
constexpr int rounds = 5;
constexpr int slow_rounds = 2;

using Samples = std::vector<Sample>;
using stack_ptr = boost::shared_ptr<VBFStackInterface>;

// Blurred spots, photon noise and a camera's offset; repeated at a distance that no compressor sees.
Samples make_samples() {
  Vrel::testing::Fluorescence scene;
  scene.sizes = {width, height, distinct_planes};
  const Samples part = make_fluorescence(scene);
  Samples samples(planes * plane_length);
  for (std::size_t plane = 0; plane < planes; plane += distinct_planes) {
    std::copy(part.begin(), part.end(), samples.begin() + std::ptrdiff_t(plane * plane_length));
  }
  return samples;
}

const Sample* plane_of(const Samples& samples, std::size_t plane) {
  return samples.data() + plane * plane_length;
}

Box whole_plane(std::size_t plane) { return {{0, 0, plane}, {width, height, 1}}; }

void write_ours(const ScratchFile& target, const Samples& samples, int type) {
  VBFFile file(target.name(), VFile::mode_create);
  const stack_ptr stack = file->add_stack(false);
  stack->create(std::vector<unsigned>{width, height, planes}, uint16);
  stack->set_compression(type, 1);
  for (std::size_t plane = 0; plane < planes; ++plane) {
    stack->write(uint16, plane_of(samples, plane), nullptr, plane_length);
  }
  file->close();
}

// One stack that is open for reading.
class OurStack {
 public:
  explicit OurStack(const ScratchFile& target)
      : file_(target.name(), VFile::mode_read), stack_(file_->get_stack(0)) {}

  void read(int type, std::size_t position, std::size_t count, void* samples) {
    auto at = static_cast<int>(position);
    stack_->read(type, samples, nullptr, static_cast<unsigned>(count), at);
  }

  // Row by row, as the rows follow each other in the file.
  void read(const Box& box, Sample* samples) {
    for (std::size_t z = box.first[2]; z < box.first[2] + box.size[2]; ++z) {
      for (std::size_t y = box.first[1]; y < box.first[1] + box.size[1]; ++y) {
        read(uint16, z * plane_length + y * width + box.first[0], box.size[0], samples);
        samples += box.size[0];
      }
    }
  }

 private:
  VBFFile file_;
  stack_ptr stack_;
};

// Where our samples stand. The system calls read the very same pages, since where those lie in memory makes
// a tenth of the time.
constexpr u64 first_position = 402;

void write_by_system_calls(const std::string& path, const Samples& samples) {
  const int file = ::open(path.c_str(), O_RDWR | O_CREAT | O_TRUNC, 0600);
  for (std::size_t plane = 0; plane < planes; ++plane) {
    const auto position = static_cast<off_t>(first_position + plane * plane_size);
    require(::pwrite(file, plane_of(samples, plane), plane_size, position) == ssize_t{plane_size},
            "not written");
  }
  ::close(file);
}

void read_by_system_calls(const std::string& path, Samples& plane_room) {
  const int file = ::open(path.c_str(), O_RDONLY);
  for (std::size_t plane = 0; plane < planes; ++plane) {
    const auto position = static_cast<off_t>(first_position + plane * plane_size);
    require(::pread(file, plane_room.data(), plane_size, position) == ssize_t{plane_size},
            "not read");
  }
  ::close(file);
}

void check_position(const ScratchFile& target) {
  VFile file(target.name(), VFile::mode_read);
  Vrel::FileRecord record;
  Vrel::read_chain(file, record);
  require(record.stacks[0].data_position == first_position, "our samples stand elsewhere");
}

void write_hdf5(const ScratchFile& target, const Samples& samples, Hdf5Stack::Layout layout) {
  Hdf5Stack stack(target.path(), planes, layout);
  for (std::size_t plane = 0; plane < planes; ++plane) {
    stack.write_plane(plane, plane_of(samples, plane));
  }
}

void write_tiff(const ScratchFile& target, const Samples& samples) {
  TiffStack stack(target.path(), TiffStack::write_new);
  for (std::size_t plane = 0; plane < planes; ++plane) stack.write_plane(plane_of(samples, plane));
}

void check_plane(const char* who, const Samples& samples, std::size_t plane, const Sample* read) {
  require(std::memcmp(plane_of(samples, plane), read, plane_size) == 0, who);
}

void run_raw(const Samples& samples) {
  const ScratchFile ours("raw.vbf");
  const ScratchFile bare("raw.bin");
  const ScratchFile hdf5("raw.h5");
  contest("write 512 MiB raw", total, rounds,
          {{"ours", [&] { write_ours(ours, samples, 0); }},
           {"pwrite", [&] { write_by_system_calls(bare.path(), samples); }},
           {"HDF5", [&] { write_hdf5(hdf5, samples, Hdf5Stack::contiguous); }}});

  Samples room(plane_length);
  const auto read_ours = [&] {
    OurStack stack(ours);
    for (std::size_t plane = 0; plane < planes; ++plane) {
      stack.read(uint16, plane * plane_length, plane_length, room.data());
    }
  };
  const auto read_hdf5 = [&] {
    Hdf5Stack stack(hdf5.path());
    for (std::size_t plane = 0; plane < planes; ++plane)
      stack.read(whole_plane(plane), room.data());
  };
  read_ours();
  check_plane("ours differs", samples, planes - 1, room.data());
  read_hdf5();
  check_plane("HDF5 differs", samples, planes - 1, room.data());
  check_position(ours);
  contest("read 512 MiB raw", total, rounds,
          {{"ours", read_ours},
           {"pread", [&] { read_by_system_calls(ours.path(), room); }},
           {"HDF5", read_hdf5}});

  std::vector<float> floats(plane_length);
  contest("read 512 MiB raw as float", total, rounds,
          {{"ours",
            [&] {
              OurStack stack(ours);
              for (std::size_t plane = 0; plane < planes; ++plane) {
                stack.read(single, plane * plane_length, plane_length, floats.data());
              }
            }},
           {"HDF5", [&] {
              Hdf5Stack stack(hdf5.path());
              for (std::size_t plane = 0; plane < planes; ++plane) {
                stack.read_as_float(whole_plane(plane), floats.data());
              }
            }}});
}

struct Row {
  std::size_t plane;
  std::size_t row;
};

std::vector<Row> random_rows() {
  std::mt19937 random(1);
  std::vector<Row> rows(1000);
  for (Row& row : rows) row = {random() % planes, random() % height};
  return rows;
}

void run_compressed(const Samples& samples) {
  const ScratchFile ours("level1.vbf");
  const ScratchFile bare("level1.zlib");
  const ScratchFile hdf5("level1.h5");
  const ScratchFile tiff("level1.tif");
  FlushPositions positions;
  contest("write 512 MiB at level 1", total, slow_rounds,
          {{"ours", [&] { write_ours(ours, samples, 1); }},
           {"zlib", [&] { positions = write_zlib_stream(bare.path(), samples.data(), planes); }},
           {"HDF5", [&] { write_hdf5(hdf5, samples, Hdf5Stack::deflated); }},
           {"TIFF", [&] { write_tiff(tiff, samples); }}});

  Samples room(plane_length);
  Samples whole(planes * plane_length);
  const auto bytes = [](Samples& buffer) {
    return reinterpret_cast<unsigned char*>(buffer.data());
  };
  const auto read_ours = [&] {
    OurStack stack(ours);
    for (std::size_t plane = 0; plane < planes; ++plane) {
      stack.read(uint16, plane * plane_length, plane_length, room.data());
    }
  };
  const auto read_zlib = [&] { read_zlib_stream(bare.path(), positions, 0, total, bytes(whole)); };
  const auto read_hdf5 = [&] {
    Hdf5Stack stack(hdf5.path());
    for (std::size_t plane = 0; plane < planes; ++plane)
      stack.read(whole_plane(plane), room.data());
  };
  const auto read_tiff = [&] {
    TiffStack stack(tiff.path(), TiffStack::read_existing);
    for (std::size_t plane = 0; plane < planes; ++plane) stack.read_plane(plane, room.data());
  };
  read_ours();
  check_plane("ours differs", samples, planes - 1, room.data());
  read_hdf5();
  check_plane("HDF5 differs", samples, planes - 1, room.data());
  read_tiff();
  check_plane("TIFF differs", samples, planes - 1, room.data());
  read_zlib();
  require(whole == samples, "zlib differs");
  contest("read 512 MiB at level 1", total, slow_rounds,
          {{"ours", read_ours}, {"zlib", read_zlib}, {"HDF5", read_hdf5}, {"TIFF", read_tiff}});

  constexpr std::size_t middle = planes / 2;
  OurStack our_stack(ours);
  Hdf5Stack hdf5_stack(hdf5.path());
  TiffStack tiff_stack(tiff.path(), TiffStack::read_existing);
  const std::size_t blocks_of_plane = plane_size / block_size;
  std::size_t turn = 0;
  // Another plane in each turn, so that nobody keeps one.
  const auto next_plane = [&] { return middle + turn % distinct_planes; };
  contest(
      "one plane from the middle", plane_size, 4 * rounds,
      {{"ours",
        [&] { our_stack.read(uint16, next_plane() * plane_length, plane_length, room.data()); }},
       {"zlib",
        [&] {
          read_zlib_stream(bare.path(), positions, next_plane() * blocks_of_plane, plane_size,
                           bytes(room));
        }},
       {"HDF5", [&] { hdf5_stack.read(whole_plane(next_plane()), room.data()); }},
       {"TIFF", [&] {
          tiff_stack.read_plane(next_plane(), room.data());
          ++turn;
        }}});

  const std::vector<Row> rows = random_rows();
  constexpr std::size_t row_bytes = 1000 * width * sizeof(Sample);
  contest("1,000 random rows", row_bytes, slow_rounds,
          {{"ours",
            [&] {
              for (const Row& row : rows) {
                our_stack.read(uint16, row.plane * plane_length + row.row * width, width,
                               room.data());
              }
            }},
           {"HDF5",
            [&] {
              for (const Row& row : rows) {
                hdf5_stack.read({{0, row.row, row.plane}, {width, 1, 1}}, room.data());
              }
            }},
           {"TIFF", [&] {
              for (const Row& row : rows) tiff_stack.read_row(row.plane, row.row, room.data());
            }}});

  // Others in each turn, as far as they go.
  const auto region = [&] { return Box{{256, 256, turn * 8 % (planes - 4)}, {512, 512, 4}}; };
  turn = 0;
  contest("region of 512 x 512 x 4", 512UL * 512 * 4 * sizeof(Sample), 2 * rounds,
          {{"ours", [&] { our_stack.read(region(), room.data()); }}, {"HDF5", [&] {
                                                                        hdf5_stack.read(
                                                                            region(), room.data());
                                                                        ++turn;
                                                                      }}});
}

}  // namespace

int main() {
  const Samples samples = make_samples();
  run_raw(samples);
  run_compressed(samples);
}
