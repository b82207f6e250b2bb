// Any text as XML: reading it whole and in slices gives the same value or the same error, and what was
// read can be copied and written. The first byte chooses the slices.
#include <vrelio/json/write_xml.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <stdexcept>
#include <string>

#include "json/xml_outcome.h"

namespace {

void require(bool condition) {
  if (!condition) std::abort();
}

// Slices of changing sizes that are the same for the same byte.
class SliceSizes {
 public:
  explicit SliceSizes(std::uint8_t seed) : state_(seed) {}

  std::size_t operator()(std::size_t) {
    state_ = state_ * 1103515245U + 12345U;
    return 1 + (state_ >> 16) % 9;
  }

 private:
  std::uint32_t state_;
};

void write(const Json::Value& root) {
  std::ostringstream out;
  try {
    Json::write_xml(root, out);
  } catch (const std::invalid_argument&) {
    // What was read up to an error may hold what no document holds.
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::string text(data + 1, data + size);
  const Vrel::testing::XmlOutcome whole = Vrel::testing::read_whole(text);
  require(Vrel::testing::read_in_slices(text, SliceSizes(data[0])) == whole);
  const Json::Value copy = whole.root;
  require(copy == whole.root);
  write(copy);
  return 0;
}
