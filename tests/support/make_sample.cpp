// Writes a VBF file of plausible fluorescence data: a z-stack in two channels, compressed, and a
// short time lapse, raw.
#include <cstdio>
#include <cstring>
#include <exception>
#include <filesystem>
#include <string>

#include "support/fluorescence.h"
#include "support/vbf_writer.h"

namespace {

using Vrel::testing::Fluorescence;
using Vrel::testing::StackToWrite;

constexpr int uint16_id = 4;

Vrel::UnitRecord micrometre() {
  Vrel::UnitRecord unit;
  unit.exponents[0] = {1, 1};
  unit.factor = 1e-6;
  return unit;
}

Vrel::UnitRecord second() {
  Vrel::UnitRecord unit;
  unit.exponents[2] = {1, 1};
  return unit;
}

std::string bytes_of(const std::vector<std::uint16_t>& samples) {
  std::string bytes(samples.size() * sizeof samples[0], '\0');
  std::memcpy(bytes.data(), samples.data(), bytes.size());
  return bytes;
}

StackToWrite make_stack(const Fluorescence& scene, const char* name) {
  StackToWrite stack;
  stack.record = Vrel::testing::make_stack_record(uint16_id, scene.sizes);
  stack.record.name = name;
  stack.samples = bytes_of(make_fluorescence(scene));
  return stack;
}

void set_axis(Vrel::StackRecord& record, std::size_t axis, const char* label, double step,
              const Vrel::UnitRecord& unit) {
  record.labels[axis] = label;
  record.header.lengths[axis] = step * record.header.sizes[axis];
  record.footer.units[axis] = unit;
}

StackToWrite make_z_stack() {
  Fluorescence scene;
  scene.sizes = {256, 256, 24, 2};
  StackToWrite stack = make_stack(scene, "two channels");
  stack.record.description = "Simulated spots, two channels, photon noise";
  stack.record.header.compression_type = 1;
  stack.record.header.compression_level = 6;
  stack.record.flush_block_size = 131072;
  set_axis(stack.record, 0, "X", 0.1, micrometre());
  set_axis(stack.record, 1, "Y", 0.1, micrometre());
  set_axis(stack.record, 2, "Z", 0.3, micrometre());
  stack.record.labels[3] = "Channel";
  stack.record.column_labels[3] = {"DAPI", "GFP"};
  stack.record.tags = {{"Exposure", "0.05"}, {"Objective", "60x/1.4 oil"}};
  return stack;
}

StackToWrite make_time_lapse() {
  Fluorescence scene;
  scene.sizes = {128, 128, 10};
  scene.seed = 2;
  StackToWrite stack = make_stack(scene, "time lapse");
  set_axis(stack.record, 0, "X", 0.1, micrometre());
  set_axis(stack.record, 1, "Y", 0.1, micrometre());
  set_axis(stack.record, 2, "T", 0.5, second());
  return stack;
}

void write_sample(const char* path) {
  VFile file(std::filesystem::path(path).wstring(), VFile::mode_create);
  Vrel::testing::write_vbf(file, "Simulated fluorescence", {make_z_stack(), make_time_lapse()}, {});
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 2) {
    std::fputs("usage: vrelio_make_sample FILE\n", stderr);
    return 2;
  }
  try {
    write_sample(arguments[1]);
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "vrelio_make_sample: %s: %s\n", arguments[1], error.what());
    return 3;
  }
}
