// What writing and reading stacks of several sizes takes of memory at its peak, beside what the process has
// when it starts.
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vrelio/container/bf_file.h>

#include <cstdio>
#include <vector>

#include "container/stack_shape.h"
#include "support/fluorescence.h"

namespace {

using namespace bench;

constexpr int uint16 = 4;
constexpr int single = 64;

double peak_in_mebibytes() {
  struct rusage usage {};
  ::getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_maxrss) / 1024.0;
}

void write_planes(const ScratchFile& target, const std::vector<Sample>& plane, unsigned planes,
                  int type) {
  VBFFile file(target.name(), VFile::mode_create);
  const auto stack = file->add_stack(false);
  stack->create(std::vector<unsigned>{width, height, planes}, uint16);
  stack->set_compression(type, 1);
  for (unsigned i = 0; i < planes; ++i) stack->write(uint16, plane.data(), nullptr, plane_length);
  file->close();
}

// Rows are small, so that the room of the caller does not show.
void read_rows(const ScratchFile& target, unsigned planes, int type) {
  VBFFile file(target.name(), VFile::mode_read);
  const auto stack = file->get_stack(0);
  std::vector<float> room(width);
  int position = 0;
  for (std::size_t row = 0; row < height * planes; ++row)
    stack->read(type, room.data(), nullptr, width, position);
}

// In a process of its own, which starts anew and so has a peak of its own.
void run_apart(const char* program, const char* what, unsigned planes, int type) {
  const pid_t child = ::fork();
  if (child == 0) {
    ::execl(program, program, what, std::to_string(planes).c_str(), std::to_string(type).c_str(),
            nullptr);
    ::_exit(1);
  }
  ::waitpid(child, nullptr, 0);
}

int run_one(const std::string& what, unsigned planes, int type) {
  const ScratchFile target("memory-" + std::to_string(::getppid()) + ".vbf");
  Vrel::testing::Fluorescence scene;
  scene.sizes = {width, height};
  const std::vector<Sample> plane = make_fluorescence(scene);
  const double before = peak_in_mebibytes();
  if (what == "write") {
    write_planes(target, plane, planes, type);
  } else {
    write_planes(target, plane, planes, type);
    const double written = peak_in_mebibytes();
    read_rows(target, planes, what == "read" ? uint16 : single);
    require(peak_in_mebibytes() >= written, "a peak fell");
  }
  const double after = peak_in_mebibytes();
  std::printf("%-14s %s %5zu MiB: %5.1f MiB, of which %.1f before it starts\n", what.c_str(),
              type == 0 ? "raw    " : "level 1", planes * plane_size >> 20U, after, before);
  return 0;
}

}  // namespace

int main(int count, char** arguments) {
  if (count == 4)
    return run_one(arguments[1], static_cast<unsigned>(std::stoul(arguments[2])),
                   std::stoi(arguments[3]));
  for (const int type : {0, 1}) {
    for (const unsigned planes : {16U, 256U}) {
      for (const char* const what : {"write", "read", "read as float"}) {
        run_apart(arguments[0], what, planes, type);
      }
    }
  }
}
