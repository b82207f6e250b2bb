// Checking a whole VBF file.
#pragma once

#include <vrelio/file/file.h>

#include "lib/progress_bar.h"
#include "lib/verify_report.h"

namespace Vrel::tool {

/// Check every structure of a file, every sample and every flush point. Behind a damage goes on with
/// what can still be found. Memory does not grow with the samples, time goes with the file's size.
///
/// \throws VrelError "No VBF file header found!" (-4) for another kind of file, "Failed reading %d bytes
///   from file!" (-3) for one too short for a header, and what the system refuses.
VerifyReport verify_file(VFile& file, ProgressBar& progress);

}  // namespace Vrel::tool
