#include <vrelio/container/dbl.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <vector>

#include "container/dbl_internal.h"
#include "foundation/data_type_list_internal.h"
#include "foundation/file_name_internal.h"
#include "foundation/raise_internal.h"

namespace Vrel::detail {

namespace {

constexpr int result_double = 1;
constexpr int result_single = 2;

// Samples become the other precision block by block, which stay in the cache between the two.
constexpr std::size_t block_length = 32768;

enum Code : int {
  header_only = 0xA0,
  into_target_single = 0xAA,
  into_target = 0xAB,
  into_target_double = 0xAC,
  header_only_too = 0xAD,
  into_block_single = 0xAE,
  into_block = 0xAF
};

bool reads_header_only(int code) { return code == header_only || code == header_only_too; }

bool reads_into_target(int code) {
  return code == into_target_single || code == into_target || code == into_target_double;
}

bool is_result_single(int code, const DblHeader& header) {
  switch (code) {
    case header_only:
    case header_only_too:
    case into_target:
    case into_block:
      return header.is_single;
    case into_target_single:
    case into_block_single:
      return true;
    default:
      return false;
  }
}

struct FreeBlock {
  void operator()(void* block) const { std::free(block); }
};
using Block = std::unique_ptr<void, FreeBlock>;

// Zeros that take no memory before they are written to, so that sizes that the file does not keep are cheap.
Block make_block(std::size_t count, std::size_t sample_size) {
  return Block(std::calloc(std::max<std::size_t>(count, 1), sample_size));
}

bool read_converted(const Descriptor& file, int from, int to, void* samples, std::size_t count) {
  const std::size_t stored_size = from == id_single ? sizeof(float) : sizeof(double);
  const std::size_t result_size = to == id_single ? sizeof(float) : sizeof(double);
  std::vector<unsigned char> block(std::min(count, block_length) * stored_size);
  auto* next = static_cast<unsigned char*>(samples);
  for (std::size_t done = 0; done < count; done += block_length) {
    const std::size_t length = std::min(block_length, count - done);
    if (!file.read(block.data(), length * stored_size)) return false;
    convert_dbl_samples(from, to, block.data(), next, length);
    next += length * result_size;
  }
  return true;
}

// The samples that are there, of those that the sizes promise.
bool read_samples(const Descriptor& file, const DblHeader& header, int type, void* samples) {
  const int stored_type = dbl_data_type(header);
  const std::size_t stored_size = dbl_sample_size(header);
  const u64 promised = u64{*count_samples(header)} * stored_size;
  const u64 present = std::min(promised, file.count_bytes_left());
  if (type == stored_type) return file.read(samples, present);
  return read_converted(file, stored_type, type, samples, present / stored_size);
}

void take_lengths(const DblHeader& header, float* lengths) {
  std::copy(header.lengths.begin(), header.lengths.end(), lengths);
}

void take_sizes(const DblHeader& header, void* target) {
  std::copy(header.dims.begin(), header.dims.end(), static_cast<int*>(target));
}

std::optional<DblHeader> read_header(const Descriptor& file) {
  DblHeaderBytes bytes;
  if (!file.is_open() || !file.read(bytes.data(), bytes.size())) return std::nullopt;
  return decode_dbl_header(bytes);
}

// `place` is where the code was found, and where a pointer to the samples goes.
int read_file(const char* name, void* target, float* lengths, int code, void* place) {
  const Descriptor file(name, OpenMode::share);
  const std::optional<DblHeader> header = read_header(file);
  if (!header) return dbl_failed;
  take_lengths(*header, lengths);
  if (!reads_into_target(code)) take_sizes(*header, target);
  const bool is_single = is_result_single(code, *header);
  const int result = is_single ? result_single : result_double;
  if (reads_header_only(code)) return result;

  const std::optional<std::uint32_t> count = count_samples(*header);
  if (!count) return dbl_failed;
  Block block;
  if (!reads_into_target(code)) {
    block = make_block(*count, is_single ? sizeof(float) : sizeof(double));
    target = block.get();
    if (!block) return dbl_failed;
  }
  if (!read_samples(file, *header, is_single ? id_single : id_double, target)) return dbl_failed;
  std::memcpy(place, &target, sizeof target);
  static_cast<void>(block.release());
  return result;
}

}  // namespace

DblHeader read_dbl_header(const VPropstring& name) {
  const std::optional<std::string> system_name = to_system_name(name);
  std::optional<DblHeader> header;
  if (system_name) header = read_header(Descriptor(*system_name, OpenMode::share));
  if (!header) raise(id_format, "Error reading .dbl file!");
  return *header;
}

}  // namespace Vrel::detail

using namespace Vrel::detail;

int vrel_dbl_read(const char* name, void* target, float* lengths, void* mode) {
  try {
    int code;
    std::memcpy(&code, mode, sizeof code);
    return read_file(name, target, lengths, code, mode);
  } catch (const std::bad_alloc&) {
    return dbl_failed;
  }
}
