// Where a stack stands on global axes.
#pragma once

#include <vrelio/export.h>
#include <vrelio/foundation/propstring.h>
#include <vrelio/prop/prop_array.h>

#include <vector>

class VStackInfoInterface;

/// The place of a stack in a system of global axes, which several stacks can share.
///
/// Made new, it has no global axes and fits a stack without axes. A plain value.
class VRELIO_EXPORT VStackPosition {
 public:
  VStackPosition();

  /// Become the place of a stack whose axes are the first of `rank` global axes, at position 0.
  /// \param sizes  the sizes of the stack; only their number counts.
  /// \param rank  number of global axes; 0 for as many as the stack has.
  /// \throws VrelError "Rank cannot be larger than the number of global axes!" (-1) if the stack has
  ///   more. Nothing has changed then.
  void create(const std::vector<unsigned int>& sizes, unsigned int rank);
  /// The same, with the labels of the stack as names of the first global axes.
  /// \param info  the stack; its labels are read in the local encoding.
  /// \param rank  number of global axes; 0 for as many as the stack has.
  void create(const VStackInfoInterface* info, unsigned int rank);

  /// Whether there is a name and an offset for each of the same number of global axes, and a projection
  /// of that many rows and of one column for each axis of the stack.
  bool is_valid_for(const VStackInfoInterface* info) const;
  /// As `is_valid_for`, for any stack of this rank.
  bool fits(unsigned int stack_rank) const;

  VProparray<VPropstring> axes;  ///< names of the global axes; of one dimension
  VProparray<double> offset;     ///< position on each global axis; of one dimension
  VProparray<double>
      projection;  ///< (global axes, axes of the stack); 1.0 where one runs along the other
};
