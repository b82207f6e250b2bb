// The forms in which samples leave: raw, NumPy array, OME-TIFF, PNG.
#pragma once

#include <vrelio/container/records.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "lib/output.h"
#include "lib/region.h"

namespace Vrel::tool {

/// What the samples are written as.
enum class ExportForm { raw, npy, tiff, png };

/// The form that the name of an output stands for: "-" is raw; else its ending in any case, .raw, .npy,
/// .tif, .tiff (also behind .ome) or .png. Nothing for another ending.
std::optional<ExportForm> export_form(const std::string& name);

/// An output to be made.
struct ExportTarget {
  std::string name;      ///< path, or "-" for standard output
  ExportForm form;       ///< as of `export_form`
  bool replace = false;  ///< whether a file of that name may be replaced
  int compression = 0;   ///< of TIFF: deflate level, 0 for none
  std::string date;      ///< of OME-TIFF: date of acquisition, empty for none
  std::string creator;   ///< of OME-TIFF: the program
};

/// Where the samples of a region go, in their order and of this type.
/// \throws what the constructors of the outputs raise; `npy_header`, `describe_image`.
std::unique_ptr<Output> open_export(const ExportTarget& target, const StackRecord& stack,
                                    const Region& region, int data_type);

/// Where samples without axes go; raw or NumPy array alone.
/// \throws as `open_export`.
std::unique_ptr<Output> open_export(const ExportTarget& target, u64 number_of_samples,
                                    int data_type);

}  // namespace Vrel::tool
