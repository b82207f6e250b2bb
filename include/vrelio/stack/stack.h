// A stack with its elements in memory, as it is used.
#pragma once

#include <vrelio/export.h>
#include <vrelio/ome/types.h>
#include <vrelio/stack/region.h>
#include <vrelio/stack/stack_info.h>

#include <boost/shared_ptr.hpp>
#include <vector>

/// A description together with all elements in one buffer: axis 0 fastest, no padding, a complex element as
/// real part and imaginary part.
///
/// The order of the virtual functions is part of the binary interface.
class VRELIO_EXPORT VStackInterface : public virtual VStackInfoInterface {
 public:
  class iterator_base;
  template <class T>
  class const_iterator;
  template <class T>
  class iterator;

  /// Slot 0. Become a region of a stack, of which a copy is made.
  ///
  /// The description is that of `create(source, region)`. Elements are converted as by `vrel_dt_convert`; of
  /// complex ones that become real the real part is taken. What lies outside the source is 0, where a
  /// part of the region lies inside; where none does, the buffer stays as resizing left it.
  /// \param source  the stack; it may be this one.
  /// \param region  the part of it, the order of the axes and the element type.
  /// \throws VrelError as `create`, and "Invalid type!" (-1) for elements that are no numbers.
  virtual void copy(const VStackInterface* source, const VStackRegion& region) = 0;
  /// Slot 1. Become a copy of a stack.
  /// \param source  the stack; it may be this one.
  /// \param type  data type id of the copy; 0 for that of the source.
  virtual void copy(const VStackInterface* source, int type) = 0;
  /// Slot 2. Become one element of no type, without a buffer.
  virtual void destroy() = 0;
  /// Slot 3. The first element; valid until the stack is resized, shared or destroyed.
  virtual const unsigned char* get_data_ptr() const = 0;
  /// Slot 4. The first element; see the other form.
  virtual unsigned char* get_data_ptr() = 0;
  /// Slot 5. Set type and sizes. Elements stay where they are in the buffer; new ones are 0.
  /// \param type  pixel type; "bit" is none of a stack.
  /// \param sizes  elements per axis.
  /// \throws std::invalid_argument "Unsupported stack type", and as `create`.
  virtual void resize(Ome::Type type, const std::vector<unsigned int>& sizes) = 0;
  /// Slot 6. Whether the buffer is a block of shared memory.
  virtual bool is_shared() const = 0;
  /// Slot 7. Move the buffer into a block of shared memory, if it is not in one.
  ///
  /// The buffer cannot be resized from then on, and pointers to it are no longer valid.
  /// \return the id of the block, for the constructor of `Vrel::SharedMemory`; valid as long as the stack.
  virtual const char* share() const = 0;

  /// An iterator of the type of the stack's elements.
  /// \param stack  the stack, which has to outlive the iterator.
  /// \param region  what to walk; its type does not count.
  /// \throws VrelError "Invalid type!" (-1) for elements that are no numbers, and as the constructor of
  ///   `iterator_base`.
  static boost::shared_ptr<iterator_base> make_iterator(VStackInterface* stack,
                                                        const VStackRegion& region);
  /// An iterator for reading; see the other form.
  static boost::shared_ptr<iterator_base> make_iterator(const VStackInterface* stack,
                                                        const VStackRegion& region);

  ~VStackInterface() override;

 protected:
  /// \cond
  VStackInterface() = default;
  VStackInterface(const VStackInterface&) = default;
  VStackInterface& operator=(const VStackInterface&) = default;
  /// \endcond
};
