#include "lib/raw_input.h"

#include <vrelio/foundation/data_type.h>

#include <algorithm>
#include <charconv>
#include <string_view>
#include <system_error>

#include "lib/complex_type.h"

namespace Vrel::tool {

namespace {

std::string_view without_blanks_at_ends(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(' ');
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(' ') - begin + 1);
}

std::optional<u64> read_size(std::string_view text) {
  text = without_blanks_at_ends(text);
  u64 size = 0;
  const char* const end = text.data() + text.size();
  const std::from_chars_result result = std::from_chars(text.data(), end, size);
  if (result.ec != std::errc() || result.ptr != end) return std::nullopt;
  return size;
}

}  // namespace

std::optional<std::vector<u64>> read_sizes(const std::string& text) {
  const char separator = text.find(',') == std::string::npos ? 'x' : ',';
  std::vector<u64> sizes;
  for (std::size_t begin = 0; begin <= text.size();) {
    const std::size_t end = std::min(text.find(separator, begin), text.size());
    const auto size = read_size(std::string_view(text).substr(begin, end - begin));
    if (!size) return std::nullopt;
    sizes.push_back(*size);
    begin = end + 1;
  }
  return sizes;
}

int read_type_name(const std::string& name) {
  constexpr int real_types = 0x30FF;
  const int id = vrel_dt_from_name(name.c_str());
  return (id & ~(complex_flag | real_types)) == 0 ? id : 0;
}

ImportStack open_raw(const std::shared_ptr<SampleStream>& stream, const RawLayout& layout) {
  ImportStack stack;
  stack.data_type = layout.data_type;
  const u64 count = count_samples(layout.sizes);
  stack.axes = make_axes(layout.sizes);
  stream->check_length(count_bytes(stack));
  stack.read = [stream, count, type = layout.data_type](const SampleSink& sink) {
    stream->copy_samples(count, type, false, sink);
  };
  return stack;
}

}  // namespace Vrel::tool
