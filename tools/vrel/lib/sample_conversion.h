// Samples of one type on their way to another.
#pragma once

#include "lib/sample_copy.h"

namespace Vrel::tool {

/// Whether samples can be converted to this type at all.
bool is_conversion_target(int data_type);

/// What reads samples of the type `to` where `read` gives those of the type `from`; `read` itself
/// where the two are the same. Values convert as by `vrel_dt_convert`.
/// \throws VrelError "Invalid on-the-fly conversion from '%s' to '%s'!" (-1) where there is none.
ReadSamples convert_samples(ReadSamples read, int from, int to);

}  // namespace Vrel::tool
