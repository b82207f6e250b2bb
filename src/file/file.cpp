#include <vrelio/file/file.h>

#include <cstdint>
#include <optional>

#include "file/system_file_internal.h"
#include "foundation/file_name_internal.h"
#include "foundation/raise_internal.h"

using namespace Vrel::detail;

namespace {

std::optional<OpenMode> open_mode(VFile::mode access) {
  switch (access) {
    case VFile::mode_read:
      return OpenMode::read;
    case VFile::mode_create:
      return OpenMode::create;
    case VFile::mode_modify:
      return OpenMode::modify;
  }
  return std::nullopt;
}

}  // namespace

VFile::VFile(const VPropstring& name, mode access) { open(name, access); }

VFile::~VFile() {
  if (owned_ && handle_ != nullptr) system_close(to_descriptor(handle_));
}

void VFile::check_can_take_file(mode access) const {
  if (is_open()) raise(id_plain, "File already open or attached!");
  if (!open_mode(access)) raise(id_plain, "Invalid file mode when opening file.");
}

int VFile::descriptor() const {
  if (!is_open()) raise(id_plain, "File not open!");
  return to_descriptor(handle_);
}

void VFile::open(const VPropstring& name, mode access) {
  check_can_take_file(access);
  const std::optional<std::string> system_name = to_system_name(name);
  const int descriptor = system_name ? system_open(*system_name, *open_mode(access)) : -1;
  if (descriptor == -1) raise(id_plain, "Could not open file!");
  handle_ = to_handle(descriptor);
  owned_ = true;
  mode_ = access;
}

void VFile::attach(void*& handle, mode access) {
  check_can_take_file(access);
  handle_ = handle;
  owned_ = false;
  mode_ = access;
}

void* VFile::detach() {
  void* const handle = handle_;
  handle_ = nullptr;
  mode_ = mode_none;
  return handle;
}

void VFile::close() {
  if (!is_open()) return;
  if (!owned_) raise(id_plain, "File not opened with open(), cannot close.");
  system_close(to_descriptor(detach()));
}

u64 VFile::tell() const { return system_move(descriptor(), 0, MoveFrom::current); }

u64 VFile::seek(u64 position) {
  if (position == no_position) return system_move(descriptor(), 0, MoveFrom::end);
  return system_move(descriptor(), position, MoveFrom::start);
}

void VFile::read(void* buffer, unsigned size) {
  if (!system_read(descriptor(), buffer, size)) {
    raise_oserr(id_file_system, "Failed reading %d bytes from file!", static_cast<int>(size));
  }
}

void VFile::write(const void* buffer, unsigned size) {
  if (!system_write(descriptor(), buffer, size)) {
    raise_oserr(id_file_system, "Failed writing %d bytes to file!", static_cast<int>(size));
  }
}

void VFile::remove(const VPropstring& name) {
  const std::optional<std::string> system_name = to_system_name(name);
  if (!system_name) raise(id_plain, "Could not remove file.");
  if (!system_remove(*system_name)) raise_oserr(id_plain, "Could not remove file.");
}

void* VFile::to_handle(int descriptor) {
  // NOLINTNEXTLINE(performance-no-int-to-ptr): a handle is no address
  return reinterpret_cast<void*>(static_cast<std::intptr_t>(descriptor) + 1);
}

int VFile::to_descriptor(void* handle) {
  return static_cast<int>(reinterpret_cast<std::intptr_t>(handle) - 1);
}
