// Arrays of property values: a shape, and elements in the order of the first index running fastest.
#pragma once

#include <vrelio/export.h>
#include <vrelio/prop/prop.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

class VPropstruct;

/// The shape of a property array and all arithmetic of its indices, without knowing its elements.
///
/// Where a position has up to four indices, `not_given` marks the first that is left out; a single one
/// is a position along a row. Sizes and positions are lists of one number per dimension, the fastest
/// first.
class VRELIO_EXPORT VProparrayBase {
 public:
  /// One number per dimension, the fastest first.
  using index_list = std::vector<unsigned int>;

  /// "Not given", for indices that can be left out.
  static constexpr unsigned int not_given = 0xFFFFFFFF;

  /// What `set_size` does where shape and number of elements differ.
  enum set_mode : int {
    set_mode_shape = 0,    ///< store the shape and leave the elements
    set_mode_checked = 1,  ///< raise an error
    set_mode_resize = 2,   ///< add or remove elements at the end
    set_mode_clear = 3     ///< replace all elements by new ones, also where nothing differs
  };

  /// Slot 1. Number of elements.
  virtual unsigned int count() const = 0;
  /// Slot 2. Set the number of elements and leave the shape. New elements are 0, empty or without
  /// content.
  /// \param n  the number.
  /// \param clear  whether all elements are replaced by new ones.
  virtual void resize(unsigned int n, bool clear) = 0;

  /// Number of dimensions of `get_size(true)`.
  unsigned int get_rank() const;
  /// The shape. Without a stored shape it is a row of all elements.
  /// \param check  whether a stored shape that does not fit the elements is corrected, where it is a row
  ///   or of one dimension, or else refused.
  /// \throws VrelError "Invalid size vector in property array!" (-1).
  index_list get_size(bool check) const;
  /// Set the shape; an empty one stands for a row of all elements.
  /// \throws VrelError "Invalid size set!" (-1) with `set_mode_checked` if the number of elements is
  ///   another; "Property array too large!" (-1) if the shape has more elements than can be counted.
  ///   Nothing has changed then.
  void set_size(const index_list& size, set_mode mode);
  /// Set the shape; see the other form.
  void set_size(unsigned int i, unsigned int j, unsigned int k, unsigned int l, set_mode mode);

  /// The place of a position in the sequence of elements.
  /// \throws VrelError (-1) "Input rank '%d' too high (> '%d')!", "Input rank '%d' too low (< '%d')!" or
  ///   "Index %d out of bounds! (%d >= %d)!".
  unsigned int get_idx(const index_list& pos) const;
  /// The place of a position in the sequence of elements. With `grow` the array grows to it:
  /// in its last dimension, and where no shape with elements is stored in every one. A position may have
  /// more dimensions than the array, which from then on has those as well, with one element along them.
  /// \throws VrelError as the other form, and "Property array too large!" (-1). Nothing has changed
  ///   then.
  unsigned int get_idx(const index_list& pos, bool grow);
  /// The place of a position in the sequence of elements; see the form with a list.
  unsigned int get_idx(unsigned int i, unsigned int j, unsigned int k, unsigned int l) const;
  /// The place of a position in the sequence of elements; see the form with a list.
  unsigned int get_idx(unsigned int i, unsigned int j, unsigned int k, unsigned int l, bool grow);
  /// The position of a place in the sequence of elements. What is too large shows in the last index.
  ///
  /// Intended: without a stored shape the position is (1, idx);
  /// ProparrayTest.APositionWithoutAShapeHasAOneInFront.
  index_list get_pos(unsigned int idx) const;

  /// Number of elements of a shape; 0 for the empty one.
  /// \throws VrelError "Property array too large!" (-1) if 32 bits do not hold it.
  static unsigned int size(const index_list& shape);
  /// The shape of up to four sizes; a single one is that of a row.
  static index_list val2size(unsigned int i, unsigned int j, unsigned int k, unsigned int l);
  /// The position of up to four indices; a single one is along a row.
  static index_list val2pos(unsigned int i, unsigned int j, unsigned int k, unsigned int l);
  /// The shape of `n` sizes, as they are.
  static index_list ptr2size(unsigned int n, const unsigned int* values);
  /// The position of `n` indices, as they are.
  static index_list ptr2pos(unsigned int n, const unsigned int* values);

  std::uint64_t userbits = 0;  ///< free for the program; bit 0 marks an array of texts in XML

 protected:
  VProparrayBase() = default;
  /// \cond
  VProparrayBase(const VProparrayBase&) = default;
  VProparrayBase(VProparrayBase&&) noexcept = default;
  VProparrayBase& operator=(const VProparrayBase&) = default;
  VProparrayBase& operator=(VProparrayBase&&) noexcept = default;
  ~VProparrayBase() = default;
  /// \endcond

 private:
  index_list size_;  // empty for a row of all elements
};

/// Reserve room for `n` values; they are moved and not copied.
VRELIO_EXPORT void vrel_prop_reserve(std::vector<VProp>& values, unsigned int n);
/// Reserve room for `n` fields; they are moved and not copied.
VRELIO_EXPORT void vrel_prop_reserve(std::vector<std::pair<std::string, VProp>>& fields,
                                     unsigned int n);

// An array is destroyed as what it is.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

/// An array of numbers, texts, structs or values: elements with a shape.
///
/// The elements are those of the vector. Changing their number by the vector's own functions leaves the
/// stored shape behind; see `get_size`. RGB triples make an array that no property value holds.
template <class T>
class VProparray final : public VProparrayBase, public std::vector<T> {
  static_assert(Vrel::prop_element_id<T> != 0 || std::is_same_v<T, _s_vrel_RGB>,
                "no property array holds this type");

 public:
  using std::vector<T>::vector;
  using std::vector<T>::size;
  using VProparrayBase::size;

  VProparray() = default;

  unsigned int count() const override { return static_cast<unsigned int>(this->size()); }

  void resize(unsigned int n, bool clear) override {
    if (clear) {
      std::vector<T>(n).swap(*this);
    } else {
      reserve_moving(n);
      resize(n);
    }
  }

  /// Set the number of elements and leave the shape; elements that are there stay.
  void resize(std::size_t n) { std::vector<T>::resize(n); }
  /// There is no value to fill with: it would be taken for `clear`.
  template <class V, class = std::enable_if_t<!std::is_same_v<V, bool>>>
  void resize(std::size_t n, const V& fill) = delete;

  /// An element, to which the array grows; see `get_idx`.
  typename std::vector<T>::reference operator()(unsigned int i,
                                                unsigned int j = VProparrayBase::not_given,
                                                unsigned int k = VProparrayBase::not_given,
                                                unsigned int l = VProparrayBase::not_given) {
    return this->at(get_idx(val2pos(i, j, k, l), true));
  }
  /// An element; see `get_idx`.
  typename std::vector<T>::const_reference operator()(
      unsigned int i, unsigned int j = VProparrayBase::not_given,
      unsigned int k = VProparrayBase::not_given,
      unsigned int l = VProparrayBase::not_given) const {
    return this->at(get_idx(val2pos(i, j, k, l)));
  }

 private:
  friend class VPropCloning;

  void reserve_moving(unsigned int n) {
    if constexpr (std::is_same_v<T, VProp>) {
      if (n > this->capacity()) vrel_prop_reserve(*this, std::max(n, 2 * count()));
    }
  }
};

#pragma GCC diagnostic pop
