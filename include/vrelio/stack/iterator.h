// Walks through a region of a stack, element by element, as any numeric type.
#pragma once

#include <vrelio/export.h>
#include <vrelio/prop/kind.h>
#include <vrelio/stack/region.h>
#include <vrelio/stack/stack.h>

#include <complex>
#include <cstddef>
#include <memory>
#include <type_traits>

// The element types in the order of the slots: each real type, then the complex type made of it.
// clang-format off
#define VRELIO_STACK_TYPES(X)                                 \
  X(unsigned long long) X(std::complex<unsigned long long>)   \
  X(unsigned int) X(std::complex<unsigned int>)               \
  X(unsigned short) X(std::complex<unsigned short>)           \
  X(unsigned char) X(std::complex<unsigned char>)             \
  X(long long) X(std::complex<long long>)                     \
  X(int) X(std::complex<int>)                                 \
  X(short) X(std::complex<short>)                             \
  X(char) X(std::complex<char>)                               \
  X(double) X(std::complex<double>)                           \
  X(float) X(std::complex<float>)
// clang-format on

/// What all iterators have, whatever the type of the elements.
///
/// The axes are walked in the order of the region's permutation, its first axis fastest; axes that it
/// does not name are held. An iterator points into the buffer of its stack and does not keep it:
/// the stack has to outlive it and must not be resized or shared meanwhile. `at_end` is asked before each
/// access.
///
/// Slots 0 to 19 are `void write(T value)`, slots 20 to 39 `void read(T& value) const`, for the types of
/// `VRELIO_STACK_TYPES` in that order. Both convert as `vrel_dt_convert` does. Of a complex value for a real
/// element the real part counts; a real one for a complex element has no imaginary part.
///
/// ```cpp
/// const auto it = VStackInterface::make_iterator(&stack, region);
/// for (; !it->at_end; it->advance()) {
///   double value;
///   it->read(value);
/// }
/// ```
///
/// Intended: over a region without axes, `advance` does nothing, so that a walk does not end by itself;
/// StackIteratorTest.ARegionWithoutAxesHasOneElementAndNoEnd.
class VRELIO_EXPORT VStackInterface::iterator_base {
 public:
  /// The first element of a region.
  /// \param stack  the stack.
  /// \param region  what to walk; its type does not count.
  /// \throws VrelError "Cannot create iterator over region exceeding the stack!" (-15), and as
  ///   `VStackRegion::validate`.
  iterator_base(const VStackInterface* stack, const VStackRegion& region);
  iterator_base(const iterator_base&) = delete;
  iterator_base& operator=(const iterator_base&) = delete;

#define VRELIO_DECLARE_WRITE(type) virtual void write(type value) = 0;
#define VRELIO_DECLARE_READ(type) virtual void read(type& value) const = 0;
  /// \cond
  VRELIO_STACK_TYPES(VRELIO_DECLARE_WRITE)
  VRELIO_STACK_TYPES(VRELIO_DECLARE_READ)
  /// \endcond
#undef VRELIO_DECLARE_WRITE
#undef VRELIO_DECLARE_READ

  /// Slot 40.
  virtual ~iterator_base();

  /// Write a value of another name of an integer type.
  template <class T, class = std::enable_if_t<!std::is_same_v<T, Vrel::prop_type<T>>>>
  void write(T value) {
    write(static_cast<Vrel::prop_type<T>>(value));
  }
  /// Read into a variable of another name of an integer type.
  template <class T, class = std::enable_if_t<!std::is_same_v<T, Vrel::prop_type<T>>>>
  void read(T& value) const {
    Vrel::prop_type<T> converted;
    read(converted);
    value = static_cast<T>(converted);
  }

  /// Go to the next element, or to the end.
  void advance() {
    for (unsigned int axis = 0; axis < rank; ++axis) {
      if (++counters[axis] < ends[axis]) {
        pointer += strides[axis];
        return;
      }
      if (axis + 1 == rank) {
        at_end = true;
        return;
      }
      pointer -= static_cast<std::ptrdiff_t>(ends[axis] - 1) * strides[axis];
      counters[axis] = 0;
    }
  }

  unsigned int rank = 0;                     ///< axes that are walked
  std::unique_ptr<unsigned int[]> counters;  ///< index on each of them; the other two lie behind it
  unsigned int* ends = nullptr;              ///< number of indices on each of them
  int* strides = nullptr;                    ///< bytes from one element to the next on each of them
  unsigned char* pointer = nullptr;          ///< the current element
  bool at_end = true;                        ///< whether all elements have been passed
};

/// Reads the elements of a stack of `T`, one of the 20 element types. Writing through it raises "Cannot write
/// through an iterator for reading!" (-1), whatever the value.
template <class T>
class VRELIO_EXPORT VStackInterface::const_iterator : public VStackInterface::iterator_base {
 public:
  /// The first element of a region.
  /// \throws VrelError "Invalid iterator type!" (-1) if the elements are of another type, and as the
  ///   constructor of `iterator_base`.
  const_iterator(const VStackInterface* stack, const VStackRegion& region);

#define VRELIO_DECLARE_WRITE(type) void write(type value) override;
#define VRELIO_DECLARE_READ(type) void read(type& value) const override;
  /// \cond
  using iterator_base::read;
  using iterator_base::write;
  VRELIO_STACK_TYPES(VRELIO_DECLARE_WRITE)
  VRELIO_STACK_TYPES(VRELIO_DECLARE_READ)
  /// \endcond
#undef VRELIO_DECLARE_READ
};

/// Reads and writes the elements of a stack of `T`, one of the 20 element types.
template <class T>
class VRELIO_EXPORT VStackInterface::iterator : public VStackInterface::const_iterator<T> {
 public:
  /// The first element of a region.
  /// \throws VrelError as the constructor of `const_iterator`.
  iterator(VStackInterface* stack, const VStackRegion& region);

  /// \cond
  using iterator_base::write;
  VRELIO_STACK_TYPES(VRELIO_DECLARE_WRITE)
  /// \endcond
#undef VRELIO_DECLARE_WRITE
};

#define VRELIO_DECLARE_ITERATORS(type)                                       \
  extern template class VRELIO_EXPORT VStackInterface::const_iterator<type>; \
  extern template class VRELIO_EXPORT VStackInterface::iterator<type>;
VRELIO_STACK_TYPES(VRELIO_DECLARE_ITERATORS)
#undef VRELIO_DECLARE_ITERATORS
