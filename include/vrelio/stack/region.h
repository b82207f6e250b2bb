// Which part of a stack to take, in which order of axes and as what type.
#pragma once

#include <vrelio/export.h>

#include <limits>
#include <vector>

class VStackInfoInterface;

/// A box of elements of a stack, which may reach beyond it.
///
/// The bounds are in the axes of the stack, axis 0 first; the permutation makes the axes of the result
/// from them. An axis that it does not name is held at its `from`, or at 0 where it has none; an axis
/// beyond those of the stack counts as one of size 1. A plain value.
///
/// ```cpp
/// VStackRegion region;               // x and y exchanged, plane 5
/// region.from = {100, 100, 5};
/// region.to = {200, VStackRegion::end_of_axis, 6};
/// region.permutation = {1, 0};
/// ```
class VRELIO_EXPORT VStackRegion {
 public:
  /// A bound of `to` that stands for the end of the axis.
  static constexpr int end_of_axis = std::numeric_limits<int>::max();

  /// Become the whole of a stack.
  /// \param info  the stack.
  /// \param type  data type id of the result; 0 for that of the stack.
  void create(const VStackInfoInterface* info, int type);
  /// Become the whole of what has these sizes, axis 0 first; those that no `int` holds end at
  /// `end_of_axis`.
  /// \param sizes  elements per axis.
  /// \param type  data type id of the result, 0 for that of the stack.
  void create(const std::vector<unsigned int>& sizes, int type);

  /// Whether an axis has no index between its bounds; false for a region without axes.
  bool is_empty() const;
  /// Product of the bounds' differences, with `end_of_axis` as the number that it is; 1 without axes.
  /// \throws VrelError "Invalid region!" (-1) for a `from` above its `to` or lists of different
  ///   lengths; "The product exceeds the maximum size." (-1) if 64 bits do not hold it.
  unsigned long long get_num_pixels() const;

  /// The sizes of the result, in the order of `permutation`; see the other form.
  std::vector<unsigned int> validate(const VStackInfoInterface* info, bool& inside) const;
  /// Hold the region against a stack.
  ///
  /// \param info  the stack.
  /// \param[out] inside  whether all elements that the permutation walks exist.
  /// \param[out] source_part  the elements that exist, in the axes of the stack. Its permutation has all
  ///   axes of the stack, those first that the result walks.
  /// \param[out] destination_part  where these come to lie in the result. Its permutation has all axes of
  ///   the result, in the order of those of `source_part`.
  /// \return the sizes of the result, in the order of `permutation`.
  /// \throws VrelError "Called on invalid region!" (-1) if the lists of bounds differ in length, a bound
  ///   lies before the other or a part is beyond what an `int` holds; "Invalid permutation!" (-15) if
  ///   an axis without bounds or an axis twice is named.
  std::vector<unsigned int> validate(const VStackInfoInterface* info, bool& inside,
                                     VStackRegion& source_part,
                                     VStackRegion& destination_part) const;

  int type = 0;                           ///< data type id of the result; 0 for that of the stack
  std::vector<int> from;                  ///< first index per axis; may be negative
  std::vector<int> to;                    ///< index behind the last per axis, or `end_of_axis`
  std::vector<unsigned int> permutation;  ///< `permutation[k]` is the axis that the result has as k
};
