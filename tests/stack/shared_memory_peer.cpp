// The other process of the tests of shared memory.
//
//   create SIZE   make a block with byte i at position i, tell its id, keep it until the input ends
//   change ID     tell the size of a block and its bytes in one sum, then add 1 to each
//   full SIZE     make a block on a file system of 64 KiB; tell "made" or the system error, and how
//                 many names are left; "cannot" where the system gives no such file system
#include <vrelio/stack/shared_memory.h>

#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include <boost/interprocess/exceptions.hpp>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <numeric>
#include <string>

namespace {

unsigned char* bytes_of(Vrel::SharedMemory& block) {
  return static_cast<unsigned char*>(block.data());
}

void create(unsigned size) {
  Vrel::SharedMemory block(size);
  std::iota(bytes_of(block), bytes_of(block) + size, static_cast<unsigned char>(0));
  std::cout << block.id() << std::endl;
  std::cin.get();
}

void change(const std::string& id) {
  Vrel::SharedMemory block(id);
  unsigned char* const bytes = bytes_of(block);
  const unsigned sum = std::accumulate(bytes, bytes + block.size(), 0u);
  std::cout << block.size() << ' ' << sum << std::endl;
  for (unsigned i = 0; i < block.size(); ++i) ++bytes[i];
}

bool write_to(const char* file, const std::string& text) {
  return (std::ofstream(file) << text << std::flush).good();
}

// Inside, this process is the administrator, of what only it sees.
bool enter_private_system() {
  const std::string user = "0 " + std::to_string(::getuid()) + " 1";
  const std::string group = "0 " + std::to_string(::getgid()) + " 1";
  return ::unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0 && write_to("/proc/self/setgroups", "deny") &&
         write_to("/proc/self/uid_map", user) && write_to("/proc/self/gid_map", group);
}

bool enter_small_file_system() {
  return enter_private_system() &&
         ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
         ::mount("tmpfs", "/dev/shm", "tmpfs", 0, "size=64k") == 0;
}

std::string outcome_of_making(unsigned size) {
  try {
    const Vrel::SharedMemory block(size);
    return "made";
  } catch (const boost::interprocess::interprocess_exception& error) {
    return std::to_string(error.get_native_error());
  }
}

void make_in_small_file_system(unsigned size) {
  if (!enter_small_file_system()) {
    std::cout << "cannot" << std::endl;
    return;
  }
  const std::string outcome = outcome_of_making(size);
  const std::filesystem::directory_iterator names("/dev/shm");
  std::cout << outcome << ' ' << std::distance(begin(names), end(names)) << std::endl;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  const std::string verb = argv[1];
  const std::string argument = argv[2];
  if (verb == "change") {
    change(argument);
  } else if (verb == "create") {
    create(static_cast<unsigned>(std::stoul(argument)));
  } else if (verb == "full") {
    make_in_small_file_system(static_cast<unsigned>(std::stoul(argument)));
  }
  return 0;
}
