// Checking the data area of one stack.
#pragma once

#include <vrelio/container/records.h>
#include <vrelio/file/file.h>

#include <functional>
#include <string>

#include "lib/progress_bar.h"

namespace Vrel::tool {

/// Takes what was found at a position of the file.
using TellFinding = std::function<void(u64 position, const std::string& what)>;

/// What becomes of the findings of a check.
struct FindingSinks {
  TellFinding fault;  ///< of the samples
  TellFinding
      flush_fault;   ///< of the flush table, which harms no one who reads from the first sample on
  TellFinding note;  ///< harms nobody
};

/// Whether the data area holds a zlib stream.
bool is_zipped(const StackHeader& header);

/// Bytes of all samples of a stack; 0 for a type without a size.
u64 size_of_samples(const StackRecord& stack);

/// Read every byte of a data area that lies inside the file, once: whether it holds the samples that
/// the header tells of, whether a stream is whole and its checksum right, and whether decoding can
/// start at each flush point and goes on there as it came.
///
/// Takes the same memory for stacks of every size.
/// \throws VrelError where the system refuses to read.
void check_samples(VFile& file, const StackRecord& stack, const FindingSinks& sinks,
                   ProgressBar& progress);

}  // namespace Vrel::tool
