#include "lib/new_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <utility>

#include "lib/error_report.h"
#include "lib/interruption.h"

namespace Vrel::tool {

namespace {

constexpr const char* exists_already = "Output file exists already, --force replaces it!";
constexpr const char* not_created = "Could not create output file!";
constexpr const char* not_written = "Could not write!";

// Beside the target, so that renaming never copies; short, so that it fits wherever the target
// does.
std::string temporary_name(const std::string& path, unsigned attempt) {
  const std::string name =
      ".vrel-" + std::to_string(::getpid()) + '-' + std::to_string(attempt) + ".part";
  return std::filesystem::path(path).replace_filename(name).string();
}

bool is_unknown_call(int error) {
  return error == ENOSYS || error == EINVAL || error == EOPNOTSUPP;
}

// Fails with EEXIST where the target exists.
bool rename_without_replacing(const char* from, const char* to) {
  if (::renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE) == 0) return true;
  if (!is_unknown_call(errno)) return false;
  return ::link(from, to) == 0 && ::unlink(from) == 0;
}

}  // namespace

NewFile::NewFile(std::string path, bool replace) : path_(std::move(path)), replace_(replace) {
  check_target();
  create_temporary();
}

NewFile::~NewFile() {
  if (temporary_.empty()) return;
  const SignalPause pause;
  close_temporary();
  ::unlink(temporary_.c_str());
  set_temporary_file("");
}

// What would make the last step fail is better known before the long work.
void NewFile::check_target() const {
  struct stat status {};
  if (::lstat(path_.c_str(), &status) != 0) return;
  errno = S_ISDIR(status.st_mode) ? EISDIR : EEXIST;
  if (S_ISDIR(status.st_mode)) raise_output_error(path_, not_created);
  if (!replace_) raise_output_error(path_, exists_already);
}

void NewFile::create_temporary() {
  constexpr mode_t permissions = 0666;
  const SignalPause pause;
  for (unsigned attempt = 0; descriptor_ == -1; ++attempt) {
    temporary_ = temporary_name(path_, attempt);
    descriptor_ = ::open(temporary_.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, permissions);
    if (descriptor_ == -1 && errno != EEXIST) raise_output_error(path_, not_created);
  }
  set_temporary_file(temporary_);
}

void NewFile::close_temporary() {
  if (descriptor_ != -1) ::close(descriptor_);
  descriptor_ = -1;
}

bool NewFile::take_name() const {
  if (replace_) return ::rename(temporary_.c_str(), path_.c_str()) == 0;
  return rename_without_replacing(temporary_.c_str(), path_.c_str());
}

void NewFile::finish() {
  const int descriptor = descriptor_;
  descriptor_ = -1;
  // Some file systems tell only now that there is no space.
  if (::close(descriptor) != 0) raise_output_error(path_, not_written);
  const SignalPause pause;
  if (!take_name()) raise_output_error(path_, errno == EEXIST ? exists_already : not_created);
  set_temporary_file("");
  temporary_.clear();
}

}  // namespace Vrel::tool
