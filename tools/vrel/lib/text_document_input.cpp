#include <vrelio/foundation/error.h>
#include <vrelio/json/reader.h>
#include <vrelio/json/xml_reader.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "lib/text_document.h"

namespace Vrel::tool {

namespace {

constexpr std::size_t slice_size = 65536;

bool is_whitespace(char c) {
  return c == ' ' || c == '\n' || c == '\r' || c == '\t' || c == '\v' || c == '\f';
}

// The slices of a source with the number of bytes that were taken of them.
class Slices {
 public:
  explicit Slices(const Source& source) : source_(source), buffer_(slice_size) {}

  // Whether there is anything left, after the next slice was fetched if need be.
  bool has_more() {
    if (begin_ != end_) return true;
    before_ += count_;
    count_ = source_(buffer_.data(), buffer_.size());
    begin_ = buffer_.data();
    end_ = begin_ + count_;
    return count_ != 0;
  }

  const char*& begin() { return begin_; }
  const char* end() const { return end_; }
  std::uint64_t taken() const {
    return before_ + count_ - static_cast<std::uint64_t>(end_ - begin_);
  }

 private:
  const Source& source_;
  std::vector<char> buffer_;
  const char* begin_ = nullptr;
  const char* end_ = nullptr;
  std::uint64_t before_ = 0;  // bytes of the slices that are gone
  std::size_t count_ = 0;     // bytes of this slice
};

[[noreturn]] void raise_at(const std::string& message, std::uint64_t byte) {
  throw VrelError()("%s at byte %llu", message.c_str(), static_cast<unsigned long long>(byte));
}

// `bytes_behind` tells how far behind the byte at fault the reader leaves the place.
template <class Reader>
bool read_document(Slices& slices, Reader& reader, std::uint64_t bytes_behind) {
  try {
    while (slices.has_more()) {
      if (reader.read(slices.begin(), slices.end())) return true;
    }
    return false;
  } catch (const typename Reader::Unexpected& error) {
    raise_at(error.what(), slices.taken() - bytes_behind + 1);
  }
}

void expect_end(Slices& slices) {
  while (slices.has_more()) {
    slices.begin() = std::find_if_not(slices.begin(), slices.end(), is_whitespace);
    if (slices.begin() != slices.end()) raise_at("Text behind the document", slices.taken() + 1);
  }
}

[[noreturn]] void raise_end(const Slices& slices) {
  raise_at("The input ends inside the document", slices.taken());
}

}  // namespace

Json::Object read_json_document(const Source& source) {
  Slices slices(source);
  Json::Reader reader;
  if (!read_document(slices, reader, 0)) raise_end(slices);
  expect_end(slices);
  return reader.object();
}

Json::Value read_xml_document(const Source& source) {
  Slices slices(source);
  Json::Value root;
  Json::XmlReader reader(root);
  const bool is_closed = read_document(slices, reader, 1);
  // A document that is only `<a/>` is never closed, but may end.
  if (!is_closed && (root.is_null() || !reader.may_end())) raise_end(slices);
  expect_end(slices);
  return root;
}

}  // namespace Vrel::tool
