#include <vrelio/container/dbl.h>

#include <algorithm>
#include <new>
#include <vector>

#include "container/dbl_internal.h"
#include "foundation/data_type_list_internal.h"

namespace Vrel::detail {

namespace {

constexpr std::size_t piece_size = 1048576;

// Nothing for sizes that the fields of the header, or a count of 32 bits, cannot hold.
std::optional<DblHeader> make_header(const int* dims, const float* lengths, int single) {
  DblHeader header;
  for (std::size_t i = 0; i < dbl_rank; ++i) {
    if (dims[i] < 0 || dims[i] > UINT16_MAX) return std::nullopt;
    header.dims[i] = static_cast<std::uint16_t>(dims[i]);
    header.lengths[i] = lengths[i];
  }
  header.is_single = single != 0;
  if (!count_samples(header)) return std::nullopt;
  return header;
}

bool write_as_they_are(const Descriptor& file, const void* data, std::size_t size) {
  const auto* const bytes = static_cast<const unsigned char*>(data);
  for (std::size_t done = 0; done < size; done += piece_size) {
    if (!file.write(bytes + done, std::min(piece_size, size - done))) return false;
  }
  return true;
}

bool write_narrowed(const Descriptor& file, const double* data, std::size_t count) {
  constexpr std::size_t piece_length = piece_size / sizeof(float);
  std::vector<float> piece(std::min(count, piece_length));
  for (std::size_t done = 0; done < count; done += piece_length) {
    const std::size_t length = std::min(piece_length, count - done);
    convert_dbl_samples(id_double, id_single, data + done, piece.data(), length);
    if (!file.write(piece.data(), length * sizeof(float))) return false;
  }
  return true;
}

int write_file(const char* name, const DblHeader& header, const double* data, bool narrows) {
  const Descriptor file(name, OpenMode::create);
  const DblHeaderBytes bytes = encode(header);
  if (!file.is_open() || !file.write(bytes.data(), bytes.size())) return dbl_failed;
  const std::size_t count = *count_samples(header);
  const bool is_written = narrows ? write_narrowed(file, data, count)
                                  : write_as_they_are(file, data, count * dbl_sample_size(header));
  return is_written ? 1 : dbl_failed;
}

}  // namespace

}  // namespace Vrel::detail

using namespace Vrel::detail;

int vrel_dbl_write(const char* name, const int* dims, const float* lengths, const double* data,
                   int single) {
  try {
    const std::optional<DblHeader> header = make_header(dims, lengths, single);
    return header ? write_file(name, *header, data, single == 1) : dbl_failed;
  } catch (const std::bad_alloc&) {
    return dbl_failed;
  }
}
