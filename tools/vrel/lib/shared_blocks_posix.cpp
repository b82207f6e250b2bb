// Linux: a block is a file in the folder that the C library has for shared memory.
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>
#include <vrelio/foundation/error.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>

#include "lib/shared_blocks.h"

namespace Vrel::tool {

namespace {

constexpr const char* block_folder = "/dev/shm";

// What tells files apart, whatever their names are where a process sees them.
using FileKey = std::pair<dev_t, ino_t>;

// A block by its file, to gather its processes.
using BlocksByFile = std::map<FileKey, SharedBlock*>;

[[noreturn]] void raise_system_error(const char* message, int error) {
  errno = error;
  throw VrelError(VrelError().do_oserr()("%s", message));
}

// Folders and processes come and go: what can no longer be read is left out.
template <class Use>
std::error_code for_each_name(const std::filesystem::path& folder, const Use& use) {
  std::error_code error;
  std::filesystem::directory_iterator entry(folder, error);
  while (!error && entry != std::filesystem::directory_iterator()) {
    use(entry->path().filename().string());
    entry.increment(error);
  }
  return error;
}

std::uint64_t age_of(const struct stat& status) {
  return static_cast<std::uint64_t>(std::max<std::time_t>(std::time(nullptr) - status.st_mtime, 0));
}

struct FoundBlock {
  FileKey file;
  SharedBlock block;
};

// Nothing where there is no block of this name; links are not followed, as when a block is opened.
std::optional<FoundBlock> find_block(const std::string& id) {
  struct stat status {};
  const std::string path = std::string(block_folder) + '/' + id;
  if (::lstat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
  const bool is_own = status.st_uid == ::geteuid();
  return FoundBlock{
      {status.st_dev, status.st_ino},
      {id, static_cast<std::uint64_t>(status.st_size), status.st_uid, is_own, age_of(status), {}}};
}

std::vector<FoundBlock> find_all_blocks() {
  std::vector<FoundBlock> found;
  const std::error_code error = for_each_name(block_folder, [&](const std::string& name) {
    if (!is_block_id(name)) return;
    if (std::optional<FoundBlock> block = find_block(name)) found.push_back(*std::move(block));
  });
  if (error) raise_system_error("Could not list shared memory!", error.value());
  return found;
}

void note(const BlocksByFile& blocks, const FileKey& file, int process) {
  const auto found = blocks.find(file);
  if (found == blocks.end()) return;
  std::vector<int>& processes = found->second->processes;
  if (processes.empty() || processes.back() != process) processes.push_back(process);
}

// A line begins with: addresses, permissions, offset, device in hexadecimal, number of the file.
void note_mapped(const BlocksByFile& blocks, int process) {
  std::ifstream maps("/proc/" + std::to_string(process) + "/maps");
  for (std::string line; std::getline(maps, line);) {
    unsigned major_number = 0;
    unsigned minor_number = 0;
    unsigned long inode = 0;
    const int fields =
        std::sscanf(line.c_str(), "%*s %*s %*s %x:%x %lu", &major_number, &minor_number, &inode);
    if (fields == 3) note(blocks, {makedev(major_number, minor_number), inode}, process);
  }
}

// Whoever makes or opens a block holds its file too, also before it is mapped and without bytes.
void note_open(const BlocksByFile& blocks, int process) {
  const std::string folder = "/proc/" + std::to_string(process) + "/fd";
  for_each_name(folder, [&](const std::string& descriptor) {
    struct stat status {};
    if (::stat((folder + '/' + descriptor).c_str(), &status) != 0) return;
    note(blocks, {status.st_dev, status.st_ino}, process);
  });
}

// Where not even this process is seen, nothing can be said about any.
std::vector<int> all_processes() {
  std::vector<int> processes;
  for_each_name("/proc", [&](const std::string& name) {
    int process = 0;
    const char* const end = name.data() + name.size();
    const std::from_chars_result result = std::from_chars(name.data(), end, process);
    if (result.ec == std::errc() && result.ptr == end) processes.push_back(process);
  });
  std::sort(processes.begin(), processes.end());
  if (!std::binary_search(processes.begin(), processes.end(), ::getpid())) {
    raise_system_error("Could not list processes!", ENOENT);
  }
  return processes;
}

void note_processes(std::vector<FoundBlock>& found) {
  if (found.empty()) return;
  BlocksByFile blocks;
  for (FoundBlock& each : found) blocks[each.file] = &each.block;
  for (const int process : all_processes()) {
    note_mapped(blocks, process);
    note_open(blocks, process);
  }
}

FoundBlock get_block(const std::string& id) {
  std::optional<FoundBlock> found = find_block(id);
  if (!found) raise_system_error("No such shared memory block!", ENOENT);
  return *found;
}

void check_may_be_removed(const FoundBlock& found) {
  if (!found.block.is_own) {
    raise_system_error("Shared memory block belongs to another user, --force removes it!", EPERM);
  }
  std::vector<FoundBlock> checked{found};
  note_processes(checked);
  const std::vector<int>& processes = checked.front().block.processes;
  if (processes.empty()) return;
  errno = EBUSY;
  throw VrelError(VrelError().do_oserr()(
      "Shared memory block is in use by process %d, --force removes its name!", processes.front()));
}

}  // namespace

std::vector<SharedBlock> list_shared_blocks() {
  std::vector<FoundBlock> found = find_all_blocks();
  note_processes(found);
  std::vector<SharedBlock> blocks(found.size());
  std::transform(found.begin(), found.end(), blocks.begin(),
                 [](FoundBlock& each) { return std::move(each.block); });
  std::sort(blocks.begin(), blocks.end(),
            [](const SharedBlock& a, const SharedBlock& b) { return a.id < b.id; });
  return blocks;
}

void remove_shared_block(const std::string& id, bool force) {
  if (!is_block_id(id)) throw VrelError(VrelError()("No id of a shared memory block!"));
  const FoundBlock found = get_block(id);
  if (!force) check_may_be_removed(found);
  if (::shm_unlink(('/' + id).c_str()) != 0) {
    raise_system_error("Could not remove shared memory block!", errno);
  }
}

}  // namespace Vrel::tool
