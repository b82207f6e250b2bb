// A file in memory, attached to a VFile.
#pragma once

#include <sys/mman.h>
#include <unistd.h>
#include <vrelio/file/file.h>

#include <cstddef>
#include <stdexcept>
#include <string>

namespace Vrel::testing {

class AttachedFile {
 public:
  explicit AttachedFile(const std::string& content = "")
      : descriptor_(memfd_create("vrelio", MFD_CLOEXEC)) {
    if (descriptor_ == -1) throw std::runtime_error("no file in memory");
    set_content(content);
    void* handle = VFile::to_handle(descriptor_);
    file_.attach(handle, VFile::mode_modify);
  }
  ~AttachedFile() { close(descriptor_); }
  AttachedFile(const AttachedFile&) = delete;
  AttachedFile& operator=(const AttachedFile&) = delete;

  VFile& file() { return file_; }

  void set_content(const std::string& content) {
    const auto size = static_cast<ssize_t>(content.size());
    if (ftruncate(descriptor_, size) != 0 ||
        pwrite(descriptor_, content.data(), content.size(), 0) != size) {
      throw std::runtime_error("no content for the file in memory");
    }
  }

  std::string content() const {
    const off_t position = lseek(descriptor_, 0, SEEK_CUR);
    std::string content(static_cast<std::size_t>(lseek(descriptor_, 0, SEEK_END)), '\0');
    lseek(descriptor_, position, SEEK_SET);
    if (pread(descriptor_, content.data(), content.size(), 0) !=
        static_cast<ssize_t>(content.size())) {
      throw std::runtime_error("the file in memory has lost its content");
    }
    return content;
  }

 private:
  int descriptor_;
  VFile file_;
};

}  // namespace Vrel::testing
