// Samples of a stack on their way to an output.
#pragma once

#include <vrelio/file/file_access.h>

#include <functional>
#include <optional>

#include "lib/output.h"
#include "lib/progress_bar.h"

namespace Vrel::tool {

/// A run of samples, by number.
struct SampleRange {
  u64 position;
  u64 count;
};

/// The range that was asked for; without a position from the first sample on, without a count all
/// that are left.
/// \throws VrelError "Trying to read beyond segment boundary!" (-1) if the stack has no such
/// samples.
SampleRange choose_range(u64 number_of_samples, std::optional<u64> position,
                         std::optional<u64> count);

/// Reads `count` samples from a position on.
using ReadSamples = std::function<void(u64 position, u64 count, void* destination)>;

/// Copy a range in blocks of at most 4 MiB.
void copy_samples(const ReadSamples& read, unsigned sample_size, SampleRange range, Output& output,
                  ProgressBar& progress);

}  // namespace Vrel::tool
