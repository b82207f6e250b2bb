// A named block of memory that several processes map; docs/shared_memory.md.
#pragma once

#include <vrelio/export.h>

#include <boost/interprocess/mapped_region.hpp>
#include <boost/interprocess/shared_memory_object.hpp>
#include <string>

namespace Vrel {

/// A block of shared memory with an id by which other processes find it. The block holds the bytes
/// and nothing else: no header, no lock.
///
/// The object that made the block owns its name: the name is gone when this object is. Whoever has
/// opened the block by then keeps the bytes, until the last mapping is gone. A process that is
/// killed destroys nothing, so its blocks stay until somebody removes them by name: `vrel shm`.
/// A copy of the object in a forked process is that object too, and removes the name.
///
/// Sharing the bytes is safe as long as one side writes and no other side reads at that time.
///
/// What the system refuses travels as `boost::interprocess::interprocess_exception` with the
/// system's error number, and leaves nothing behind.
///
/// \code
/// Vrel::SharedMemory block(1000);                  // in one process
/// Vrel::SharedMemory same(std::string(block.id()));  // in another one, which was told the id
/// \endcode
class VRELIO_EXPORT SharedMemory {
 public:
  /// Make a block of zeros under a new name: a random UUID of 36 characters, in lower case.
  ///
  /// The memory is taken here: where there is not enough, this fails, not a later access. The
  /// permissions are those that Boost gives by default: others may read, only this user may open.
  /// \param size  bytes; 0 makes a name without memory.
  /// \throws boost::interprocess::interprocess_exception with the system's error, such as ENOSPC;
  /// boost::uuids::entropy_error where the system has no random numbers.
  explicit SharedMemory(unsigned int size);

  /// Open a block that exists, for reading and writing. Its name stays with who made it.
  /// \param id  its name. A text that came from elsewhere may be given as it is: what is no plain
  ///            name leads nowhere.
  /// \throws boost::interprocess::interprocess_exception with ENOENT if no block has this name,
  /// EINVAL for a text that is no name (empty, with a slash or a zero), EOVERFLOW for a block of
  /// 4 GiB or more, and whatever else the system refuses.
  explicit SharedMemory(const std::string& id);

  SharedMemory(const SharedMemory&) = delete;
  SharedMemory& operator=(const SharedMemory&) = delete;

  /// Unmaps the bytes, and removes the name if this object made the block.
  ~SharedMemory();

  /// The name of the block, with a zero at its end; valid as long as this object.
  const char* id() const { return shm.get_name(); }
  /// The first byte, at the beginning of a page; null if the size is 0.
  void* data() { return region.get_address(); }
  /// Bytes of the block.
  unsigned int size() const { return static_cast<unsigned int>(region.get_size()); }

 private:
  SharedMemory() = default;

  boost::interprocess::shared_memory_object shm;
  boost::interprocess::mapped_region region;
  bool created = false;
};

}  // namespace Vrel
