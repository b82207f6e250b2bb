// One system file as a stream.
#pragma once

#include <vrelio/export.h>
#include <vrelio/file/file_access.h>
#include <vrelio/foundation/propstring.h>

#include <cstdint>

/// One open system file, unbuffered: every transfer is one system call wherever the kernel allows.
///
/// States: no file (mode -1), open by `open` (owned: closed by `close` and by the destructor) or by
/// `attach` (not owned: taken back with `detach`). A copy shares the handle without a count, so
/// only one of the copies may close it.
///
/// All of `tell`, `seek`, `read` and `write` raise VrelError "File not open!" (-1) without a file.
class VRELIO_EXPORT VFile : public VFileAccess {
 public:
  /// How a file is opened.
  enum mode : std::int32_t {
    mode_read = 0,    ///< read; the file must exist
    mode_create = 1,  ///< read and write; made anew or, once nobody else holds it, emptied
    mode_modify = 2   ///< read and write; the file must exist
  };
  /// What `get_mode` gives without a file.
  static constexpr mode mode_none = static_cast<mode>(-1);

  VFile() = default;
  /// \throws as `open`.
  VFile(const VPropstring& name, mode access);
  /// Shares the handle and its position.
  VFile(const VFile& other) = default;
  /// As copying; a file held until now is not closed.
  VFile& operator=(const VFile& other) = default;
  /// Slot 5. Closes a file got by `open`.
  virtual ~VFile();

  u64 tell() const override;
  /// The position of all ones moves to the end. Gives all ones where the system refuses; raises
  /// nothing then.
  u64 seek(u64 position) override;
  /// \throws VrelError "Failed reading %d bytes from file!" (-3) with the size and the system
  /// error, which is 0 at the end of the
  ///         file; the position is then wherever the system left it.
  void read(void* buffer, unsigned size) override;
  /// \throws VrelError "Failed writing %d bytes to file!" (-3) with the size and the system error.
  void write(const void* buffer, unsigned size) override;

  /// Open exclusively: while it is open, no other `open` of the file succeeds, in this process or
  /// another.
  ///
  /// After a failure the object has no file, and the system's file is as it was.
  /// \throws VrelError "File already open or attached!" (-1); "Invalid file mode when opening
  /// file." (-1);
  ///         "Could not open file!" (-1), also for a name that the system's encoding cannot
  ///         express.
  void open(const VPropstring& name, mode access);

  /// Use a handle that was opened elsewhere and stays its opener's; nothing is locked.
  /// \throws VrelError "File already open or attached!" (-1); "Invalid file mode when opening
  /// file." (-1).
  void attach(void*& handle, mode access);
  /// Give the handle back and be without a file. The handle of an opened file becomes the caller's
  /// to close.
  void* detach();
  /// \throws VrelError "File not opened with open(), cannot close." (-1) for an attached file,
  /// which stays.
  void close();

  /// Whether there is a file.
  bool is_open() const { return mode_ != mode_none; }
  /// The mode; `mode_none` without a file.
  mode get_mode() const { return mode_; }

  /// Working buffer size in bytes for the layers above; transfers of this class are never split by
  /// it. 4 MiB after construction.
  void set_chunk_size(unsigned size) { chunk_size_ = size; }
  /// The working buffer size.
  unsigned get_chunk_size() const { return chunk_size_; }

  /// Delete a file by name.
  /// \throws VrelError "Could not remove file." (-1) with the system error.
  static void remove(const VPropstring& name);

  /// The handle of a descriptor: null for -1, which is no file, else the descriptor plus 1.
  static void* to_handle(int descriptor);
  /// The descriptor of a handle; -1 for null.
  static int to_descriptor(void* handle);

 protected:
  /// \throws VrelError "File already open or attached!" (-1); "Invalid file mode when opening
  /// file." (-1).
  void check_can_take_file(mode access) const;

 private:
  int descriptor() const;

  void* handle_ = nullptr;
  bool owned_ = false;
  mode mode_ = mode_none;
  unsigned chunk_size_ = 0x400000;
};
