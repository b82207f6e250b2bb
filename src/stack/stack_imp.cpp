#include <vrelio/foundation/data_type.h>
#include <vrelio/stack/stack_imp.h>

#include <algorithm>
#include <boost/make_shared.hpp>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <stdexcept>
#include <string>

#include "foundation/raise_internal.h"
#include "stack/byte_buffer_internal.h"

using namespace Vrel::detail;

namespace {

[[noreturn]] void raise_shared() { throw std::runtime_error("Cannot resize shared data"); }

}  // namespace

VStackImp::VStackImp(unsigned int rank) : VStackInfoImp(rank) {}

VStackImp::VStackImp(Ome::Type type, const std::vector<unsigned int>& sizes,
                     Ome::DimensionOrder order)
    : VStackInfoImp(type, sizes, order) {
  resize();
}

VStackImp::VStackImp(const Remote::Stack& stack) : VStackInfoImp(stack) {
  const std::string id = const_cast<Remote::Stack&>(stack).share();
  data_.shared = boost::make_shared<Vrel::SharedMemory>(id);
  if (get_data_size() < get_size(0)) raise_shared();
}

VStackImp::VStackImp(const VStackImp& other)
    : VStackInfoInterface(other),
      VStackInterface(other),
      VStackInfoImp(other),
      data_(other.data_) {}

VStackImp::~VStackImp() = default;

void VStackImp::create(const std::vector<unsigned int>& sizes, int type) {
  VStackInfoImp::create(sizes, type);
  resize();
}

void VStackImp::create(const VStackInfoInterface* info, int type) {
  VStackInfoImp::create(info, type);
  resize();
}

void VStackImp::create(const VStackInfoInterface* info, const VStackRegion& region) {
  VStackInfoImp::create(info, region);
  resize();
}

void VStackImp::resize(Ome::Type type, const std::vector<unsigned int>& sizes) {
  set_type(Ome::get_data_type(type));
  set_sizes(sizes);
  resize();
}

void VStackImp::resize() {
  const std::size_t count = get_number_of_elements();
  const auto element_size = static_cast<std::size_t>(vrel_dt_get_size(get_dt()));
  if (count != 0 && element_size == 0) raise(id_plain, "Unknown type of elements");
  if (count * element_size > std::numeric_limits<unsigned int>::max())
    raise(id_plain, "The size increases the maximum size");
  if (data_.shared) raise_shared();
  try {
    resize_local(count * element_size);
  } catch (const std::bad_alloc&) {
    raise(id_plain, "Out of memory");
  }
}

// Stacks on the same elements keep a buffer that fits their descriptions.
void VStackImp::resize_local(std::size_t size) {
  const std::size_t old_size = get_data_size();
  if (size == old_size) return;
  const auto buffer = boost::make_shared<ByteBuffer>(size);
  const std::size_t kept = std::min(size, old_size);
  if (kept != 0) std::memcpy(buffer->data(), data_.local->data(), kept);
  data_.local = buffer;
}

void VStackImp::destroy() {
  VStackInfoImp::create(std::vector<unsigned int>(), 0);
  data_ = Holder();
}

const unsigned char* VStackImp::get_data_ptr() const {
  if (data_.shared) return static_cast<const unsigned char*>(data_.shared->data());
  return data_.local ? data_.local->data() : nullptr;
}

unsigned char* VStackImp::get_data_ptr() {
  return const_cast<unsigned char*>(static_cast<const VStackImp*>(this)->get_data_ptr());
}

u64 VStackImp::get_data_size() const {
  if (data_.shared) return data_.shared->size();
  return data_.local ? data_.local->size() : 0;
}

const char* VStackImp::share() const {
  if (!data_.shared) {
    const auto size = static_cast<unsigned int>(get_data_size());
    const auto block = boost::make_shared<Vrel::SharedMemory>(size);
    if (size != 0) std::memcpy(block->data(), get_data_ptr(), size);
    data_.shared = block;
    data_.local.reset();
  }
  return data_.shared->id();
}
