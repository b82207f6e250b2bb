#include <vrelio/foundation/convert.h>
#include <vrelio/foundation/data_type.h>

#include "container/conversion_internal.h"
#include "foundation/raise_internal.h"

namespace Vrel::detail {

void raise_no_conversion(int from, int to) {
  raise(id_plain, "Invalid on-the-fly conversion from '%s' to '%s'!", vrel_dt_get_name(from),
        vrel_dt_get_name(to));
}

void convert_samples(const SampleBuffer<const unsigned char>& from,
                     const SampleBuffer<unsigned char>& to, unsigned count) {
  const int result = vrel_dt_convert(from.type, to.type, from.data, to.data,
                                     static_cast<int>(count), from.imaginary, to.imaginary);
  if (result != 0) raise_no_conversion(from.type, to.type);
}

}  // namespace Vrel::detail
