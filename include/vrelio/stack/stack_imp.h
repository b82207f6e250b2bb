// A stack in ordinary or in shared memory.
#pragma once

#include <vrelio/export.h>
#include <vrelio/ome/types.h>
#include <vrelio/stack/remote_stack.h>
#include <vrelio/stack/shared_memory.h>
#include <vrelio/stack/stack.h>
#include <vrelio/stack/stack_info_imp.h>

#include <boost/shared_ptr.hpp>
#include <vector>

namespace Vrel::detail {
class ByteBuffer;
}

/// A stack whose elements lie in memory of this process, or after `share` in a block of shared memory.
///
/// The copy constructor makes a stack with a description of its own on the same elements: a write through
/// one is seen through the other, until one of them is resized or shared, which takes its elements
/// along. `copy` makes an independent stack. Stacks on the same elements may be destroyed by different
/// threads.
///
/// ```cpp
/// VStackImp stack(Ome::type_uint16, {512, 512, 16}, Ome::order_XYZTC);
/// VStackImp plane(0);
/// VStackRegion region;
/// region.create(&stack, 0);
/// region.from[2] = 5;
/// region.to[2] = 6;
/// region.permutation = {0, 1};
/// plane.copy(&stack, region);
/// ```
class VRELIO_EXPORT VStackImp : public VStackInterface, public VStackInfoImp {
 public:
  /// A stack of no type, of size 0 along each axis.
  /// \param rank  number of axes.
  explicit VStackImp(unsigned int rank);
  /// A stack of these sizes whose elements are 0.
  /// \param type  pixel type; "bit" is none of a stack.
  /// \param sizes  elements per axis.
  /// \param order  letters of the axes.
  /// \throws std::invalid_argument "Unsupported stack type", and as `create`.
  VStackImp(Ome::Type type, const std::vector<unsigned int>& sizes, Ome::DimensionOrder order);
  /// A stack as `stack` describes it, on its elements, which move into shared memory if they are not
  /// there yet.
  /// \throws std::runtime_error "Cannot resize shared data" for a block that is smaller than the
  ///   description asks for; boost::interprocess::interprocess_exception for an id that names no block; as
  ///   `VStackInfoImp(const Remote::Stack&)`.
  explicit VStackImp(const Remote::Stack& stack);
  /// A stack on the elements of `other`.
  VStackImp(const VStackImp& other);
  VStackImp& operator=(const VStackImp&) = delete;
  ~VStackImp() override;

  /// Become a stack of these sizes. Elements stay where they are in the buffer; new ones are 0.
  /// \throws VrelError (-1) "Unknown type of elements" for elements of type 0, "The size increases the
  ///   maximum size" if 32 bits do not hold the bytes, "Out of memory".
  /// \throws std::runtime_error "Cannot resize shared data" after `share`. Of all these the description has
  ///   changed and the buffer has not.
  void create(const std::vector<unsigned int>& sizes, int type) override;
  void create(const VStackInfoInterface* info, int type) override;
  void create(const VStackInfoInterface* info, const VStackRegion& region) override;

  void copy(const VStackInterface* source, const VStackRegion& region) override;
  void copy(const VStackInterface* source, int type) override;
  void destroy() override;
  const unsigned char* get_data_ptr() const override;
  unsigned char* get_data_ptr() override;
  void resize(Ome::Type type, const std::vector<unsigned int>& sizes) override;
  bool is_shared() const override { return data_.shared != nullptr; }
  const char* share() const override;

  /// Bytes of the buffer; less than `get_size(0)` after an operation that failed.
  u64 get_data_size() const;

 private:
  // At most one is set; none holds no bytes.
  struct Holder {
    boost::shared_ptr<Vrel::detail::ByteBuffer> local;
    boost::shared_ptr<Vrel::SharedMemory> shared;
  };

  void resize();
  void resize_local(std::size_t size);
  void copy_elements(const VStackInterface& source, const VStackRegion& region);

  mutable Holder data_;
};
