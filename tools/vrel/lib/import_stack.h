// A stack on its way into a VBF file, whatever kind of file it comes from.
#pragma once

#include <vrelio/file/file_access.h>
#include <vrelio/json/value.h>

#include <functional>
#include <string>
#include <vector>

namespace Vrel::tool {

/// One axis as its file tells it.
struct ImportAxis {
  unsigned size = 0;
  std::string label;                       ///< a letter such as "X"; empty where the file has none
  double length = 0.0;                     ///< of the whole axis, in `unit`; 0 where not set
  std::string unit;                        ///< by its OME name, in UTF-8; empty where not set
  std::vector<std::string> column_labels;  ///< one per column, or none
};

/// Takes the next samples, axis 0 fastest.
using SampleSink = std::function<void(const void* samples, unsigned count)>;

struct ImportStack {
  std::string name;  ///< empty where the file has none
  std::string description;
  int data_type = 0;             ///< as for `vrel_dt_get_size`
  std::vector<ImportAxis> axes;  ///< the fastest first
  Json::Value image;             ///< the element "ome:Image" of the source; null for none
  /// Hands all samples over in pieces. To be called once.
  std::function<void(const SampleSink&)> read;
};

/// What one file holds.
struct ImportInput {
  std::vector<ImportStack> stacks;
  std::vector<std::string> warnings;
};

/// Samples of a stack of these sizes; 1 for none.
/// \throws VrelError "The product exceeds the maximum size." (-1) above 2^32 - 1; "%zu axes are more
/// than the 15 that a stack can have!" (-4).
u64 count_samples(const std::vector<u64>& sizes);

/// Plain axes of these sizes, which passed `count_samples`.
std::vector<ImportAxis> make_axes(const std::vector<u64>& sizes);

/// Bytes of all samples.
/// \throws as `count_samples`.
u64 count_bytes(const ImportStack& stack);

}  // namespace Vrel::tool
