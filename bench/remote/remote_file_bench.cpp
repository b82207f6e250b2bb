// Writing a stack of 256 MiB by way of the remote facade, beside the direct road: time, and memory at the
// peak. The one copy that there is moves the elements into shared memory; a stack that is there already
// has none.
#include <sys/wait.h>
#include <unistd.h>
#include <vrelio/remote/file.h>
#include <vrelio/remote/stack_object.h>
#include <vrelio/stack/stack_imp.h>

#include <algorithm>
#include <atomic>
#include <boost/make_shared.hpp>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "container/contest.h"
#include "container/stack_shape.h"

namespace {

using namespace bench;

constexpr unsigned size = 256U << 20U;
constexpr int rounds = 5;

boost::shared_ptr<VStackImp> make_stack() {
  auto stack = boost::make_shared<VStackImp>(
      Ome::type_uint8, std::vector<unsigned>{1U << 16U, size >> 16U}, Ome::order_XYZTC);
  std::memset(stack->get_data_ptr(), 7, size);
  return stack;
}

void write_directly(const ScratchFile& target, const boost::shared_ptr<VStackImp>& stack) {
  VBFFile file(target.name(), VFile::mode_create);
  file->set_default_compression(0, 1);
  file->write_stack(stack.get(), 0);
  file->close();
}

void write_remotely(const ScratchFile& target, const boost::shared_ptr<VStackImp>& stack) {
  Remote::File file(target.path(), Remote::File::mode_create);
  file.write(boost::make_shared<Remote::StackObject>(stack), false);
}

// The work alone is timed: stacks are made, filled and dropped outside.
double seconds_to_write(const std::string& road) {
  const ScratchFile target("remote-" + std::to_string(::getpid()) + ".vbf");
  const boost::shared_ptr<VStackImp> stack = make_stack();
  if (road == "shared before") stack->share();
  return seconds_of([&] {
    if (road == "direct") {
      write_directly(target, stack);
    } else {
      write_remotely(target, stack);
    }
  });
}

double seconds_to_share() {
  const boost::shared_ptr<VStackImp> stack = make_stack();
  return seconds_of([&] { stack->share(); });
}

void compare_times() {
  const std::vector<std::string> roads = {"direct", "shared before", "not shared"};
  std::vector<double> best(roads.size(), 1e9);
  double sharing = 1e9;
  for (int round = 0; round < rounds; ++round) {
    for (std::size_t i = 0; i < roads.size(); ++i)
      best[i] = std::min(best[i], seconds_to_write(roads[i]));
    sharing = std::min(sharing, seconds_to_share());
  }
  for (std::size_t i = 0; i < roads.size(); ++i) {
    std::printf("write, %-14s %8.1f ms %6.2f of the direct road\n", roads[i].c_str(), best[i] * 1e3,
                best[i] / best[0]);
  }
  std::printf("share alone           %8.1f ms\n", sharing * 1e3);
}

// Memory that this process takes, in MiB; pages that it maps twice count once.
double memory_now() {
  std::ifstream rollup("/proc/self/smaps_rollup");
  std::string word;
  while (rollup >> word && word != "Pss:") continue;
  double kibibytes = 0;
  rollup >> kibibytes;
  return kibibytes / 1024.0;
}

// The most that was taken while it looked, again and again.
class MemoryWatch {
 public:
  MemoryWatch() : thread_([this] { look(); }) {}
  double peak() {
    is_over_ = true;
    thread_.join();
    return peak_;
  }

 private:
  void look() {
    while (!is_over_) peak_ = std::max(peak_, memory_now());
  }

  double peak_ = 0;
  std::atomic<bool> is_over_{false};
  std::thread thread_;
};

int tell_memory(const std::string& road) {
  const ScratchFile target("remote-memory-" + std::to_string(::getpid()) + ".vbf");
  const boost::shared_ptr<VStackImp> stack = make_stack();
  if (road == "shared before") stack->share();
  const double before = memory_now();
  MemoryWatch watch;
  if (road == "direct") {
    write_directly(target, stack);
  } else {
    write_remotely(target, stack);
  }
  std::printf("memory, %-14s %8.1f MiB before, %8.1f MiB at the peak\n", road.c_str(), before,
              watch.peak());
  return 0;
}

void run_apart(const char* program, const char* road) {
  std::fflush(stdout);
  const pid_t child = ::fork();
  if (child == 0) {
    ::execl(program, program, road, nullptr);
    ::_exit(1);
  }
  ::waitpid(child, nullptr, 0);
}

}  // namespace

int main(int count, char** arguments) {
  if (count == 2) return tell_memory(arguments[1]);
  compare_times();
  for (const char* const road : {"direct", "shared before", "not shared"})
    run_apart(arguments[0], road);
}
