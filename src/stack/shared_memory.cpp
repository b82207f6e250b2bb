#include <vrelio/stack/shared_memory.h>

#include <boost/interprocess/exceptions.hpp>
#include <boost/uuid/random_generator.hpp>
#include <boost/uuid/uuid_io.hpp>
#include <cerrno>
#include <limits>

#include "stack/reserve_space_internal.h"

namespace Vrel {

namespace {

namespace interprocess = boost::interprocess;

[[noreturn]] void refuse(int system_error) {
  throw interprocess::interprocess_exception(interprocess::error_info(system_error));
}

std::string new_id() {
  boost::uuids::random_generator generate;
  return boost::uuids::to_string(generate());
}

// Names go to the system with a slash in front and end at the first zero; neither may come from the
// text itself.
void check_is_name(const std::string& id) {
  if (id.empty() || id.find_first_of(std::string("/\0", 2)) != std::string::npos) refuse(EINVAL);
}

// A new object has no memory until it is written to, and writing to a mapping without memory behind
// it ends the process.
void take_memory(interprocess::shared_memory_object& shm, unsigned int size) {
  shm.truncate(size);
  const int error = detail::reserve_space(shm.get_mapping_handle().handle, size);
  if (error != 0) refuse(error);
}

unsigned int size_of(const interprocess::shared_memory_object& shm) {
  interprocess::offset_t size = 0;
  if (!shm.get_size(size)) refuse(errno);
  if (size > std::numeric_limits<unsigned int>::max()) refuse(EOVERFLOW);
  return static_cast<unsigned int>(size);
}

// The system maps no region without bytes.
interprocess::mapped_region map(const interprocess::shared_memory_object& shm, unsigned int size) {
  if (size == 0) return {};
  return {shm, interprocess::read_write, 0, size};
}

}  // namespace

// By way of an empty object, so that the destructor cleans up if a step fails.
SharedMemory::SharedMemory(unsigned int size) : SharedMemory() {
  shm = interprocess::shared_memory_object(interprocess::create_only, new_id().c_str(),
                                           interprocess::read_write);
  created = true;
  take_memory(shm, size);
  region = map(shm, size);
}

SharedMemory::SharedMemory(const std::string& id) : SharedMemory() {
  check_is_name(id);
  shm = interprocess::shared_memory_object(interprocess::open_only, id.c_str(),
                                           interprocess::read_write);
  region = map(shm, size_of(shm));
}

SharedMemory::~SharedMemory() {
  region = interprocess::mapped_region();
  if (created) interprocess::shared_memory_object::remove(shm.get_name());
}

}  // namespace Vrel
