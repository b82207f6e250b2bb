// Copies the elements of a box from one buffer to another, permuted and converted on the way.
#pragma once

#include <cstddef>
#include <vector>

namespace Vrel::detail {

/// One axis of a box of elements: how many there are, and the bytes from one to the next on both
/// sides. Strides of an axis of several elements are not negative, and that of the destination is
/// not 0; they need not be multiples of anything.
struct BoxAxis {
  std::size_t count;
  std::ptrdiff_t source_stride;
  std::ptrdiff_t destination_stride;
};

/// Copy every element of a box, as another type where the types differ.
///
/// A value is converted as by vrel_dt_convert, and of a complex value that becomes a real one the
/// real part is taken. Bytes of the destination between the elements are not touched. Memory is
/// taken for a few words per axis, and 48 KiB of the stack.
///
/// \param[in] source_type, destination_type  ids of the 20 numeric element types.
/// \param[in] source, destination  the first element of the box on each side, at any address; the
///     buffers do not overlap.
/// \param[in] axes  in any order; none: one element; a count of 0: no element.
/// \return false, with nothing touched, if a type is not numeric.
bool copy_box(int source_type, int destination_type, const unsigned char* source,
              unsigned char* destination, std::vector<BoxAxis> axes);

}  // namespace Vrel::detail
