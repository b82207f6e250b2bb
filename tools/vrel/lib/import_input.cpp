#include "lib/import_input.h"

#include <vrelio/foundation/error.h>

#include <memory>
#include <string_view>

#include "lib/npy_reader.h"
#include "lib/plain_text.h"
#include "lib/sample_stream.h"
#include "lib/tiff_input.h"

namespace Vrel::tool {

namespace {

ImportInput with_one(ImportStack stack) {
  ImportInput input;
  input.stacks.push_back(std::move(stack));
  return input;
}

std::string first_bytes(const std::string& path) {
  std::string start(npy_magic.size(), '\0');
  start.resize(SampleStream(path).read_some(start.data(), start.size()));
  return start;
}

}  // namespace

bool is_raw_input(const std::string& path, bool has_layout) {
  return ends_with(path, ".raw") || (path == "-" && has_layout);
}

ImportInput open_import(const std::string& path, const std::optional<RawLayout>& layout) {
  if (is_raw_input(path, layout.has_value())) {
    return with_one(open_raw(std::make_shared<SampleStream>(path), layout.value()));
  }
  if (path == "-") return with_one(open_npy(std::make_shared<SampleStream>(path)));
  const std::string start = first_bytes(path);
  if (start == npy_magic) return with_one(open_npy(std::make_shared<SampleStream>(path)));
  if (is_tiff(start)) return open_tiff(path);
  throw VrelError(VrelError()("Neither .npy nor TIFF, and no .raw file!")(-4));
}

}  // namespace Vrel::tool
