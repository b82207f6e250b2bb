#include "lib/sample_stream.h"

#include <sys/stat.h>
#include <unistd.h>
#include <vrelio/foundation/data_type.h>
#include <vrelio/foundation/error.h>

#include <algorithm>
#include <vector>

#include "lib/byte_order.h"
#include "lib/source.h"

namespace Vrel::tool {

namespace {

[[noreturn]] void raise_not_read() { throw VrelError(VrelError().do_oserr()("Could not read!")); }

}  // namespace

SampleStream::SampleStream(const std::string& path) : descriptor_(STDIN_FILENO) {
  if (path == "-") return;
  opened_.emplace(path);
  descriptor_ = opened_->descriptor();
}

std::optional<u64> SampleStream::bytes_left() const {
  struct stat status {};
  if (::fstat(descriptor_, &status) != 0) raise_not_read();
  if (!S_ISREG(status.st_mode)) return std::nullopt;
  const off_t position = ::lseek(descriptor_, 0, SEEK_CUR);
  if (position < 0) raise_not_read();
  return static_cast<u64>(std::max<off_t>(status.st_size - position, 0));
}

std::size_t SampleStream::read_some(void* buffer, std::size_t size) {
  const Source source = read_descriptor(descriptor_);
  char* const bytes = static_cast<char*>(buffer);
  std::size_t done = 0;
  while (done < size) {
    const std::size_t count = source(bytes + done, size - done);
    if (count == 0) break;
    done += count;
  }
  return done;
}

void SampleStream::read(void* buffer, std::size_t size) {
  if (read_some(buffer, size) == size) return;
  throw VrelError(VrelError()("Failed reading %zu bytes from file!", size)(-3));
}

void SampleStream::check_length(u64 wanted) const {
  const std::optional<u64> left = bytes_left();
  if (!left || *left == wanted) return;
  throw VrelError(VrelError()("%llu bytes of samples are wanted, the file has %llu!",
                              static_cast<unsigned long long>(wanted),
                              static_cast<unsigned long long>(*left))(-4));
}

void SampleStream::copy_samples(u64 count, int data_type, bool is_reversed,
                                const SampleSink& sink) {
  constexpr u64 block_size = 4u << 20;
  const auto sample_size = static_cast<unsigned>(vrel_dt_get_size(data_type));
  std::vector<char> block(std::min(count, block_size / sample_size) * sample_size);
  while (count > 0) {
    const auto piece = static_cast<unsigned>(std::min<u64>(count, block.size() / sample_size));
    const std::size_t size = std::size_t{piece} * sample_size;
    read(block.data(), size);
    if (is_reversed) reverse_bytes(block.data(), size, number_width(data_type));
    sink(block.data(), piece);
    count -= piece;
  }
  char more = 0;
  if (read_some(&more, 1) != 0) {
    throw VrelError(VrelError()("The file goes on behind its samples!")(-4));
  }
}

}  // namespace Vrel::tool
